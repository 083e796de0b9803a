#pragma once
// A user whose program speaks with the robot as the messenger does, but without its clocks: it keeps a mail
// until the robot has confirmed it, begins anew when the robot is back, goes on with a half-received mail
// where it stopped, and asks for announcements after the last that it has. What went over the line stays to
// be checked.

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "simulation/programs/LineSocket.h"

namespace talvora::programs {

struct SentMail {
    std::string from;
    std::string to;
    std::string subject;
    std::vector<std::string> pieces;
    bool operator<(const SentMail& other) const {
        return std::tie(from, to, subject, pieces) <
               std::tie(other.from, other.to, other.subject, other.pieces);
    }
};

struct HeardAnnouncement {
    int number = 0;
    std::string poster;
    std::string text;
    bool operator==(const HeardAnnouncement&) const = default;
};

class MailUser {
  public:
    MailUser(int port, std::string nick);
    MailUser(const MailUser&) = delete;
    MailUser& operator=(const MailUser&) = delete;

    // When there is nothing to send and nothing to receive. What it composes and posts goes out after it.
    std::function<void(MailUser& user)> whenIdle;

    void compose(const std::string& to, const std::string& subject, std::vector<std::string> pieces);
    void post(const std::string& text) { say("ANN POST 24 0 " + text); }
    // Reads what has come; answers go out at once.
    void work() { lines_.gather(0); }

    const std::string& nick() const { return nick_; }
    int descriptor() const { return lines_.descriptor(); }
    bool robotIsThere() const { return robotIsThere_; }
    bool nothingToSend() const { return outgoing_.empty(); }
    bool gone() const { return lines_.closed(); }
    std::string takeTranscript() { return std::exchange(lines_.transcript, {}); }

    std::vector<SentMail> confirmed;
    std::vector<SentMail> received;
    std::vector<HeardAnnouncement> heard;
    int firstNumber = 0;  // that the robot told this user to begin behind
    int refused = 0;      // transfers that the robot broke off
    int resumed = 0;
    int texts = 0;  // of the robot
    int idles = 0;  // how often nothing was left to do

  private:
    using Words = std::vector<std::string>;
    // Of the mail in reception; it survives the robot's end.
    struct Reception {
        std::string id = "0";
        std::size_t total = 0;
        SentMail mail;
    };

    bool handle(const std::string& line);
    void robotCame(bool there);
    void handleMail(const std::string& verb, const std::string& rest);
    void handleAnnouncement(const std::string& verb, const std::string& rest);
    void begin();
    void poll();
    void sendPiece();
    void sentDone();
    void start(const std::string& rest);
    void dump(std::string piece);
    void done();
    void idle();
    void say(const std::string& text) { lines_.send("PRIVMSG OrreryServ :\1" + text + "\1"); }

    std::string nick_;
    LineSocket lines_;
    bool welcome_ = false;
    bool robotIsThere_ = false;
    std::deque<SentMail> outgoing_;
    bool sending_ = false;
    std::size_t sentPieces_ = 0;
    Reception reception_;
    int lastNumber_ = 0;
};

// Splits at blanks into at most `most` words; the last is all the rest.
std::vector<std::string> splitWords(std::string_view text, std::size_t most);

}  // namespace talvora::programs
