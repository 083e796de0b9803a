// What strangers say to the robot. Each line of the input is one that somebody sends, the first byte says
// who; a line that begins with a digit lets so much time pass. Whatever they say, the robot puts whole lines
// of its own words on the wire, forgets half-open dialogues, and takes a good mail afterwards.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/Text.h"
#include "simulation/robot/RobotInWorld.h"

namespace {

using namespace talvora;
using namespace std::chrono_literals;

void check(bool holds) {
    if (!holds) std::abort();
}

void configure(RobotConfig& config) {
    config.Network.ServerHost = "irc.test";
    config.Network.Wire = WireProfile::plain();
    config.LinesPerSecond = 20;
    config.AddressPort = 0;
    config.MailsPerUser = 3;
    config.KilobytesPerUser = 2;
    config.UsersSending = 3;
}

class World {
  public:
    World() {
        configure(simulated_.config);
        simulated_.start();
        time_.run(3s);
        server_.says(":srv 001 OrreryServ :Welcome");
        time_.run(10ms);
        server_.heard();
    }

    void line(std::string_view line) {
        if (line.empty()) return;
        if (line[0] >= '0' && line[0] <= '9') return run(std::chrono::seconds(20 * (line[0] - '0')));
        says(std::string("U") + static_cast<char>('A' + (static_cast<unsigned char>(line[0]) & 3U)),
             line.substr(1));
        if ((static_cast<unsigned char>(line[0]) & 4U) != 0) run(20ms);
    }

    void endsWell() {
        run(3min);
        check(simulated_.robot->Taking().Sending() == 0 && simulated_.robot->Giving().Readers() == 0);
        check(simulated_.robot->Out().Waiting() == 0);
        for (const char* text : {"MAIL SENDREQUEST", "MAIL SEND good 1 s", "MAIL SENT good x"}) {
            says("Good", text);
            time_.run(1s);
        }
        check(Join(server_.heard(), "|") ==
              "PRIVMSG Good :\1MAIL SENDOK\1|PRIVMSG Good :\1MAIL OK\1|PRIVMSG Good :\1MAIL SENTDONE\1");
    }

  private:
    void says(const std::string& nick, std::string_view text) {
        server_.says(":" + nick + "!u@h PRIVMSG OrreryServ :\1" + std::string(text) + "\1");
    }
    void run(std::chrono::microseconds duration) {
        time_.run(duration);
        for (const std::string& line : server_.heard()) {
            check(line.starts_with("PRIVMSG U") || line.starts_with("NOTICE U") ||
                  line.starts_with("JOIN #"));
            check(line.find('\0') == std::string::npos && line.find('\r') == std::string::npos);
        }
    }

    test::VirtualTime time_;
    test::VirtualNetwork network_{time_};
    test::SimulatedRobot simulated_{time_, network_, "irc.test"};
    test::ScriptedServer& server_ = simulated_.server;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4000) return 0;
    World world;
    // A prefix or a whole line of the server's is not for strangers to make.
    std::string input(reinterpret_cast<const char*>(data), size);
    std::erase(input, '\r');
    for (const std::string& line : Split(input, "\n")) world.line(line);
    world.endsWell();
    return 0;
}
