#include "mail/modMailManager.h"

#include <algorithm>
#include <utility>

#include "mail/MailFile.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::int32_t LongestInterval = 32767;  // minutes

}  // namespace

modMailManager::modMailManager(const MailSurroundings& around, MailStatus& status, MailSession& session)
    : globError_(around.Reporter),
      settings_(around.Settings),
      gate_(around.Gate),
      files_(around.ThePlatform.ProgramFiles),
      clock_(around.ThePlatform.WallClock),
      status_(status),
      session_(session) {
    on_ += status_.tmrSendFlood.Tick.connect([this] {
        SendMailDump();
        status_.tmrSendFlood.Enabled = false;
    });
    on_ += status_.tmrSendTimeout.Tick.connect([this] {
        CancelMailSend();
        status_.tmrSendTimeout.Enabled = false;
    });
}

void modMailManager::LoadSettings() {
    reloadInterval();
    gSendMailID = CLng(Val(settings_.Get(Section::Information, "SendMailID", "0")));
    gSendQueue = settings_.Get(Section::Incompleted, "SendQueue", "");
}

// ---- The robot's verbs

const modMailManager::Verb modMailManager::verbs[] = {
    {"NOTEXIST", &modMailManager::onNotExist},
    {"START", &modMailManager::onStart},
    {"DUMP", &modMailManager::onDump},
    {"DONE", &modMailManager::onDone},
    {"RESUME", &modMailManager::onResume},
    {"NOMAIL", &modMailManager::onNoMail},
    {"OK", &modMailManager::onOK},
    {"SENDWAIAT", &modMailManager::onSendWait},
    {"SENDOK", &modMailManager::onSendOK},
    {"SENDERROR", &modMailManager::onSendError},
    {"SENTDONE", &modMailManager::onSentDone},
};

void modMailManager::HandleMailCmd(Text text) {
    trapped(globError_, "HandleMailCmd", [&](Trap& step) {
        const auto words = Split(text, " ", 2);
        std::string word;
        if (!step([&] { word = elementOf(words, 0); })) return;
        const auto* const verb = std::ranges::find(verbs, word, &Verb::word);
        if (verb == std::end(verbs)) return;
        (this->*verb->act)(step, words.size() > 1 ? words[1] : std::string());
    });
}

// The count of lines is forgotten before the partial file goes: a start between the two must not ask for more
// of a mail whose beginning is gone.
void modMailManager::onNotExist(Trap& step, Text) {
    const std::int32_t number = incompletedNumber("LocalMID");
    forgetIncoming(step);
    step([&] { files_.Discard(MailFile::PathOf(MailFile::ReceivingName(number))); });
    step([&] { session_.TellRobot("MAIL 0 0"); });
}

void modMailManager::onStart(Trap& step, Text rest) {
    std::vector<std::string> fields;
    std::int16_t total = 0;
    std::int32_t number = 0;
    const bool read = step([&] {
        fields = Split(rest, " ", 5);
        elementOf(fields, 4);
        total = CInt(Val(fields[2]));
        number = CLng(Val(fields[3]));
    });
    if (read) StartMailDump(fields[0], fields[4], Replace(fields[1], "_", " "), total, number);
}

void modMailManager::onDump(Trap&, Text rest) {
    MailDump(rest);
}

void modMailManager::onDone(Trap&, Text) {
    FinishMailDump();
}

void modMailManager::onResume(Trap&, Text) {
    status_.Label7.Caption = "Resuming from last received position...";
    ResumeMail();
}

void modMailManager::onNoMail(Trap&, Text) {
    status_.MailRCVDone();
    status_.Label7.Caption = "Finished receiving messages";
}

void modMailManager::onOK(Trap&, Text) {
    SendMailDump();
}

void modMailManager::onSendWait(Trap& step, Text) {
    status_.Label7.Caption = "Message server busy. Checking messages";
    if (!gMailSending && !gMailReceiving) step([&] { poll(); });
}

void modMailManager::onSendOK(Trap&, Text) {
    status_.Label7.Caption = "Request accepted. Sending message";
    RefreshMailQueue();
    StartMailSend();
}

void modMailManager::onSendError(Trap&, Text) {
    if (gMailSending) refused_ = outName_;
    CancelMailSend();
    status_.Label7.Caption = "Message transmittion error";
}

void modMailManager::onSentDone(Trap&, Text) {
    EraseFirstMail();
}

// ---- The poll

void modMailManager::CheckRCVMail() {
    trapped(globError_, "CheckRCVMail", [&](Trap& step) {
        if (gMailSending) {
            session_.SetMailRefresh(60000);
            reloadInterval();
        } else if (!gSendQueue.empty()) {
            session_.SetMailRefresh(10000);
            session_.SetMailInterval(0);
            status_.Label7.Caption = "Initializing message transmittion";
            CheckMailSend();
        } else if (!gMailReceiving) {
            session_.SetMailRefresh(60000);
            reloadInterval();
            step([&] { poll(); });
        }
    });
}

// The mail's number keeps the blank that its conversion gave it, so that two stand behind MAIL after a cut.
void modMailManager::poll() {
    session_.TellRobot("MAIL " + incompleted("IncomingID") + " " + Trim(incompleted("IncomingLine")));
}

void modMailManager::reloadInterval() {
    session_.SetMailInterval(settings_.GetNumber(Section::Settings, "MailInterval", 1, 1, LongestInterval));
}

// ---- What is kept between two starts

std::string modMailManager::incompleted(std::string_view key) const {
    return settings_.Get(Section::Incompleted, key, "0");
}

std::int32_t modMailManager::incompletedNumber(std::string_view key) const {
    return CLng(Val(incompleted(key)));
}

void modMailManager::saveNumber(std::string_view key, std::int32_t value) {
    settings_.Save(Section::Incompleted, key, Str(value));
}

// The next number; where the settings have been lost and the folder has not, one behind all that is there, so
// that no mail is written over.
std::int32_t modMailManager::unusedNumber(std::int32_t last, char kind) const {
    std::int32_t number = CLng(static_cast<double>(last) + 1);
    const std::string name = kind == 'i' ? MailFile::IncomingName(number) : MailFile::OutgoingName(number);
    if (!files_.Exists(MailFile::PathOf(name))) return number;
    for (const std::string& there : files_.List("Mail", std::string(1, kind) + "*.qrm")) {
        number = std::max(number, MailFile::NumberOf(there));
    }
    return CLng(static_cast<double>(number) + 1);
}

void modMailManager::forgetIncoming(Trap& step) {
    for (const char* key : {"IncomingID", "LocalMID", "IncomingLine", "IncomingTotal"}) {
        step([&] { settings_.Save(Section::Incompleted, key, "0"); });
    }
}

// ---- Small things

// The product is formed in 16 bits: it overflows from line 328 on.
float modMailManager::percent(std::int16_t line, std::int16_t total) {
    const std::int16_t product = CInt(line * 100);
    if (total == 0) throw RuntimeError(11, "Division by zero");
    return static_cast<float>(product) / static_cast<float>(total);
}

}  // namespace talvora
