#pragma once
// The robot on virtual time, with its store in memory and a server that the test plays. Dialogues are written
// as scripts: "Maria> MAIL OK" is what a user says to the robot, "Maria< MAIL OK" what he hears; plain texts
// and notices are marked as such. What is heard must be in the script, in order and to the last line. Dates
// are shown as DATE.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "robot/Robot.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class RobotWorld {
  public:
    RobotWorld() {
        config.Network.ServerHost = "irc.test";
        config.Network.SysChannel = "#system";
        config.Network.SysChanKey = "syskey";
        config.Network.Wire = WireProfile::plain();
        config.LinesPerSecond = 0;
        config.AddressPort = 0;
        config.Store.Database = ":memory:";
        config.Categories.fill({48, 20, {}});
    }

    // Opens the store and logs on. `config` is read here.
    void start() {
        store = std::make_unique<RobotStore>(config.Store);
        robot = std::make_unique<Robot>(around.platform, config, *store,
                                        [this](LogSubject, const std::string& line) { log.push_back(line); });
        robot->Start();
        time.run(3s);
        logOn();
    }
    void logOn() {
        server.says(":srv 001 OrreryServ :Welcome");
        server.says(":OrreryServ!o@h JOIN :#system");
        time.run(1s);
        server.heard();
    }

    void says(const std::string& nick, const std::string& text) {
        server.says(":" + nick + "!u@host PRIVMSG OrreryServ :\1" + text + "\1");
    }
    // What users heard since the last call, as lines of a script; anything else as it was sent.
    Lines heard() {
        static const std::regex date(R"(\d\d/\d\d/\d{4}[_ ]\d\d:\d\d:\d\d)");
        static const std::regex line("(PRIVMSG|NOTICE) (\\S+) :(\1?)([^\1]*)\1?");
        Lines lines;
        for (const std::string& raw : server.heard()) {
            std::smatch part;
            if (!std::regex_match(raw, part, line)) {
                lines.push_back(raw);
                continue;
            }
            const bool special = part[3].length() > 0;
            const std::string kind = part[1] == "NOTICE" ? "(notice) " : special ? "" : "(plain) ";
            lines.push_back(part[2].str() + "< " + kind + std::regex_replace(part[4].str(), date, "DATE"));
        }
        return lines;
    }

    void plays(const Lines& script) {
        Lines expected;
        Lines got;
        const auto compare = [&] {
            for (std::string& line : heard()) got.push_back(std::move(line));
            ASSERT_EQ(got, expected);
            got.clear();
            expected.clear();
        };
        for (const std::string& line : script) {
            const std::size_t mark = line.find_first_of("<>");
            if (line.at(mark) == '<') {
                expected.push_back(line);
                continue;
            }
            ASSERT_NO_FATAL_FAILURE(compare()) << "before " << line;
            says(line.substr(0, mark), line.substr(mark + 2));
            time.run(50ms);
        }
        ASSERT_NO_FATAL_FAILURE(compare());
    }

    // A whole mail of these pieces, as a user's program sends it.
    void sends(const std::string& from, const std::string& to, const std::string& subject,
               const Lines& pieces) {
        Lines script = {from + "> MAIL SENDREQUEST", from + "< MAIL SENDOK",
                        from + "> MAIL SEND " + to + " " + std::to_string(pieces.size()) + " " + subject};
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const bool last = i + 1 == pieces.size();
            script.push_back(from + "< MAIL OK");
            script.push_back(from + "> MAIL " + (last ? "SENT " : "DUMP ") + to + " " + pieces[i]);
        }
        script.push_back(from + "< MAIL SENTDONE");
        plays(script);
    }

    VirtualTime time;
    VirtualNetwork network{time};
    VirtualPlatform around{time, network};
    ScriptedServer& server = network.server("irc.test", 6667);
    RobotConfig config;
    Lines log;
    std::unique_ptr<RobotStore> store;
    std::unique_ptr<Robot> robot;
};

}  // namespace talvora::test
