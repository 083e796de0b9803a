// The reception of a mail: modMailManager's steps from START to DONE.

#include <algorithm>

#include "mail/MailFile.h"
#include "mail/modMailManager.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

void modMailManager::StartMailDump(Text From, Text Subject, Text SentDate, std::int16_t Total,
                                   std::int32_t ID) {
    trapped(globError_, "StartMailDump", [&](Trap& step) {
        if (!step([&] {
                const auto last = CLng(Val(settings_.Get(Section::Information, "MailID", "0")));
                const std::int32_t number = unusedNumber(last, 'i');
                settings_.Save(Section::Information, "MailID", CStr(number));
                gLocalMID = number;
            }))
            return;
        if (!beginFile(step, MailFile::IncomingHead(From, GeneralDate(clock_.Now()), SentDate, Subject)))
            return;
        gInLine = 0;
        gInTotal = Total;
        uncounted_ = false;
        // What is left of an interrupted mail must not be taken for this one's by a start in between.
        const auto isLeft = [&](const char* key) { return incompleted(key) != "0"; };
        if (isLeft("IncomingID") || isLeft("LocalMID") || isLeft("IncomingLine")) forgetIncoming(step);
        if (!step([&] { saveNumber("IncomingID", ID); }) ||
            !step([&] { saveNumber("IncomingTotal", Total); }) ||
            !step([&] { saveNumber("LocalMID", gLocalMID); }))
            return;
        step([&] { session_.TellRobot("MAIL OK"); });
        gMailProgress = 1;
        received();
    });
}

// True if the head is on disk.
bool modMailManager::beginFile(Trap& step, Text head) {
    gInFile = File();
    return step([&] {
               gInFile = files_.Open(MailFile::PathOf(MailFile::ReceivingName(gLocalMID)), FileMode::Output);
           }) &&
           step([&] { gInFile.Write(head); }) && step([&] { gInFile.Flush(); });
}

void modMailManager::received() {
    status_.MailRCVUpdate(gMailProgress);
    gMailReceiving = true;
    status_.tmrSendTimeout.Restart();
}

void modMailManager::MailDump(Text Line) {
    trapped(globError_, "MailDump", [&](Trap& step) {
        if (!step([&] { gInLine = CInt(gInLine + 1); })) return;
        if (!uncounted_ && !keepLine(step, MailFile::KeptLine(Line))) return;
        uncounted_ = true;
        step([&] { gMailProgress = percent(gInLine, gInTotal); });
        if (!step([&] { saveNumber("IncomingLine", gInLine); })) return;
        uncounted_ = false;
        step([&] { session_.TellRobot("MAIL OK"); });
        received();
    });
}

// True if the line is on disk.
bool modMailManager::keepLine(Trap& step, Text line) {
    return step([&] { gInFile.WriteLine(line); }) && step([&] { gInFile.Flush(); });
}

void modMailManager::FinishMailDump() {
    trapped(globError_, "FinishMailDump", [&](Trap& step) {
        gMailProgress = 100;
        status_.MailRCVDone();
        status_.Label7.Caption = "Waitting for next message...";
        if (gInFile.IsOpen() && !completeFile(step)) return;
        forgetIncoming(step);
        step([&] { session_.TellRobot("MAIL OK"); });
        step([&] { session_.TellRobot("MAIL 0 0"); });
        gMailReceiving = false;
        status_.tmrSendTimeout.Enabled = false;
        session_.RefreshMailList();
    });
}

// True if the whole mail stands under its name.
bool modMailManager::completeFile(Trap& step) {
    const std::string receiving = MailFile::PathOf(MailFile::ReceivingName(gLocalMID));
    return step([&] { gInFile.Write(MailFile::Tail); }) && step([&] { gInFile.Flush(); }) &&
           step([&] { gInFile.Close(); }) &&
           step([&] { files_.FileCopy(receiving, MailFile::PathOf(MailFile::IncomingName(gLocalMID))); }) &&
           step([&] { files_.Kill(receiving); });
}

void modMailManager::ResumeMail() {
    trapped(globError_, "ResumeMail", [&](Trap& step) {
        gLocalMID = step.value(0, [&] { return incompletedNumber("LocalMID"); });
        gInFile = File();
        if (!resumeFile(step, gLocalMID)) return;
        step([&] { gInLine = CInt(Val(incompleted("IncomingLine"))); });
        step([&] { gInTotal = CInt(Val(incompleted("IncomingTotal"))); });
        step([&] { session_.TellRobot("MAIL OK"); });
        gMailReceiving = true;
        status_.tmrSendTimeout.Restart();
    });
}

// True if the reception can go on. A mail that was completed just before the program ended goes on without a
// file, to the DONE that it never answered; one whose file is gone is asked for afresh.
bool modMailManager::resumeFile(Trap& step, std::int32_t number) {
    const std::string receiving = MailFile::PathOf(MailFile::ReceivingName(number));
    const bool partial = step.test([&] { return files_.Exists(receiving); });
    if (step.test([&] { return files_.Exists(MailFile::PathOf(MailFile::IncomingName(number))); })) {
        if (partial) step([&] { files_.Kill(receiving); });
        return true;
    }
    if (partial) {
        return step([&] { files_.DropTornRecord(receiving); }) &&
               step([&] { gInFile = files_.Open(receiving, FileMode::Append); });
    }
    forgetIncoming(step);
    step([&] { session_.TellRobot("MAIL 0 0"); });
    return false;
}

void modMailManager::MailError() {
    trapped(globError_, "MailError", [&](Trap& step) {
        step([&] { gInFile.Close(); });
        gInFile = File();
        status_.MailRCVDone();
        gMailReceiving = false;
        status_.tmrSendTimeout.Enabled = false;
    });
}

}  // namespace talvora
