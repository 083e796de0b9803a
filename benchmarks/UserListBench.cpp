// The list of users: a names reply of ten thousand, and what a user who comes and one who goes cost in a long
// list against a short one.

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "chat/UserList.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {
namespace {

struct Bench {
    Bench() {
        around.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\nAWAY|Away|4\r\nBRB|Be right back|4");
        decode.LoadPerflixes();
    }
    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform around{time, network};
    GlobError globError{around.platform};
    modNickDecode decode{globError, around.files};
    UserList list{around.platform, globError, decode};
};

// Names as a network has them: every fourth with a state, every tenth with a mark.
std::vector<std::string> names(int count) {
    const std::string states[] = {"[DND]", "[away]", "[brb]", "[own words]"};
    std::vector<std::string> all;
    for (int n = 0; n < count; ++n) {
        std::string name = n % 10 == 0 ? "@" : "";
        (name += "Nikos") += std::to_string(n * 7919 % count);
        if (n % 4 == 0) name += states[n / 4 % 4];
        all.push_back(std::move(name));
    }
    return all;
}

double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Of the processor: what else the machine does is no cost of ours.
double seconds(const std::function<void()>& work) {
    const double start = processorTime();
    work();
    return processorTime() - start;
}

void namesReply(benchmark::State& state) {
    Bench bench;
    bench.list.AtOnce = 10'000;
    const std::vector<std::string> all = names(10'000);
    double best = 1e9;  // of many rounds: what else the machine does is no cost of the list
    for (auto _ : state) best = std::min(best, seconds([&] { bench.list.ListNames(all, "#channel"); }));
    state.counters["value"] = best * 1000;
    state.SetLabel("ms");
}
BENCHMARK(namesReply)->Name("chat.userlist_names_10000_ms");

// Users who were not there come and, each when five hundred more have come, go again.
double passingUsers(UserList& list) {
    constexpr int count = 2000;
    constexpr std::size_t staying = 500;
    std::vector<std::string> users;
    for (int n = 0; n < count; ++n) users.push_back("Maria" + std::to_string(n));
    return seconds([&] {
        for (std::size_t n = 0; n < users.size() + staying; ++n) {
            if (n < users.size()) list.Add(users[n], "#channel");
            if (n >= staying) list.Part(users[n - staying], "#channel");
        }
    });
}

void joinAndPart(benchmark::State& state) {
    Bench few;
    Bench many;
    few.list.ListNames(names(100), "#channel");
    many.list.AtOnce = 10'000;
    many.list.ListNames(names(10'000), "#channel");
    double inFew = 1e9;
    double inMany = 1e9;
    for (auto _ : state) {
        inFew = std::min(inFew, passingUsers(few.list));
        inMany = std::min(inMany, passingUsers(many.list));
    }
    state.counters["value"] = inMany / inFew;
    state.SetLabel("ratio");
}
BENCHMARK(joinAndPart)->Name("chat.userlist_join_part_growth");

}  // namespace
}  // namespace talvora
