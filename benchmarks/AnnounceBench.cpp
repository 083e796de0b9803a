// Announcements: a list of ten thousand is read into its window, and one more arrives in such a window. The
// disk is the one in memory; the window's view is measured with the other windows.

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "announce/frmAnnouncements.h"
#include "platform/Text.h"
#include "simulation/VirtualPlatform.h"

namespace {

using namespace talvora;
using Clock = std::chrono::steady_clock;

constexpr int many = 10'000;
constexpr const char* file = "Mail/Announcements.lst";

std::string lineOf(int number) {
    return CStr(number) + " Anna" + CStr(number % 97) + " " + CStr(number % 72) + " 13/03/2026_" +
           CStr(10 + number % 14) + ":00:00 " + CStr(number % 8) +
           " We meet at the usual place[#n]and bring what there is, as every week";
}

class List {
  public:
    List() {
        std::string all;
        for (int number = 1; number <= many; ++number) all += lineOf(number) + "\r\n";
        around_.disk.put(file, all);
        Manager.Start();
        Window.LoadList();
    }

  private:
    test::VirtualTime time_;
    test::VirtualNetwork network_{time_};
    test::VirtualPlatform around_{time_, network_};
    GlobError globError_{around_.platform};
    ComponentSettings settings_{around_.settings};
    HostGate gate_{settings_};
    picAnn panel_;

  public:
    modAnnounceManager Manager{around_.platform, globError_, settings_, gate_, [](const std::string&) {}};
    frmAnnouncements Window{around_.platform, globError_, Manager, panel_};
};

template <class Time>
double in(Clock::duration time) {
    return std::chrono::duration<double, Time>(time).count();
}

// Into an empty window, which is more than into one that shows the same rows.
void load(benchmark::State& state) {
    List list;
    Clock::duration spent{};
    for (auto _ : state) {
        list.Window.ListView1.ListItems.Clear();
        const auto start = Clock::now();
        list.Window.LoadList();
        spent += Clock::now() - start;
    }
    state.counters["value"] = in<std::milli>(spent) / static_cast<double>(state.iterations());
    state.SetLabel("ms");
}

void arrive(benchmark::State& state) {
    List list;
    int number = many;
    const auto start = Clock::now();
    for (auto _ : state) list.Manager.HandleAnnData("ANN " + lineOf(++number));
    state.counters["value"] = in<std::micro>(Clock::now() - start) / static_cast<double>(state.iterations());
    state.SetLabel("us");
}

}  // namespace

BENCHMARK(load)->Name("announce.load_10000_ms");
BENCHMARK(arrive)->Name("announce.arrive_us")->Iterations(500);
