#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "EngineAccess.h"
#include "irc/wire/WireAdapter.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {

namespace {

using test::VirtualNetwork;
using test::VirtualPlatform;
using test::VirtualTime;

// A typical mix of a busy evening.
std::vector<std::string> typicalLines() {
    const char* const shapes[] = {
        ":Nikos!~Nikos@dsl-17.example.net PRIVMSG #thessaloniki :kalimera se olous, ti kanete simera edo?",
        ":Maria[DND]!~Maria@192.0.2.17 PRIVMSG #thessaloniki :nothing much, just a line of the usual length",
        ":Anna!~Anna@host.example.org PRIVMSG #thessaloniki :\1ACTION waves to everybody in the room\1",
        ":Petros!~P@pool-3.example.com JOIN :#thessaloniki",
        ":Eleni!~E@pool-9.example.com PART #thessaloniki :see you tomorrow",
        ":Kostas!~K@dsl.example.net NICK :Kostas[AWAY]",
        ":irc.example.net 352 me #thessaloniki ~Anna host.example.org irc.example.net Anna H :0 "
        "UL:Work.Pylea",
        ":Yannis!~Y@dsl.example.net QUIT :Quit: good night",
        ":Nikos!~Nikos@dsl-17.example.net PRIVMSG me :a private line, which is about as long as the others",
        "PING :irc.example.net",
    };
    std::vector<std::string> lines;
    for (int i = 0; i < 100; ++i) {
        for (const char* shape : shapes) lines.emplace_back(shape);
    }
    lines.emplace_back(":irc.example.net 315 me * :End of WHO");
    return lines;
}

// An engine with a listener on every event, on no socket.
class Listening {
  public:
    Listening() {
        around_.questions.answerFaults(Answer::Abort);
        engine.SetNickname("me");
        listen(engine.ServerRespond, engine.ServerStrRespond, engine.TextArrived, engine.PMTextArrived,
               engine.SpecialTextArrived, engine.PMSpecialTextArrived, engine.NoticeArrived,
               engine.SpecialNoticeArrived, engine.UserJoinChannel, engine.UserPartChannel, engine.UserQuit,
               engine.UserChangeNick, engine.YouJoinChannel, engine.YouPartChannel, engine.YouChangeNick,
               engine.NamesReceived, engine.WHORespond, engine.ChannelListReply, engine.WhoisReply,
               engine.MOTDReceived, engine.LoginOK, engine.UserNotExist, engine.GlobalUsers,
               engine.LocalUsers, engine.UserIsAway, engine.Bounced, engine.UserKicked, engine.YouAreKicked);
        network_.server("bench.test", 6667).deaf = true;  // hears no PONG, and keeps none
        engine.Connect("bench.test", 6667);
        time_.settle();
    }
    void handle(const std::string& line) { IRCServBench::handle(engine, line); }

  private:
    template <class... Args>
    void listenTo(Event<Args...>& event) {
        on_ += event.connect([this](Args...) { ++heard_; });
    }
    template <class... Events>
    void listen(Events&... events) {
        (listenTo(events), ...);
    }

    VirtualTime time_;
    VirtualNetwork network_{time_};
    VirtualPlatform around_{time_, network_};
    GlobError globError_{around_.platform};
    Random random_;

  public:
    IRCServ engine{around_.platform, globError_, random_, network_.CreateSocket({})};

  private:
    long heard_ = 0;
    Subscriptions on_;
};

void linesPerSecond(benchmark::State& state) {
    Listening listening;
    const auto lines = typicalLines();
    for (auto _ : state) {
        for (const std::string& line : lines) listening.handle(line);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(lines.size()));
    state.SetLabel("lines/s");
}
BENCHMARK(linesPerSecond)->Name("engine.lines_per_s");

void adaptedLinesPerSecond(benchmark::State& state) {
    Listening listening;
    std::string stream;
    long count = 0;
    for (const std::string& line : typicalLines()) {
        stream += line + "\r\n";
        ++count;
    }
    WireProfile profile = WireProfile::standard();
    profile.Encoding = Encoding::UTF8;
    WireAdapter adapter(profile);
    adapter.connectionStarted();
    LineBuffer received;
    std::string line;
    std::string adapted;
    for (auto _ : state) {
        for (std::size_t at = 0; at < stream.size(); at += 16384) {
            adapted.clear();
            adapter.fromServer(std::string_view(stream).substr(at, 16384), adapted);
            received.appendReceived(adapted);
            while (received.takeLine(line)) listening.handle(line);
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.SetLabel("lines/s");
}
BENCHMARK(adaptedLinesPerSecond)->Name("engine.adapted_lines_per_s");

// ---- Costs that must not grow: what an item costs in a large reply over what it costs in a small one

double seconds(const auto& work) {
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best =
            std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

// `perItem(n)` gives the cost of one of n items.
void growth(benchmark::State& state, int small, int large, const auto& perItem) {
    double ratio = 0;
    for (auto _ : state) ratio = perItem(large) / perItem(small);
    state.counters["value"] = ratio;
    state.SetLabel("ratio");
}

void namesGrowth(benchmark::State& state) {
    Listening listening;
    growth(state, 1000, 10000, [&](int count) {
        const int rounds = 100000 / count;
        return seconds([&] {
                   for (int round = 0; round < rounds; ++round) {
                       for (int i = 0; i < count; i += 20) {
                           std::string line = ":srv 353 me = #c :";
                           for (int n = 0; n < 20; ++n) line += "Nick" + std::to_string(i + n) + " ";
                           listening.handle(line);
                       }
                       listening.handle(":srv 366 me #c :End");
                   }
               }) /
               (static_cast<double>(rounds) * count);
    });
}
BENCHMARK(namesGrowth)->Name("engine.names_growth")->Iterations(1);

void whoGrowth(benchmark::State& state) {
    Listening listening;
    growth(state, 1000, 10000, [&](int count) {
        const int rounds = 100000 / count;
        const std::string line = ":srv 352 me #c ~u host.example.org irc.test Nick H :0 UL:Work.Pylea";
        return seconds([&] {
                   for (int round = 0; round < rounds; ++round) {
                       for (int i = 0; i < count; ++i) listening.handle(line);
                       listening.handle(":srv 315 me * :End");
                   }
               }) /
               (static_cast<double>(rounds) * count);
    });
}
BENCHMARK(whoGrowth)->Name("engine.who_growth")->Iterations(1);

void bufferGrowth(benchmark::State& state) {
    growth(state, 1, 16, [&](int mebibytes) {
        const std::string line =
            ":Nikos!~Nikos@dsl.example.net PRIVMSG #c :a line of the usual length here\r\n";
        const std::size_t count = (static_cast<std::size_t>(mebibytes) << 20) / line.size();
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) bytes += line;
        const int rounds = 16 / mebibytes;
        return seconds([&] {
                   for (int round = 0; round < rounds; ++round) {
                       LineBuffer buffer;
                       std::string taken;
                       for (std::size_t at = 0; at < bytes.size(); at += 65536) {
                           buffer.appendReceived(std::string_view(bytes).substr(at, 65536));
                       }
                       while (buffer.takeLine(taken)) benchmark::DoNotOptimize(taken);
                   }
               }) /
               (static_cast<double>(rounds) * static_cast<double>(count));
    });
}
BENCHMARK(bufferGrowth)->Name("engine.buffer_growth")->Iterations(1);

}  // namespace
}  // namespace talvora
