// The reception of files: frmReceiveFile's steps from the name of a file to its end or its deletion.

#include <string>

#include "platform/Text.h"
#include "transfer/frmReceiveFile.h"

namespace talvora {

void frmReceiveFile::StartRCV(const std::string& Name, std::int32_t Size) {
    trapped(around_.Reporter, "StartRCV", [&](Trap& step) {
        if (!Receiving || !accepted_) return;
        FileSize = Size;
        FilePos = 1;
        closeFile(step);
        name_ = ShownName(Name);
        noted_ = false;
        openFile(step, Name);
        showFile(Name, Size);
        SendData("G1");
    });
}

// The name is used as it comes; what of it leads out of the folder, the file layer refuses.
void frmReceiveFile::openFile(Trap& step, const std::string& name) {
    talvora::Files& files = around_.ThePlatform.ProgramFiles;
    FilePath = Folder + name;
    FileNum = ++lastNum_;
    stray_(step, [&] { files.Open(FilePath, FileMode::Output).Close(); });
    stray_(step, [&] { file_ = files.Open(FilePath, FileMode::Binary); });
}

void frmReceiveFile::showFile(const std::string& name, std::int32_t size) {
    ProgressBar1.SetValue(FilesDone);
    ProgressBar2.SetMax(std::int64_t{size} + 1);
    ProgressBar2.SetMin(0);
    Label2.Caption = ShownName(name);
    Label4.Caption = "Initializing...";
    showStored(name);
    Meter.Begin(FilesDone + 1, FileCount, size);
}

void frmReceiveFile::showStored(const std::string& name) {
    std::string words;
    try {
        const std::string path = around_.ThePlatform.ProgramFiles.StoredPath(FilePath);
        const std::string stored = path.substr(path.find('\\') + 1);
        if (stored != name) words = "It is stored as \"" + ShownName(stored) + "\".";
    } catch (const RuntimeError&) {
        words = "It can't be stored under this name.";
    }
    lblStored.Caption = words;
    lblStored.Visible = !words.empty();
}

void frmReceiveFile::StackData(std::string_view Data) {
    trapped(around_.Reporter, "StackData", [&](Trap& step) {
        if (!Receiving) return;
        // A block that nobody has asked for.
        const bool asked = stray_(step, [&] {
            if (!accepted_) throw RuntimeError(Fault::PermissionDenied);
            if (!file_.IsOpen()) throw RuntimeError(Fault::BadFileNameOrNumber);
        });
        if (!asked) return;
        step([&] { file_.Put(FilePos, Data); });
        const std::int32_t connection = connection_;
        yield_(around_.ThePlatform.TheLoop);
        if (IsUnloaded() || connection != connection_ || !accepted_) return;
        stored(step, Data.size());
    });
}

void frmReceiveFile::stored(Trap& step, std::size_t bytes) {
    FilePos += static_cast<std::int64_t>(bytes);
    ProgressBar2.SetValue(FilePos <= FileSize ? FilePos : ProgressBar2.Max());
    Label4.Caption = "Receiving...";
    SpeedBytes += static_cast<std::int64_t>(bytes);
    Timer2.Wake();
    Meter.Moved(FilePos - 1);
    // Positions begin at 1: of a file that is one byte longer than its blocks, that byte is never asked for.
    if (FilePos < FileSize) return SendData("G" + CStr(FilePos));
    fileIsWhole(step);
}

// The sender may begin the next file before this one is closed.
void frmReceiveFile::fileIsWhole(Trap& step) {
    const std::int32_t connection = connection_;
    const std::int32_t file = FileNum;
    step([&] { file_.Flush(); });
    note("Received");
    SendData("F");
    yield_(around_.ThePlatform.TheLoop);
    if (IsUnloaded()) return;
    Finalize(step, file);
    if (connection != connection_ || !accepted_) return;
    ++FilesDone;
    if (FilesDone >= FileCount) allIsDone();
}

void frmReceiveFile::Finalize(Trap& step, std::int32_t file) {
    if (file != FileNum) return;
    Label4.Caption = "Finished";
    closeFile(step);
}

// The rounds give the sender the time to close; nobody waits any longer once he has.
void frmReceiveFile::allIsDone() {
    constexpr int rounds = 10'000;
    const std::int32_t connection = connection_;
    const std::int32_t offer = offer_;
    Receiving = false;
    tellHost("Files", CStr(FilesDone) + " file(s) received from " + peer_);
    SendData("A");
    const auto goesOn = [&] { return !IsUnloaded() && connection == connection_; };
    for (int i = 0; i < rounds && goesOn() && Socket.State() == SocketState::Connected; ++i)
        around_.ThePlatform.TheLoop.Pump();
    if (!goesOn()) return;
    Socket.Listen();
    endOffer();
    hideUnlessNew(offer);
}

void frmReceiveFile::KillPartial() {
    if (FileNum == 0) return;
    try {
        file_.Close();
    } catch (const RuntimeError&) {  // it is to go in any case
    }
    // What stands there under this name later is not this file.
    if (killed_ == FileNum) return;
    try {
        talvora::Files& files = around_.ThePlatform.ProgramFiles;
        const std::string native = files.NativePath(FilePath);
        files.Kill(FilePath);
        killed_ = FileNum;
        around_.History.Discarded(native);
    } catch (const RuntimeError&) {  // the rules ignore any error here
    }
}

void frmReceiveFile::closeFile(Trap& step) {
    step([&] { file_.Close(); });
}

}  // namespace talvora
