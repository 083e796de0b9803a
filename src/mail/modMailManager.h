#pragma once
// Mail on its way: the dialogue with the robot, line by line, in both directions. It keeps its place in the
// settings after every line, so that a cut reception goes on where it was; a cut sending begins anew.
//
// The composition owns one for the component's life. What a line acknowledges is on disk before the
// acknowledgement leaves: the line, then the count of lines. A step that failed, whatever the user answers,
// acknowledges nothing.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/Trap.h"
#include "mail/MailSession.h"
#include "mail/MailStatus.h"
#include "platform/File.h"

namespace talvora {

class Files;

// Where a mail stands that waits in the folder to be sent.
enum class OutgoingState { NotQueued, Waiting, Sending, Confirming, Refused };

class modMailManager {
  public:
    using Text = const std::string&;

    modMailManager(const MailSurroundings& around, MailStatus& status, MailSession& session);

    // At start-up, when all files have been closed.
    void LoadSettings();

    // The poll, or the request to send if something waits.
    void CheckRCVMail();
    // `text` is what stands behind the word MAIL of a special text, from whomever it came.
    void HandleMailCmd(Text text);
    // Queues a file of the mail folder.
    void SendMail(Text FileName);
    // The number of a new mail's file, raised by one and kept. Faults if it can't be kept.
    std::int32_t NextSendMailID();
    // Gives up what is under way in either direction; the queue stays.
    void CancelMailSend();

    bool gMailReceiving = false;
    bool gMailSending = false;
    float gMailProgress = 0;  // percent
    std::string gSendQueue;   // file names, each followed by "|"

    std::int32_t gSendMailID = 0;

    OutgoingState StateOf(std::string_view fileName) const;

    // ---- The steps of a reception (MailReceiving.cpp)
    void StartMailDump(Text From, Text Subject, Text SentDate, std::int16_t Total, std::int32_t ID);
    void MailDump(Text Line);
    void FinishMailDump();
    void ResumeMail();
    void MailError();

    // ---- The steps of a sending (MailSending.cpp)
    void CheckMailSend();
    void RefreshMailQueue();
    void StartMailSend();
    void SendMailDump();
    void EraseFirstMail();

  private:
    struct Verb {
        std::string_view word;
        void (modMailManager::*act)(Trap& step, Text rest);
    };
    static const Verb verbs[];
    void onNotExist(Trap& step, Text rest);
    void onStart(Trap& step, Text rest);
    void onDump(Trap& step, Text rest);
    void onDone(Trap& step, Text rest);
    void onResume(Trap& step, Text rest);
    void onNoMail(Trap& step, Text rest);
    void onOK(Trap& step, Text rest);
    void onSendWait(Trap& step, Text rest);
    void onSendOK(Trap& step, Text rest);
    void onSendError(Trap& step, Text rest);
    void onSentDone(Trap& step, Text rest);

    std::string incompleted(std::string_view key) const;
    std::int32_t incompletedNumber(std::string_view key) const;
    void saveNumber(std::string_view key, std::int32_t value);
    void forgetIncoming(Trap& step);
    void reloadInterval();
    void poll();
    std::int32_t unusedNumber(std::int32_t last, char kind) const;
    bool beginFile(Trap& step, Text head);
    bool keepLine(Trap& step, Text line);
    bool completeFile(Trap& step);
    bool resumeFile(Trap& step, std::int32_t number);
    void received();

    void closeOutFile();
    void closeOutFileInCancel();
    void sendPiece(Trap& step);
    void sendLastPiece(Text line);
    void missPiece();
    std::string firstQueued() const;
    static float percent(std::int16_t line, std::int16_t total);

    GlobError& globError_;
    ComponentSettings& settings_;
    HostGate& gate_;
    Files& files_;
    Clock& clock_;
    MailStatus& status_;
    MailSession& session_;

    std::int32_t gLocalMID = 0;
    File gInFile;  // closed when no mail is received
    std::int16_t gInLine = 0;
    std::int16_t gInTotal = 0;
    // The last line is on disk, and its count could not be saved: it comes again, and must not stand twice
    // for each minute in which the settings take nothing.
    bool uncounted_ = false;

    // The file of the mail that is sent; nothing stands for the number -1, which can't be closed.
    std::optional<File> gOutFile;
    std::string gOutTo;
    std::int16_t gOutTotal = 0;
    std::int16_t gOutLine = 0;
    std::string outName_;  // of the mail that is, or was last, sent
    bool allSent_ = false;
    std::string refused_;  // the mail that the robot would not take
    Subscriptions on_;
};

}  // namespace talvora
