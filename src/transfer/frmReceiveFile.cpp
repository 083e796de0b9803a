#include "transfer/frmReceiveFile.h"

#include <utility>

#include "platform/Text.h"
#include "transfer/FormatBit.h"

namespace talvora {

namespace {

constexpr int ReceiverSilenceMs = 60'000;
constexpr int ReceiverSpeedMs = 1000;
constexpr int ReceiverAbortMs = 5000;
constexpr int OfferMs = 10'000;
constexpr int ListenerMs = 10'000;

}  // namespace

frmReceiveFile::frmReceiveFile(const TransferSurroundings& around)
    : Socket(around.ThePlatform.Guarded, around.ThePlatform.Sockets, around.ReceiveAddress),
      Timer1(around.ThePlatform, Ending, ReceiverSilenceMs),
      Timer2(around.ThePlatform, Ending, ReceiverSpeedMs, true),
      Timer3(around.ThePlatform, Ending, ReceiverAbortMs),
      Timer4(around.ThePlatform, Ending, OfferMs),
      Timer5(around.ThePlatform, Ending, ListenerMs, true),
      Meter(around.ThePlatform.TheLoop),
      around_(around) {
    Caption = "File Reception";
    lblStored.Visible = false;
    connectSocket();
    connectTimers();
    on_ += Command1.Click.connect([this] { Command1_Click(); });
    on_ += Command2.Click.connect([this] { Command2_Click(); });
    Socket.Listen();
}

void frmReceiveFile::connectSocket() {
    on_ += Socket.ConnectionRequest.connect([this] { Winsock1_ConnectionRequest(); });
    on_ += Socket.Winsock1.DataArrival.connect([this] { Winsock1_DataArrival(); });
    on_ += Socket.Winsock1.Closed.connect([this] { Winsock1_Close(); });
    on_ += Socket.Winsock1.Error.connect([this](int, const std::string& words) { Winsock1_Error(words); });
}

void frmReceiveFile::connectTimers() {
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    on_ += Timer2.Tick.connect([this] { Timer2_Timer(); });
    on_ += Timer3.Tick.connect([this] { Timer3_Timer(); });
    on_ += Timer4.Tick.connect([this] { Timer4_Timer(); });
    on_ += Timer5.Tick.connect([this] { Timer5_Timer(); });
}

void frmReceiveFile::RefreshSettings() {
    if (Socket.IsMisplaced()) Socket.Listen();
}

// ---- The connection

void frmReceiveFile::Winsock1_ConnectionRequest() {
    trapped(around_.Reporter, "Winsock1_ConnectionRequest", [&](Trap&) {
        if (!Socket.Accept()) return;
        ++connection_;
        Receiving = false;
        canceledTold_ = false;
        announced_ = false;
        stray_.Renew();
        Reading.Connected();
        endOffer();
        over_ = false;
        Timer4.Enabled = true;
    });
}

void frmReceiveFile::Winsock1_Close() {
    trapped(around_.Reporter, "Winsock1_Close", [&](Trap& step) {
        Timer1.Enabled = false;
        Socket.Listen();
        if (Receiving) {
            const std::int32_t offer = offer_;
            note("The connection was lost");
            KillPartial();
            endOffer();
            step([&] { around_.Boxes.SayLost(); });
            hideUnlessNew(offer);
        }
    });
}

void frmReceiveFile::Winsock1_Error(const std::string& description) {
    trapped(around_.Reporter, "Winsock1_Error", [&](Trap& step) {
        Timer1.Enabled = false;
        Socket.Listen();
        const std::int32_t offer = offer_;
        if (Receiving) note(description);
        step([&] { around_.Boxes.SayFailed(description); });
        Command2.Enabled = true;
        if (offer == offer_) {
            KillPartial();
            endOffer();
        }
        around_.Flags.gTransferBusy = false;
    });
}

void frmReceiveFile::SendData(std::string Text) {
    trapped(around_.Reporter, "SendData", [&](Trap& step) {
        if (Socket.State() != SocketState::Connected) return Winsock1_Close();
        Text += TransferStream::Delimiter;
        step([&] { Socket.Winsock1.SendData(Text); });
        Socket.Winsock1.Flush();
    });
}

// ---- The messages

void frmReceiveFile::Winsock1_DataArrival() {
    trapped(around_.Reporter, "Winsock1_DataArrival", [&](Trap& step) {
        Reading.DataArrival(
            step, Socket.Winsock1, Timer1,
            [&](char type, std::string_view parameter) {
                return act(step, type, parameter) && !IsUnloaded();
            },
            [&] { Winsock1_Error("The other side sends what has no end"); });
    });
}

bool frmReceiveFile::act(Trap& step, char type, std::string_view parameter) {
    switch (type) {
        case 'C':
            offered(step, parameter);
            return true;
        case 'S':
            if (Receiving && !over_) startNamed(step, parameter);
            return Receiving;
        case 'D':
            if (Receiving && !over_) StackData(parameter);
            return Receiving;
        case 'X':
            canceledBySender(step);
            return true;
        default:
            return true;
    }
}

// A second offer on one connection ends the first: no true sender makes one.
void frmReceiveFile::offered(Trap& step, std::string_view parameter) {
    Timer4.Enabled = false;
    std::vector<std::string> pieces;
    std::int32_t count = FileCount;
    stray_(step, [&] {
        pieces = Split(parameter, " ", 2);
        count = CLng(Val(elementOf(pieces, 1)));
    });
    pieces.resize(2);
    closeFile(step);
    endOffer();
    over_ = false;
    ++offer_;
    FileCount = count;
    ask(ShownName(pieces[0]), ShownName(pieces[1]));
    ProgressBar1.SetMax(FileCount);
    ProgressBar1.SetMin(0);
    ProgressBar1.SetValue(0);
    Command1.Enabled = true;
    Command2.Enabled = true;
    Receiving = true;
    FilesDone = 0;
    Meter.End();
}

void frmReceiveFile::ask(const std::string& nick, const std::string& count) {
    peer_ = nick;
    name_.clear();
    noted_ = false;
    Picture1.Visible = true;
    Command2.Visible = true;
    Label6.Caption =
        "User " + nick + " is sending you " + count +
        " file(s). If you want to receive them, click on the accept button, or else, click on the "
        "abort button to cancel the reception. You can press any time the abort button, to stop the "
        "reception.";
    std::string room = "The disk can't be asked for room.";
    try {
        const std::int64_t free = around_.ThePlatform.ProgramFiles.FreeSpace();
        room = FormatBit(static_cast<double>(free)) + " are free on the disk.";
    } catch (const RuntimeError&) {  // an offer can be accepted without
    }
    lblFrom.Caption = "It comes from the address " + Socket.Winsock1.RemoteHost + ". " + room;
    if (std::exchange(announced_, true)) return;
    Show();
    around_.ThePlatform.Screen.SetForegroundWindow(*this);
    around_.ThePlatform.Screen.SetTopMost(*this, true);
    tellHost("Files", "User " + nick + " is sending you " + count + " file(s)");
}

void frmReceiveFile::tellHost(const std::string& title, const std::string& text) {
    Notice notice;
    notice.Title = title;
    notice.Text = text;
    notice.Window = std::string(Folder);
    around_.Gate.NotifyHost(notice);
}

void frmReceiveFile::canceledBySender(Trap& step) {
    const std::int32_t offer = offer_;
    SendData("O");
    if (Receiving) note("Canceled by the other side");
    KillPartial();
    endOffer();
    Command2.Enabled = true;
    Timer1.Enabled = false;
    Timer2.Enabled = false;
    Timer3.Enabled = false;
    if (!std::exchange(canceledTold_, true)) step([&] { around_.Boxes.SayCanceled(); });
    hideUnlessNew(offer);
}

void frmReceiveFile::startNamed(Trap& step, std::string_view parameter) {
    std::vector<std::string> pieces;
    std::int32_t size = 0;
    const bool understood = stray_(step, [&] {
        pieces = Split(parameter, " ", 2);
        if (!accepted_) throw RuntimeError(Fault::PermissionDenied);
        size = CLng(Val(elementOf(pieces, 0)));
        elementOf(pieces, 1);
    });
    if (understood) StartRCV(pieces[1], size);
}

// ---- Timers and hands

void frmReceiveFile::Timer1_Timer() {
    trapped(around_.Reporter, "Timer1_Timer", [&](Trap& step) {
        const std::int32_t offer = offer_;
        if (Receiving)
            note(accepted_ ? "The other side did not answer; what has come was kept"
                           : "Not accepted in time");
        closeFile(step);
        Label4.Caption = "Finished";
        ProgressBar2.SetValue(0);
        Timer1.Enabled = false;
        Socket.Listen();
        endOffer();
        step([&] { around_.Boxes.SaySilent(); });
        hideUnlessNew(offer);
    });
}

// Nothing has moved and nothing is shown: nobody needs the next tick.
void frmReceiveFile::Timer2_Timer() {
    const std::int64_t bytes = std::exchange(SpeedBytes, 0);
    Label5.Caption = "Transfer speed: " + FormatBit(static_cast<double>(bytes)) + "ytes / sec";
    Meter.Second(bytes);
    if (bytes == 0 && !Receiving) Timer2.Rest();
}

// It goes on: what comes within the next five seconds ends so, too. The deletion is the user's own, who has
// aborted; a stranger's word deletes nothing that he has not been allowed to write.
void frmReceiveFile::Timer3_Timer() {
    trapped(around_.Reporter, "Timer3_Timer", [&](Trap& step) {
        Socket.Listen();
        allow(true);
        KillPartial();
        closeFile(step);
        endOffer();
        Hide();
    });
}

void frmReceiveFile::Timer4_Timer() {
    trapped(around_.Reporter, "Timer4_Timer", [&](Trap&) {
        Timer4.Enabled = false;
        Receiving = false;
        SendData("X");
        Socket.Listen();
    });
}

void frmReceiveFile::Timer5_Timer() {
    const SocketState state = Socket.State();
    if (state != SocketState::Connected && state != SocketState::Listening) Socket.Listen();
}

void frmReceiveFile::Command1_Click() {
    trapped(around_.Reporter, "Command1_Click", [&](Trap&) {
        Command1.Enabled = false;
        Command2.Enabled = false;
        Timer3.Enabled = true;
        Timer1.Enabled = false;
        if (Receiving) note("Canceled");
        SendData("X");
    });
}

void frmReceiveFile::Command2_Click() {
    trapped(around_.Reporter, "Command2_Click", [&](Trap&) {
        Picture1.Visible = false;
        Command2.Visible = false;
        around_.ThePlatform.Screen.SetTopMost(*this, false);
        if (Receiving && Socket.State() == SocketState::Connected) {
            accepted_ = true;
            allow(true);
            stray_.Renew();
        }
        SendData("W");
    });
}

void frmReceiveFile::Form_QueryUnload(bool& cancel, CloseReason reason) {
    trapped(around_.Reporter, "Form_QueryUnload", [&](Trap& step) {
        closeFile(step);
        if (reason != CloseReason::UserClosesBox) return;
        cancel = true;
        if (Socket.State() == SocketState::Connected && Command1.Enabled) Command1_Click();
        Hide();
    });
}

void frmReceiveFile::Form_Unload() {
    Socket.Close();
    endOffer();
}

// ---- The offer

void frmReceiveFile::allow(bool receiving) {
    around_.ThePlatform.ProgramFiles.AllowReceiving(receiving);
}

// Nothing may be written or deleted any more.
void frmReceiveFile::endOffer() {
    over_ = over_ || accepted_;
    accepted_ = false;
    allow(false);
}

// A question may have stood meanwhile, and somebody else may have made an offer.
void frmReceiveFile::hideUnlessNew(std::int32_t offer) {
    if (offer == offer_ && !IsUnloaded()) Hide();
}

// What comes first is the reason; the rest follows from it.
void frmReceiveFile::note(const std::string& outcome) {
    if (std::exchange(noted_, true)) return;
    std::string native;
    try {
        if (!name_.empty()) native = around_.ThePlatform.ProgramFiles.NativePath(FilePath);
    } catch (const RuntimeError&) {  // there is no such file
    }
    const std::string name = name_.empty() ? CStr(FileCount) + " file(s)" : name_;
    around_.History.Add({name, peer_, true, outcome, native, around_.ThePlatform.WallClock.Now()});
}

}  // namespace talvora
