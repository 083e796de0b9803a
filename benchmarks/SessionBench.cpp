// Channels with many users through the whole session: from the server's line to the lists of users of the
// main window and of the channel's window, its text, the host messages and the list of windows.

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <string>
#include <vector>

#include "BenchSession.h"

namespace talvora {
namespace {

constexpr int namesInLine = 20;

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

double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Of the processor: what else the machine does is no cost of ours.
double seconds(const auto& work) {
    const double start = processorTime();
    work();
    return processorTime() - start;
}

void namesReply(benchmark::State& state) {
    BenchSession session;
    const auto lines = namesLines(10'000);
    double best = 1e9;  // of many rounds: what else the machine does is no cost of the session
    for (auto _ : state) {
        session.forgetUsers();
        best = std::min(best, seconds([&] {
                            session.names(lines);
                            for (int turn = 0; turn < 100 && !session.holds(10'000); ++turn)
                                session.passTurn();
                        }));
        if (!session.holds(10'000)) state.SkipWithError("a list does not hold all users");
    }
    state.counters["value"] = best * 1000;
    state.SetLabel("ms");
}
BENCHMARK(namesReply)->Name("chat.names_10000_ms")->Unit(benchmark::kMillisecond);

// The longest turn of the loop from the end of a names list of a hundred thousand on, until all are shown.
void longestTurn(benchmark::State& state) {
    BenchSession session;
    session.roomForAll();
    const auto lines = namesLines(100'000);
    double best = 1e9;
    for (auto _ : state) {
        session.forgetUsers();
        for (const std::string& line : lines) session.handle(line);
        double longest = seconds([&] { session.handle(":srv 366 me #talk :End of /NAMES list."); });
        for (int turn = 0; turn < 100 && !session.holds(100'000); ++turn)
            longest = std::max(longest, seconds([&] { session.passTurn(); }));
        if (!session.holds(100'000)) state.SkipWithError("a list does not hold all users");
        best = std::min(best, longest);
    }
    state.counters["value"] = best * 1000;
    state.SetLabel("ms");
}
BENCHMARK(longestTurn)->Name("names.366_100000_block_ms");

// Users who were not there come and, each when twenty more have come, go again.
double passingUsers(BenchSession& session) {
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
    BenchSession few;
    BenchSession many;
    few.names(namesLines(100));
    many.names(namesLines(10'000));
    many.passTime();
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
