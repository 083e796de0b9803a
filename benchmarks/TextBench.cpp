// The text functions of the run-time. Items are what the name says: texts cut, bytes converted, look-ups
// made.

#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/CodePage1253.h"
#include "platform/Text.h"

namespace talvora {
namespace {

const char* const line =
    "352 Nikos #greek ~nikos host.example.org irc.example.org Maria[afk] H :0 Maria from Patras";

std::string greekText() {
    std::string text;
    while (text.size() < 4096)
        text += "\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1 \xF3\xE5 \xFC\xEB\xEF\xF5\xF2, hello; ";
    return text;
}

void countItems(benchmark::State& state, std::size_t perRound) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(perRound));
}

void split(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Split(line, " "));
    countItems(state, 1);
}
BENCHMARK(split)->Name("text.split");

void splitAgain(benchmark::State& state) {
    std::vector<std::string> pieces;
    for (auto _ : state) {
        splitInto(pieces, line, " ");
        benchmark::DoNotOptimize(pieces.data());
    }
    countItems(state, 1);
}
BENCHMARK(splitAgain)->Name("text.split_into");

void upperCase(benchmark::State& state) {
    const std::string text = greekText();
    for (auto _ : state) benchmark::DoNotOptimize(UCase(text));
    countItems(state, text.size());
}
BENCHMARK(upperCase)->Name("text.ucase_bytes");

void replace(benchmark::State& state) {
    const std::string text =
        "{NICK}\1{HOST}\1{REAL}\1{CHANS}\1{SERVER}\1{AWAYDESC}\1{IDLE}\1{SIGNON}\1{ISADMIN}";
    for (auto _ : state) benchmark::DoNotOptimize(Replace(text, "{SERVER}", "irc.example.org"));
    countItems(state, 1);
}
BENCHMARK(replace)->Name("text.replace");

void replaceAsText(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Replace(line, "MARIA", "Anna", Compare::Text));
    countItems(state, 1);
}
BENCHMARK(replaceAsText)->Name("text.replace_as_text");

void toWire(benchmark::State& state) {
    const std::string text = greekText();
    for (auto _ : state) benchmark::DoNotOptimize(toUtf8(text));
    countItems(state, text.size());
}
BENCHMARK(toWire)->Name("text.to_utf8_bytes");

void fromWire(benchmark::State& state) {
    const std::string text = toUtf8(greekText());
    for (auto _ : state) benchmark::DoNotOptimize(fromUtf8(text));
    countItems(state, text.size());
}
BENCHMARK(fromWire)->Name("text.from_utf8_bytes");

void fromPlainWire(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(fromUtf8(line));
    countItems(state, 1);
}
BENCHMARK(fromPlainWire)->Name("text.from_utf8_plain_lines");

void lookUp(benchmark::State& state) {
    std::unordered_map<std::string, std::string, TextHash, TextEqual> table;
    for (int i = 0; i < 1000; ++i) table.emplace("Settings\nChan_#channel" + CStr(i), "T");
    for (auto _ : state) benchmark::DoNotOptimize(table.find(std::string_view("SETTINGS\nCHAN_#CHANNEL500")));
    countItems(state, 1);
}
BENCHMARK(lookUp)->Name("text.look_up_as_text");

}  // namespace
}  // namespace talvora
