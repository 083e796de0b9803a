// The cost of a server's line in the wire adapter, dialect standard in UTF-8.
#include <benchmark/benchmark.h>

#include <string>

#include "irc/wire/WireAdapter.h"

namespace {

using namespace talvora;

// A busy channel: mostly texts, some in Greek, some who come and go, a names list now and then.
std::string busyChannel(int& lines) {
    static constexpr const char* texts[] = {
        ":Maria!~maria@host-12.example.org PRIVMSG #thes :good morning to all of you, how was the "
        "week-end?\r\n",
        ":Eleni[AWAY]!~eleni@10.2.3.4 PRIVMSG #thes "
        ":\xCE\xBA\xCE\xB1\xCE\xBB\xCE\xB7\xCE\xBC\xCE\xAD\xCF\x81\xCE\xB1 "
        "\xCF\x83\xCE\xB5 \xCF\x8C\xCE\xBB\xCE\xBF\xCF\x85\xCF\x82\r\n",
        ":Anna!~anna@10.2.3.5 PRIVMSG Nikos :\x01PING 1234\x01\r\n",
        ":Petros!~petros@10.2.3.6 JOIN :#thes\r\n",
        ":irc.talvora.test 353 Nikos = #thes :@Nikos Maria Eleni[AWAY] Anna %Petros Kostas Dimitra\r\n",
        ":irc.talvora.test 366 Nikos #thes :End of NAMES list\r\n",
        ":Op!~op@10.2.3.7 MODE #thes +v Maria\r\n",
        ":Kostas!~kostas@10.2.3.8 QUIT :Quit: bye\r\n",
    };
    std::string text;
    for (int round = 0; round < 100; ++round) {
        for (int i = 0; i < 4; ++i) text += texts[0];
        for (const auto* line : texts) text += line;
        lines += 12;
    }
    return text;
}

void adapterLines(benchmark::State& state) {
    auto profile = WireProfile::standard();
    profile.Encoding = Encoding::UTF8;
    WireAdapter adapter(profile);
    adapter.connectionStarted();
    int lines = 0;
    const std::string text = busyChannel(lines);
    std::string toEngine;
    for (auto _ : state) {
        toEngine.clear();
        adapter.fromServer(text, toEngine);
        benchmark::DoNotOptimize(toEngine.data());
    }
    state.SetItemsProcessed(state.iterations() * lines);
}
BENCHMARK(adapterLines)->Name("adapter.lines");

}  // namespace
