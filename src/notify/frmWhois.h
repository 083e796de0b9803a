#pragma once
// What the server knows of one user, and four questions to that user's program. There is one window: a new
// answer overwrites the last one.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/Trap.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Timer.h"

namespace talvora {

class frmWhois final : public Form {
  public:
    // Sends a question to a nick, as a special text.
    using Asker = std::function<void(const std::string& nick, const std::string& question)>;

    frmWhois(Platform& platform, GlobError& reporter, Asker ask);

    Label Label2;       // where it comes from
    Label lblNick;      // "Nickname :"
    Label lblLocation;  // "Location :"
    Label lblAP;        // "Access point :"
    Label lblAddr;      // "Address :"
    Label lblChans;     // "Channels :"
    Label lblServer;    // "Server :"
    Label lblAway;      // "User Away :"
    Label lblIdle;      // "Idle time :"
    Label IdleWords;    // the same for people
    Label lblSignon;    // "Signon time :"
    Label SignonWords;
    Label lblType;  // "User type :"
    Label lblCtcp;  // "Ctcp reply:"
    CommandButton Command2{"Ping"};
    CommandButton Command3{"Version"};
    CommandButton Command4{"Time"};
    CommandButton Command5{"Finger"};
    CommandButton Command1{"Close"};
    Timer tmrPing;

    std::string WhoisNick;       // whom the answer is for, and the questions go to
    std::int16_t PingTicks = 0;  // seconds since the last PING question

    // `WHOISResults` as the engine raises it: user name, host, real name, channels, server, away text, idle
    // seconds, signon, user type. Without a nick there is no such user, and nothing happens.
    void Display(const std::string& Nickname, const std::vector<std::string>& WHOISResults);
    // An answer to a question, whoever sends it.
    void Notice(const std::string& Command, const std::string& Text);
    static bool IsAnswer(const std::string& Command);

  private:
    void showPlace(Trap& step, const std::string& userName, const std::string& realName);
    void showTimes(const std::string& idle, const std::string& signon);
    void ask(const char* procedure, const std::string& question);
    void tmrPing_Timer();

    Platform& platform_;
    GlobError& globError_;
    Asker ask_;
    Subscriptions on_;
};

// A span in its two largest units: "2 hours 5 minutes". Empty for a negative one.
std::string spanInWords(std::int64_t seconds);

}  // namespace talvora
