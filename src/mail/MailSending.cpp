// The sending of a mail: modMailManager's queue and its steps from SENDREQUEST to SENTDONE.

#include <utility>

#include "mail/MailFile.h"
#include "mail/modMailManager.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

// A mail that is written while another one is sent cuts that one off: it waits, deaf, for its time-out, and
// is sent again later.
void modMailManager::SendMail(Text FileName) {
    trapped(globError_, "SendMail", [&](Trap& step) {
        File file;
        step([&] { file = files_.Open(MailFile::PathOf(FileName), FileMode::Input); });
        step([&] { file.ReadLine(); });
        gSendQueue += FileName + "|";
        step([&] { session_.TellRobot("MAIL SENDREQUEST"); });
        step([&] { file.Close(); });
        gOutFile.reset();
        step([&] { settings_.Save(Section::Incompleted, "SendQueue", gSendQueue); });
        status_.Label7.Caption = "Outgoing message enqueued";
        session_.SetMailRefresh(5000);
    });
}

void modMailManager::CheckMailSend() {
    trapped(globError_, "CheckMailSend",
            [&](Trap& step) { step([&] { session_.TellRobot("MAIL SENDREQUEST"); }); });
}

// In memory alone: the stored queue keeps the names of deleted mails until it is saved next.
void modMailManager::RefreshMailQueue() {
    trapped(globError_, "RefreshMailQueue", [&](Trap& step) {
        std::string queue;
        for (const std::string& entry : Split(gSendQueue, "|")) {
            if (entry.empty()) continue;
            if (step.test([&] { return files_.Exists(MailFile::PathOf(entry)); })) queue += entry + "|";
        }
        gSendQueue = queue;
    });
}

std::int32_t modMailManager::NextSendMailID() {
    const std::int32_t number = unusedNumber(gSendMailID, 'o');
    settings_.Save(Section::Information, "SendMailID", CStr(number));
    return gSendMailID = number;
}

std::string modMailManager::firstQueued() const {
    return gSendQueue.substr(0, gSendQueue.find('|'));
}

void modMailManager::StartMailSend() {
    trapped(globError_, "StartMailSend", [&](Trap& step) {
        if (gSendQueue.empty()) return;
        const std::string entry = firstQueued();
        std::string line;
        step([&] { gOutFile = files_.Open(MailFile::PathOf(entry), FileMode::Input); });
        step([&] { line = gOutFile.value().ReadLine(); });
        step([&] { session_.TellRobot("MAIL SEND " + line); });
        const auto words = Split(line, " ", 3);
        step([&] { gOutTotal = CInt(Val(elementOf(words, 1))); });
        step([&] { gOutTo = elementOf(words, 0); });
        gOutLine = 0;
        outName_ = entry;
        allSent_ = false;
        status_.tmrSendTimeout.Restart();
        status_.tmrSendFlood.Enabled = true;
        gMailSending = true;
        session_.SetMailRefresh(5000);
        status_.Label7.Caption = "Starting message transfer";
    });
}

void modMailManager::SendMailDump() {
    trapped(globError_, "SendMailDump", [&](Trap& step) {
        if (!gMailSending || !gOutFile) return;
        status_.tmrSendTimeout.Restart();
        if (step.test([&] { return gOutFile->AtEnd(); })) {
            missPiece();
        } else {
            sendPiece(step);
        }
    });
}

// The cancel goes out twice, since CancelMailSend still finds the mail under way; and its "Idle" takes the
// place of the words of the error at once.
void modMailManager::missPiece() {
    gOutFile->Close();
    session_.TellRobot("MAIL SENDCANCEL " + gOutTo);
    status_.MailRCVDone();
    status_.Label7.Caption = "Error transfering message!";
    CancelMailSend();
}

void modMailManager::sendPiece(Trap& step) {
    const std::string line = step.value(std::string(), [&] { return gOutFile->ReadLine(); });
    step([&] { gOutLine = CInt(gOutLine + 1); });
    if (gOutLine == gOutTotal) return sendLastPiece(line);
    status_.tmrSendFlood.Restart();
    step([&] { session_.TellRobot("MAIL DUMP " + gOutTo + " " + line); });
    step([&] { gMailProgress = gOutTotal == 0 ? 1.0F : percent(gOutLine, gOutTotal); });
    status_.MailRCVUpdate(gMailProgress);
    status_.Label7.Caption = "Sending message...";
    gMailSending = true;
}

void modMailManager::sendLastPiece(Text line) {
    status_.tmrSendFlood.Enabled = false;
    status_.tmrSendTimeout.Restart();
    session_.TellRobot("MAIL SENT " + gOutTo + " " + line);
    allSent_ = true;
    status_.MailRCVDone();
    status_.Label7.Caption = "Finalizing message transmittion";
}

void modMailManager::EraseFirstMail() {
    trapped(globError_, "EraseFirstMail", [&](Trap& step) {
        std::vector<std::string> entries = Split(gSendQueue, "|", 2);
        step([&] { closeOutFile(); });
        gOutFile.reset();
        step([&] { files_.Discard(MailFile::PathOf(elementOf(entries, 0))); });
        step([&] { gSendQueue = elementOf(entries, 1); });
        status_.MailRCVDone();
        status_.Label7.Caption = "Message sent. Idle";
        gMailSending = false;
        step([&] { settings_.Save(Section::Incompleted, "SendQueue", gSendQueue); });
        session_.ShowIncoming();
        step([&] {
            Notice notice;
            notice.Title = "New message";
            notice.Text = "one of your messages has been sent";
            gate_.NotifyHost(notice);
        });
    });
}

void modMailManager::closeOutFile() {
    if (!gOutFile) throw RuntimeError(Fault::BadFileNameOrNumber);
    gOutFile->Close();
}

// In a trap of its own: whoever answers Abort to the number -1 must not stop all mail with it.
void modMailManager::closeOutFileInCancel() {
    trapped(globError_, "CancelMailSend", [&](Trap& step) { step([&] { closeOutFile(); }); });
    gOutFile.reset();
}

void modMailManager::CancelMailSend() {
    trapped(globError_, "CancelMailSend", [&](Trap& step) {
        if (gMailSending) {
            closeOutFileInCancel();
            status_.tmrSendFlood.Enabled = false;
            step([&] { session_.TellRobot("MAIL SENDCANCEL " + gOutTo); });
            gMailSending = false;
            status_.MailRCVDone();
        }
        if (gMailReceiving) MailError();
        session_.SetMailRefresh(60000);
        status_.tmrSendTimeout.Enabled = false;
    });
}

OutgoingState modMailManager::StateOf(std::string_view fileName) const {
    if (gMailSending && fileName == outName_) {
        return allSent_ ? OutgoingState::Confirming : OutgoingState::Sending;
    }
    if (fileName == refused_) return OutgoingState::Refused;
    const std::string entry = std::string(fileName) + "|";
    const bool queued = gSendQueue.starts_with(entry) || gSendQueue.find("|" + entry) != std::string::npos;
    return queued ? OutgoingState::Waiting : OutgoingState::NotQueued;
}

}  // namespace talvora
