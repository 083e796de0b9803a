// Channels with many users through the whole session: from the server's line to the lists of users of the
// main window and of the channel's window, its text, the host messages and the list of windows.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "EngineAccess.h"
#include "common/HostMessageNumbers.h"
#include "host/Connect.h"
#include "profile/NetworkProfile.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {
namespace {

constexpr int namesInLine = 20;

class Listeners final : public MessageDatabase {
  public:
    Listeners() {
        hearing_ = MessageBroadcasted.connect([this](const HostMessage&) { ++heard_; });
    }
    void Broadcast(const HostMessage& message) override { MessageBroadcasted.raise(message); }

  private:
    long heard_ = 0;
    Subscription hearing_;
};

// A client that is logged on and has a window open for #talk.
class Session {
  public:
    Session() {
        around_.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\nAWAY|Away|4\r\nBRB|Be right back|4");
        around_.disk.put("System/emoticons.dat", "(sun):=:{\\i sun}\r\n");
        around_.disk.put("System/plugin.lst", "\r\n");
        around_.settings.SaveSetting("Talvora", "Settings", "Nickname", "me");
        network_.server("127.0.0.1", 6667).deaf = true;
        component_.Init(host_, 1);
        HostMessage start;
        start.MsgID = HostMsg::Start;
        start.ToID = 1;
        host_.Broadcast(start);
        time_.run(std::chrono::seconds(3));
        handle(":srv 001 me :Welcome");
        handle(":me!u@h JOIN :#talk");
        component_.Chats().Channels.StartChan("#talk");
        time_.settle();
    }

    void handle(const std::string& line) { IRCServBench::handle(component_.MainWindow()->IRCServ1, line); }
    // The list of windows is redrawn some time after it was asked for.
    void passTime() { time_.run(std::chrono::milliseconds(50)); }

    void names(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) handle(line);
        handle(":srv 366 me #talk :End of /NAMES list.");
    }
    void forgetUsers() { component_.MainWindow()->UserList1.Clear(); }
    // Whether both lists hold so many users.
    bool holds(int count) {
        const frmChanChat* window = component_.Chats().Channels.Window("#talk");
        return window != nullptr && window->UserList1.ListView1.ListItems.Count() == count &&
               component_.MainWindow()->UserList1.ListView1.ListItems.Count() == count;
    }

  private:
    test::VirtualTime time_;
    test::VirtualNetwork network_{time_};
    test::VirtualPlatform around_{time_, network_};
    NetworkProfile profile_;
    Listeners host_;
    Connect component_{HostServices{around_.platform, profile_}};
};

// Names as a network has them: every fourth with a state, every tenth with a mark.
std::vector<std::string> namesLines(int count) {
    const std::string states[] = {"[DND]", "[away]", "[brb]", "[own]"};
    std::vector<std::string> lines;
    for (int n = 0; n < count; ++n) {
        if (n % namesInLine == 0) lines.emplace_back(":srv 353 me = #talk :");
        std::string& line = lines.back();
        if (n % 10 == 0) line += '@';
        (line += "Nikos") += std::to_string(n * 7919 % count);
        if (n % 4 == 0) line += states[n / 4 % 4];
        line += ' ';
    }
    return lines;
}

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void namesReply(benchmark::State& state) {
    Session session;
    const auto lines = namesLines(10'000);
    double best = 1e9;  // of many rounds: what else the machine does is no cost of the session
    for (auto _ : state) {
        session.forgetUsers();
        best = std::min(best, seconds([&] { session.names(lines); }));
        if (!session.holds(10'000)) state.SkipWithError("a list does not hold all users");
    }
    state.counters["value"] = best * 1000;
    state.SetLabel("ms");
}
BENCHMARK(namesReply)->Name("chat.names_10000_ms")->Unit(benchmark::kMillisecond);

// Users who were not there come and, each when twenty more have come, go again.
double passingUsers(Session& session) {
    constexpr int count = 400;
    constexpr int staying = 20;
    std::vector<std::string> lines;
    for (int n = 0; n < count + staying; ++n) {
        if (n < count) lines.push_back(":Maria" + std::to_string(n) + "!~u@host.example.net JOIN :#talk");
        const std::string gone = ":Maria" + std::to_string(n - staying) + "!~u@host.example.net PART #talk :";
        if (n >= staying) lines.push_back(gone);
    }
    return seconds([&] {
        for (const std::string& line : lines) session.handle(line);
        session.passTime();
    });
}

void joinAndPart(benchmark::State& state) {
    Session few;
    Session many;
    few.names(namesLines(100));
    many.names(namesLines(10'000));
    double inFew = 1e9;
    double inMany = 1e9;
    for (auto _ : state) {
        inFew = std::min(inFew, passingUsers(few));
        inMany = std::min(inMany, passingUsers(many));
    }
    if (!few.holds(100) || !many.holds(10'000)) state.SkipWithError("a list does not hold its users");
    state.counters["value"] = inMany / inFew;
    state.SetLabel("ratio");
}
BENCHMARK(joinAndPart)->Name("chat.join_part_growth");

}  // namespace
}  // namespace talvora
