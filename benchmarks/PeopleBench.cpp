// The end of a reply of who is on line, ten thousand users of five hundred places: from it until the tree and
// the lists hold what differs, without the views.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "BenchSession.h"

namespace talvora {
namespace {

void reply(BenchSession& session, int users, int changed) {
    for (int n = 0; n < users; ++n) {
        const std::string number = std::to_string(n * 7919 % users);
        const std::string nick = "Nikos" + number + (n % 100 < changed ? "[DND]" : "");
        session.handle(":srv 352 me * u host" + number + ".net srv " + nick + " H :0 UL:GR.Town" +
                       std::to_string(n % 500));
    }
}

double shown(BenchSession& session) {
    const auto start = std::chrono::steady_clock::now();
    session.handle(":srv 315 me * :End");
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// One user in a hundred changes his state with each second reply.
void whoReply(benchmark::State& state, int changed) {
    BenchSession session;
    double best = 1e9;
    int round = 0;
    for (auto _ : state) {
        reply(session, 10'000, ++round % 2 == 0 ? changed : 0);
        const double seconds = shown(session);
        if (round > 1) best = std::min(best, seconds);
    }
    state.counters["value"] = best * 1000;
    state.SetLabel("ms");
}
BENCHMARK_CAPTURE(whoReply, same, 0)->Name("people.who_10000_model_ms")->Iterations(20);
BENCHMARK_CAPTURE(whoReply, changed, 1)->Name("people.who_changed_model_ms")->Iterations(20);

}  // namespace
}  // namespace talvora
