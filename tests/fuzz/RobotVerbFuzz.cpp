// What strangers say to the robot. Each line of the input is one that somebody sends, the first byte says
// who; a line that begins with a digit lets so much time pass. Whatever they say, the robot puts whole lines
// of its own words on the wire, forgets half-open dialogues, and takes a good mail afterwards.

#include <QtCore/QCoreApplication>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "platform/MemoryClipboard.h"
#include "robot/Robot.h"
#include "simulation/MemorySettings.h"
#include "simulation/VirtualNetwork.h"

namespace {

using namespace talvora;
using namespace std::chrono_literals;

void check(bool holds) {
    if (!holds) std::abort();
}

// A world without disk, screen and people.
struct StillWorld final : Questions, Desktop, DiskDriver {
    Answer Ask(MessageBox&) override { return Answer::Abort; }
    std::optional<std::string> Ask(const InputBox&) override { return {}; }
    std::vector<std::string> Ask(const OpenFileBox&) override { return {}; }
    std::optional<std::string> Ask(const SaveFileBox&) override { return {}; }
    std::optional<FontChoice> Ask(const FontBox&) override { return {}; }
    int ScreenWidth() const override { return 0; }
    int ScreenHeight() const override { return 0; }
    const Form* ForegroundWindow() const override { return nullptr; }
    void SetForegroundWindow(Form&) override {}
    void SetTopMost(Form&, bool) override {}
    void FlashWindow(Form&, bool) override {}
    void Beep() override {}
    Clipboard& TheClipboard() override { return clipboard; }
    void Open(const std::string&) override {}
    Handle open(const std::string&, Access) override { return 0; }
    Handle openPicked(const std::string&) override { return 0; }
    Handle createPicked(const std::string&) override { return 0; }
    std::size_t read(Handle, std::int64_t, char*, std::size_t) override { return 0; }
    void write(Handle, std::int64_t, std::string_view) override {}
    std::int64_t size(Handle) override { return 0; }
    void truncate(Handle, std::int64_t) override {}
    void flush(Handle) override {}
    void close(Handle) override {}
    Status status(const std::string&) override { return {}; }
    std::string linkTarget(const std::string&) override { return {}; }
    std::vector<Entry> list(const std::string&) override { return {}; }
    void flushFolder(const std::string&) override {}
    void makeFolder(const std::string&) override {}
    void rename(const std::string&, const std::string&) override {}
    void remove(const std::string&) override {}
    void moveToWaste(const std::string&) override {}
    MemoryClipboard clipboard;
};

struct StillClock final : Clock {
    DateTime Now() const override { return {}; }
    double SecondsSinceMidnight() const override { return 0; }
};

RobotConfig configuration() {
    RobotConfig config;
    config.Network.ServerHost = "irc.test";
    config.Network.Wire = WireProfile::plain();
    config.LinesPerSecond = 20;
    config.AddressPort = 0;
    config.MailsPerUser = 3;
    config.KilobytesPerUser = 2;
    config.UsersSending = 3;
    config.Store.Database = ":memory:";
    return config;
}

class World {
  public:
    World() {
        robot_.Start();
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
        check(robot_.Taking().Sending() == 0 && robot_.Giving().Readers() == 0);
        check(robot_.Out().Waiting() == 0);
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
    test::ScriptedServer& server_ = network_.server("irc.test", 6667);
    StillWorld still_;
    StillClock clock_;
    Files files_{still_};
    MemorySettings settings_;
    Platform platform_{time_, network_, clock_, still_, files_, settings_, still_};
    RobotConfig config_ = configuration();
    RobotStore store_{config_.Store};
    Robot robot_{platform_, config_, store_, [](LogSubject, const std::string&) {}};
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** words) {
    static const QCoreApplication application(*count, *words);
    return 0;
}

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
