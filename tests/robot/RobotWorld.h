#pragma once
// The robot on virtual time in front of a server that the test plays. Dialogues are written as scripts: in
// "Maria> MAIL OK | MAIL DUMP 1" Maria says "MAIL OK" to the robot and hears "MAIL DUMP 1", and nobody hears
// anything else; plain texts and notices are marked as such. Dates are shown as DATE.

#include <regex>
#include <string>
#include <vector>

#include "Vocabulary.h"
#include "simulation/robot/RobotInWorld.h"

namespace talvora::test {

using Lines = std::vector<std::string>;

struct Timeline {
    VirtualTime time;
    VirtualNetwork network{time};
};

class RobotWorld : public Timeline, public SimulatedRobot {
  public:
    RobotWorld() : SimulatedRobot(time, network, "irc.test") {}

    // Opens the store and logs on. `config` is read here.
    void start() {
        SimulatedRobot::start();
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
    // What users heard since the last call, as "Maria< MAIL OK"; anything else as it was sent.
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
            const std::string kind = part[1] == "NOTICE"    ? "(notice) "
                                     : part[3].length() > 0 ? ""
                                                            : "(plain) ";
            lines.push_back(part[2].str() + "< " + kind + std::regex_replace(part[4].str(), date, "DATE"));
        }
        return lines;
    }
    void plays(const Lines& script) {
        for (const std::string& line : script) {
            const std::string nick = line.substr(0, line.find("> "));
            Lines parts = Split(line.substr(nick.size() + 2), " | ");
            says(nick, parts.empty() ? "" : parts.front());
            if (!parts.empty()) parts.erase(parts.begin());
            for (std::string& part : parts) part.insert(0, nick + "< ");
            time.run(50ms);
            ASSERT_EQ(heard(), parts) << line;
        }
    }
    // A whole mail, as a user's program sends it.
    void sends(const std::string& from, const std::string& to, const std::string& subject,
               const Lines& pieces) {
        Lines script = {
            from + "> MAIL SENDREQUEST | MAIL SENDOK",
            from + "> MAIL SEND " + to + " " + std::to_string(pieces.size()) + " " + subject + " | MAIL OK"};
        for (const std::string& piece : pieces) {
            const bool last = &piece == &pieces.back();
            script.push_back(from + "> MAIL " + (last ? "SENT " : "DUMP ") + to + " " + piece +
                             (last ? " | MAIL SENTDONE" : " | MAIL OK"));
        }
        plays(script);
    }
};

}  // namespace talvora::test
