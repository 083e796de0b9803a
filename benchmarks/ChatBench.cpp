// The chat view without a screen: a line through the control characters, the emoticons and the reading of the
// new rich text, at a body of usual length. Run from the project's folder, where the emoticons are.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "chat/IRCWin.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {
namespace {

struct Chat {
    Chat() {
        std::ifstream table("data/System/emoticons.dat", std::ios::binary);
        around.disk.put("System/emoticons.dat",
                        std::string(std::istreambuf_iterator<char>(table), std::istreambuf_iterator<char>()));
        emotions.LoadEmotions();
    }

    void add(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) view.AddIRCLine(line, 3, 2);
    }

    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform around{time, network};
    GlobError globError{around.platform};
    modEmotions emotions{around.files, globError};
    IRCWin view{around.platform, globError, emotions};
};

const std::vector<std::string>& plainLines() {
    static const std::vector<std::string> lines(
        1000, "<Nikos> this is what people write to each other all day long, with a few commas");
    return lines;
}

std::vector<std::string> mixedLines() {
    std::vector<std::string> lines;
    for (int i = 0; i < 1000; ++i) {
        lines.emplace_back(
            "\2<Nikos>\2 \00312,0look at\17 http://www.example.org/page and \0034tell me\17 more");
        if (i % 4 == 0) lines.back() += " :-)";
    }
    return lines;
}

void fill(Chat& chat) {
    for (int i = 0; i < 20; ++i) chat.add(plainLines());
}

void addLines(benchmark::State& state, const std::vector<std::string>& lines) {
    Chat chat;
    fill(chat);
    for (auto _ : state) chat.add(lines);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
    state.SetLabel("lines/s");
}

void addPlainLines(benchmark::State& state) {
    addLines(state, plainLines());
}
BENCHMARK(addPlainLines)->Name("chat.add_lines_per_s");

void addMixedLines(benchmark::State& state) {
    addLines(state, mixedLines());
}
BENCHMARK(addMixedLines)->Name("chat.add_mixed_lines_per_s");

// What a line costs at a full body over what it costs at an empty one.
void fullBodyGrowth(benchmark::State& state) {
    const auto cost = [](bool full) {
        Chat chat;
        fill(chat);
        double best = 1e9;
        for (int i = 0; i < 200; ++i) {
            if (!full) chat.view.Reset();
            const auto start = std::chrono::steady_clock::now();
            chat.add(plainLines());
            best = std::min(best,
                            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
        return best;
    };
    double ratio = 0;
    for (auto _ : state) ratio = cost(true) / cost(false);
    state.counters["value"] = ratio;
    state.SetLabel("ratio");
}
BENCHMARK(fullBodyGrowth)->Name("chat.full_body_growth")->Iterations(1);

}  // namespace
}  // namespace talvora
