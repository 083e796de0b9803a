// Mail: the list of a folder with ten thousand mails, and the encoding of a text.

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

#include "MailFolder.h"

namespace talvora {
namespace {

using Clock = std::chrono::steady_clock;

double secondsOf(const auto& call) {
    const auto begin = Clock::now();
    call();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

constexpr int manyMails = 10'000;

// What is read anew costs this; once it is known, see benchmarks/desktop/Mail.cpp.
void list(benchmark::State& state) {
    MailFolder mails(manyMails);
    double milliseconds = 0;
    for (auto _ : state) {
        auto panel = mails.panel();
        milliseconds = secondsOf([&] { panel->RefreshMailList(); }) * 1000;
        if (panel->ListView3.ListItems.Count() != manyMails) state.SkipWithError("mails are missing");
    }
    state.counters["value"] = milliseconds;
    state.SetLabel("ms");
}

void encode(benchmark::State& state) {
    std::string text;
    while (text.size() < (1 << 20))
        text += "A line of a mail that somebody has written, with a few words.\r\n";
    const MailFile::Letter letter{.To = "Maria", .Subject = "s", .Text = text};
    for (auto _ : state) benchmark::DoNotOptimize(MailFile::OutgoingFile(letter));
    state.counters["value"] = benchmark::Counter(static_cast<double>(text.size()) / (1 << 20),
                                                 benchmark::Counter::kIsIterationInvariantRate);
    state.SetLabel("MiB/s");
}

}  // namespace

BENCHMARK(list)->Name("mail.list_10000_ms")->Iterations(3);
BENCHMARK(encode)->Name("mail.encode_mib_per_s");

}  // namespace talvora
