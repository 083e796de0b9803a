#include "transfer/frmTransferStatus.h"

#include <utility>

#include "platform/Text.h"
#include "transfer/FormatBit.h"
#include "transfer/frmSendFile.h"

namespace talvora {

namespace {

constexpr int SenderSilenceMs = 60'000;
constexpr int SenderSpeedMs = 1000;
constexpr int SenderAbortMs = 5000;
constexpr std::int32_t DefaultBlock = 1024;
constexpr std::int32_t LargestBlock = 1 << 20;

}  // namespace

frmTransferStatus::frmTransferStatus(const TransferSurroundings& around)
    : Winsock1(around.ThePlatform.Guarded, around.ThePlatform.Sockets.CreateSocket({})),
      Timer1(around.ThePlatform, Ending, SenderSilenceMs),
      Timer2(around.ThePlatform, Ending, SenderSpeedMs, true),
      Timer3(around.ThePlatform, Ending, SenderAbortMs),
      Meter(around.ThePlatform.TheLoop),
      around_(around),
      blocks_(around.ThePlatform.TheLoop) {
    Caption = "File Transfering";
    Winsock1.AnswerAtOnce();
    connectSocket();
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    on_ += Timer2.Tick.connect([this] { Timer2_Timer(); });
    on_ += Timer3.Tick.connect([this] { Timer3_Timer(); });
    on_ += Command1.Click.connect([this] { Command1_Click(); });
    on_ += Command2.Click.connect([this] { Command2_Click(); });
}

void frmTransferStatus::connectSocket() {
    on_ += Winsock1.Connected.connect([this] { Winsock1_Connect(); });
    on_ += Winsock1.DataArrival.connect([this] { Winsock1_DataArrival(); });
    on_ += Winsock1.Closed.connect([this] { Winsock1_Close(); });
    on_ += Winsock1.Error.connect([this](int, const std::string& words) { Winsock1_Error(words); });
}

// The page offers five sizes; what else stands in the settings is taken as far as it makes sense.
std::int32_t frmTransferStatus::packageSplit() const {
    return around_.Settings.GetNumber(Section::Settings, "PackageSplit", DefaultBlock, 1, LargestBlock);
}

void frmTransferStatus::SendList(const std::string& FileList, const std::string& Host) {
    trapped(around_.Reporter, "SendList", [&](Trap& step) {
        Show();
        PackageSize = packageSplit();
        Files = Split(FileList, "|");
        FileCount = static_cast<std::int32_t>(Files.size());
        FileIndex = 0;
        Finished = false;
        ProgressBar1.SetMax(FileCount);
        ProgressBar1.SetMin(0);
        ProgressBar1.SetValue(0);
        ProgressBar2.SetMin(0);
        Command1.Enabled = true;
        Command2.Enabled = false;
        around_.Flags.gTransferBusy = true;
        Label4.Caption = "Connecting...";
        Winsock1.RemoteHost = Host;
        Winsock1.RemotePort = TransferPort;
        step([&] { Winsock1.Connect(); });
    });
}

// ---- The socket

// From here on the receiver's user takes all the time he wants: the watchdog runs from the first file on.
void frmTransferStatus::Winsock1_Connect() {
    trapped(around_.Reporter, "Winsock1_Connect", [&](Trap&) {
        Reading.Connected();
        stray_.Renew();
        canceledTold_ = false;
        Label4.Caption = "Connected. Waitting user accept...";
        SendData("C" + around_.Nickname() + " " + CStr(FileCount));
    });
}

void frmTransferStatus::Winsock1_DataArrival() {
    trapped(around_.Reporter, "Winsock1_DataArrival", [&](Trap& step) {
        Reading.DataArrival(
            step, Winsock1, Timer1,
            [&](char type, std::string_view parameter) {
                return act(step, type, parameter) && !IsUnloaded();
            },
            [&] { Winsock1_Error("The other side sends what has no end"); });
    });
}

bool frmTransferStatus::act(Trap& step, char type, std::string_view parameter) {
    switch (type) {
        case 'W':
            StartSend(false);
            break;
        case 'G':
            askedFor(step, parameter);
            break;
        case 'F':
            note("Sent");
            Finish();
            break;
        case 'A':
            endedByReceiver(step);
            break;
        case 'O':
            refusedByReceiver(step);
            break;
        case 'X':
            canceledByReceiver(step);
            break;
        default:
            break;
    }
    return true;
}

void frmTransferStatus::askedFor(Trap& step, std::string_view parameter) {
    // What was asked for before the other side's cancel came through.
    if (canceledTold_) return;
    std::int32_t position = 0;
    const bool can = stray_(step, [&] {
        position = CLng(Val(parameter));
        if (!file_.IsOpen()) throw RuntimeError(Fault::BadFileNameOrNumber);
        if (position < 1) throw RuntimeError(Fault::BadRecordNumber);
    });
    if (can) SendPart(position);
}

void frmTransferStatus::endedByReceiver(Trap& step) {
    Finished = true;
    Timer1.Enabled = false;
    Timer2.Enabled = false;
    step([&] { Winsock1.Close(); });
    Unload();
}

void frmTransferStatus::refusedByReceiver(Trap& step) {
    closeFile(step);
    Finished = true;
    step([&] { Winsock1.Close(); });
    Finish();
}

// The connection stays open; "Retry" or the end of the form closes it.
void frmTransferStatus::canceledByReceiver(Trap& step) {
    closeFile(step);
    note("Canceled by the other side");
    Finished = true;
    Command2.Enabled = true;
    around_.Flags.gTransferBusy = false;
    Timer1.Enabled = false;
    resetShown("Canceled");
    Reading.Clear();
    if (!std::exchange(canceledTold_, true)) step([&] { around_.Boxes.SayCanceled(); });
}

void frmTransferStatus::Winsock1_Close() {
    trapped(around_.Reporter, "Winsock1_Close", [&](Trap& step) {
        Timer1.Enabled = false;
        if (Finished) return;
        note("The connection was lost");
        step([&] { Winsock1.Close(); });
        around_.Flags.gTransferBusy = false;
        Command2.Enabled = true;
        step([&] { around_.Boxes.SayLost(); });
    });
}

// The list moves on by one, as the rules have it; what follows from that is told with "Retry" in mind.
void frmTransferStatus::Winsock1_Error(const std::string& description) {
    trapped(around_.Reporter, "Winsock1_Error", [&](Trap& step) {
        Timer1.Enabled = false;
        step([&] { Winsock1.Close(); });
        note(description);
        resetShown(description);
        Command2.Enabled = true;
        step([&] { around_.Boxes.SayFailed(description); });
        if (IsUnloaded()) return;
        Finish();
        around_.Flags.gTransferBusy = false;
    });
}

// ---- The files

void frmTransferStatus::StartSend(bool Advance) {
    if (Advance && FileIndex < FileCount) ++FileIndex;
    if (FileIndex < FileCount) SendFile(std::string(Files[static_cast<std::size_t>(FileIndex)]));
}

void frmTransferStatus::SendFile(const std::string& Path) {
    trapped(around_.Reporter, "SendFile", [&](Trap& step) {
        PackageSize = packageSplit();
        closeFile(step);
        ++FileNum;
        noted_.clear();
        step([&] { file_ = around_.ThePlatform.ProgramFiles.OpenPicked(Path); });
        Timer1.Restart();
        step([&] { FileSize = CLng(file_.Length()); });
        const std::string name = NameOfNative(Path);
        SendData("S" + CStr(FileSize) + " " + name);
        if (IsUnloaded()) return;
        Label2.Caption = ShownName(name);
        Label4.Caption = "Waitting for remote respond...";
        ProgressBar1.SetValue(FileIndex);
        ProgressBar2.SetMax(std::int64_t{FileSize} + 1);
        ProgressBar2.SetValue(0);
        Meter.Begin(FileIndex + 1, FileCount, FileSize);
    });
}

void frmTransferStatus::SendPart(std::int32_t Position) {
    trapped(around_.Reporter, "SendPart", [&](Trap& step) {
        PackageSize = packageSplit();
        sendBlock(step, Position);
    });
}

void frmTransferStatus::sendBlock(Trap& step, std::int32_t position) {
    const std::int32_t size = PackageSize;
    std::string message = blocks_.Message(static_cast<std::size_t>(size));
    step([&] { blocks_.Fill(message, file_, position); });
    yield_(around_.ThePlatform.TheLoop);
    if (IsUnloaded()) return;
    sendMessage(step, message);
    if (IsUnloaded()) return;
    blocks_.GiveBack(std::move(message));
    const std::int64_t next = std::int64_t{position} + size;
    if (file_.IsOpen() && next <= FileSize) blocks_.ReadAhead(file_, next, static_cast<std::size_t>(size));
    ProgressBar2.SetValue(position);
    Label4.Caption = "Sending file...";
    SpeedBytes += size;
    Meter.Moved(next - 1);
}

void frmTransferStatus::Finish() {
    trapped(around_.Reporter, "Finish", [&](Trap& step) {
        closeFile(step);
        Label4.Caption = "Finished";
        ProgressBar2.SetValue(0);
        StartSend(true);
    });
}

void frmTransferStatus::closeFile(Trap& step) {
    blocks_.Forget();
    step([&] { file_.Close(); });
}

void frmTransferStatus::SendData(std::string Text) {
    trapped(around_.Reporter, "SendData", [&](Trap& step) {
        Text += TransferStream::Delimiter;
        sendMessage(step, Text);
    });
}

// A send on a dead connection counts as its end.
void frmTransferStatus::sendMessage(Trap& step, const std::string& message) {
    if (Winsock1.State() != SocketState::Connected) return Winsock1_Close();
    step([&] { Winsock1.SendData(message); });
    Winsock1.Flush();
}

// ---- Timers and hands

void frmTransferStatus::Timer1_Timer() {
    trapped(around_.Reporter, "Timer1_Timer", [&](Trap& step) {
        closeFile(step);
        note("The other side did not answer");
        Label4.Caption = "Finished";
        ProgressBar2.SetValue(0);
        Timer1.Enabled = false;
        step([&] { Winsock1.Close(); });
        Command2.Enabled = true;
        around_.Flags.gTransferBusy = false;
        step([&] { around_.Boxes.SaySilent(); });
    });
}

void frmTransferStatus::Timer2_Timer() {
    Label5.Caption = "Transfer speed: " + FormatBit(static_cast<double>(SpeedBytes)) + "ytes / sec";
    Meter.Second(std::exchange(SpeedBytes, 0));
}

void frmTransferStatus::Timer3_Timer() {
    trapped(around_.Reporter, "Timer3_Timer", [&](Trap& step) {
        step([&] { Winsock1.Close(); });
        closeFile(step);
        around_.Flags.gTransferBusy = false;
        Unload();
    });
}

// The form waits for the receiver's "O" and then leaves anyway.
void frmTransferStatus::Command1_Click() {
    trapped(around_.Reporter, "Command1_Click", [&](Trap&) {
        Command1.Enabled = false;
        Command2.Enabled = false;
        Timer3.Enabled = true;
        Timer1.Enabled = false;
        note("Canceled");
        Label4.Caption = "Canceling...";
        if (Winsock1.State() == SocketState::Connected) SendData("X");
    });
}

// The list goes on where it was, and is announced whole.
void frmTransferStatus::Command2_Click() {
    trapped(around_.Reporter, "Command2_Click", [&](Trap& step) {
        noted_.clear();
        step([&] { Winsock1.Close(); });
        step([&] { Winsock1.Connect(); });
    });
}

void frmTransferStatus::Form_QueryUnload(bool&, CloseReason) {
    trapped(around_.Reporter, "Form_QueryUnload", [&](Trap& step) {
        closeFile(step);
        around_.Flags.gTransferBusy = false;
    });
}

void frmTransferStatus::Form_Unload() {
    Winsock1.Close();
}

// ---- What is shown

void frmTransferStatus::resetShown(const std::string& action) {
    ProgressBar1.SetValue(0);
    ProgressBar2.SetValue(0);
    Label2.Caption = "-";
    Label4.Caption = action;
    Meter.End();
}

// Once a file; what comes first is the reason, the rest follows from it.
void frmTransferStatus::note(const std::string& outcome) {
    if (FileIndex >= FileCount || !noted_.empty()) return;
    noted_ = outcome;
    const std::string& path = Files[static_cast<std::size_t>(FileIndex)];
    around_.History.Add(
        {ShownName(NameOfNative(path)), Peer, false, outcome, path, around_.ThePlatform.WallClock.Now()});
}

}  // namespace talvora
