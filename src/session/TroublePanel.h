#pragma once
// The quiet line of trouble in the main window: why the session is not as the user wants it, in one plain
// sentence, for as long as it is so. It listens to the engine and changes nothing; what it says about another
// attempt is what the engine does.

#include <string>
#include <utility>
#include <vector>

#include "irc/IRCServ.h"
#include "platform/Controls.h"
#include "platform/Timer.h"

namespace talvora {

class TroublePanel {
  public:
    TroublePanel(Platform& platform, Event<>& end, IRCServ& engine);

    Label lblTrouble;  // visible while there is something to say

    // What has happened once, such as a kick, is told for so long.
    Timer tmrTrouble;

    // What keeps others from sending files: told while nothing else is. Empty when it is over.
    void TellReceiver(std::string sentence) {
        receiver_ = std::move(sentence);
        show();
    }

    // While it lives, the connection ends because the user wants it so.
    class Leaving {
      public:
        explicit Leaving(TroublePanel& panel) : panel_(panel) { ++panel_.leaving_; }
        ~Leaving() { --panel_.leaving_; }
        Leaving(const Leaving&) = delete;
        Leaving& operator=(const Leaving&) = delete;

      private:
        TroublePanel& panel_;
    };

  private:
    enum class About { Nothing, Reach, LogOn, Nick, Channel, Pace };

    void hearNumber(int number, const StringArray& words);
    void hearError(const std::string& text);
    void hearSocketError(int number, const std::string& description);
    void hearKick(const std::string& channel, const std::string& reason, const std::string& by);
    void connected();
    void disconnected();
    void nickTrouble(const std::string& sentence);
    void logOnTrouble(About about, const std::string& sentence, const std::string& next = {});
    std::string wordsOfSocketError(int number, const std::string& description) const;
    const char* wordsOfEnd() const;
    void tell(About about, std::string sentence, const std::string& next = {});
    void tellForAWhile(About about, std::string sentence, const std::string& next = {});
    void isOver(About about);
    void clear();
    void show();

    IRCServ& IRCServ1;
    About about_ = About::Nothing;
    std::string sentence_;    // without its full stop
    std::string next_;        // what the engine does about it
    std::string receiver_;    // likewise; of the file receiver
    std::string channel_;     // of About::Channel
    bool loggedOn_ = false;   // on this connection, or the one that has just ended
    bool explained_ = false;  // why this connection ends is known
    int leaving_ = 0;
    Subscriptions on_;
};

}  // namespace talvora
