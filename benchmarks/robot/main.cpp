// Prints one figure a line: name, tab, value, tab, unit. Each is the median of several runs, each with a
// robot and a store of its own.

#include <chrono>
#include <csignal>
#include <string>
#include <unordered_map>
#include <vector>

#include "Figures.h"
#include "robot/CrowdServer.h"
#include "simulation/programs/Network.h"

namespace talvora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int runs = 3;
constexpr int senders = 50;
constexpr int readers = 1000;
constexpr int mailsForEach = 5;
constexpr int mails = readers * mailsForEach;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string readerName(int number) {
    return "reader" + std::to_string(number);
}

// The robot's process in a folder of its own.
class RobotProcess {
  public:
    explicit RobotProcess(const CrowdServer& server)
        : process_(program(folder_.write("orreryserv.ini",
                                         programs::robotConfig(server.port(), 0, folder_ / "robot.db")))) {}
    ~RobotProcess() {
        process_.signal(SIGTERM);
        process_.waitExit();
    }
    pid_t id() const { return process_.id(); }

  private:
    static programs::Program program(const std::string& config) {
        programs::Program result;
        result.arguments = {programs::builtProgram("orreryserv"), "--config", config};
        return result;
    }

    programs::Folder folder_;
    programs::Process process_;
};

// All senders at once, each with one mail of three pieces after the other, until each reader has his mails.
double sendMails(CrowdServer& server) {
    const std::string piece(150, 'x');
    std::unordered_map<std::string, std::pair<std::string, int>> mailOf;  // recipient, and what is next
    int begun = 0, kept = 0;
    const auto request = [&](const std::string& nick) {
        if (begun == mails) return;
        mailOf[nick] = {readerName(begun++ % readers), 0};
        server.say(nick, "MAIL SENDREQUEST");
    };
    server.answered = [&](std::string_view nickView, std::string_view text) {
        const std::string nick(nickView);
        auto& [to, next] = mailOf[nick];
        if (text == "MAIL SENTDONE") {
            ++kept;
            request(nick);
        } else if (text == "MAIL SENDOK") {
            server.say(nick, "MAIL SEND " + to + " 3 Mail " + std::to_string(begun) + " of " + nick);
        } else if (text == "MAIL OK") {
            server.say(nick, (++next < 3 ? "MAIL DUMP " : "MAIL SENT ") + to + " " + piece);
        } else {
            throw programs::Missing("the robot says " + std::string(text));
        }
    };
    const auto start = Clock::now();
    for (int i = 0; i < senders; ++i) request("sender" + std::to_string(i));
    server.serve([&] { return kept == mails; }, "the confirmations");
    return mails / secondsSince(start);
}

// Each reader has asked and been told the first of his mails, and reads on from there later.
void beginReading(CrowdServer& server) {
    int begun = 0;
    server.answered = [&](std::string_view, std::string_view text) {
        begun += text.starts_with("MAIL START ");
    };
    for (int i = 0; i < readers; ++i) server.say(readerName(i), "MAIL 0 0");
    server.serve([&] { return begun == readers; }, "the beginnings of all mails");
}

// One line at a time, from its leaving to the arrival of its answer, in microseconds.
double answerTime(CrowdServer& server) {
    std::vector<double> times;
    bool came = false;
    server.answered = [&](std::string_view, std::string_view text) {
        came = came || text.starts_with("MAIL DUMP ");
    };
    for (int line = 0; line < 3; ++line) {
        for (int i = 0; i < readers; ++i) {
            came = false;
            const auto start = Clock::now();
            server.say(readerName(i), "MAIL OK");
            server.serve([&] { return came; }, "a piece");
            times.push_back(secondsSince(start) * 1e6);
        }
    }
    return median(std::move(times));
}

void run() {
    CrowdServer server;
    std::vector<double> rate, memory, answer;
    for (int i = 0; i < runs; ++i) {
        const RobotProcess robot(server);
        server.logOn();
        rate.push_back(sendMails(server));
        beginReading(server);
        memory.push_back(residentMebibytes(robot.id()));
        answer.push_back(answerTime(server));
    }
    print("robot.mails_per_s", median(rate), "mails/s");
    print("robot.rss_1000_users_mib", median(memory), "MiB");
    print("robot.answer_us", median(answer), "us");
}

}  // namespace

}  // namespace talvora::bench

int main(int argc, char** argv) {
    return talvora::bench::measured(argc, argv, talvora::bench::run);
}
