// The reader of rich text without a screen: a whole document as chat windows make it, and one line more of a
// body that is shown.

#include <benchmark/benchmark.h>

#include <string>

#include "platform/rich/RichDocument.h"

namespace talvora {
namespace {

const std::string head =
    "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 "
    "Tahoma;}}\r\n{\\colortbl "
    ";\\red255 \\green255\\blue255;\\red0 \\green0\\blue0;\\red0 \\green0\\blue128;}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs17 ";
const std::string tail = "\r\n\\par }";
const std::string lineEnd = "\\par\r\n ";
const std::string plainLine =
    "\\cf2 \\highlight1 <Nikos> this is what people write to each other all day long, with a few "
    "commas\\cf0\\highlight0";

// Five hundred bytes behind the header of a picture.
std::string pictureText() {
    std::string text =
        "{\\pict\\pngblip\\picw16\\pich16\\picwgoal240\\pichgoal240 "
        "89504e470d0a1a0a0000000d494844520000001000000010";
    for (int i = 0; i < 500; ++i) text += "0123456789abcdef"[i * 7 % 16], text += "fe3107"[i % 6];
    return text + "}";
}

std::string chatDocument() {
    const std::string picture = pictureText();
    std::string text = head;
    for (int i = 0; text.size() < (1U << 20); ++i) {
        text += plainLine + lineEnd;
        text +=
            "\\cf3 \\highlight1 \\b <\xCD\xDF\xEA\xEF\xF2>\\b0  \xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1 "
            "\xF3\xE5 \xFC\xEB\xEF\xF5\xF2, \\ul www.example.org\\ul0 \\cf0\\highlight0" +
            lineEnd;
        if (i % 20 == 0) text += picture + lineEnd;
    }
    return text + tail;
}

void readDocument(benchmark::State& state) {
    const std::string text = chatDocument();
    RichDocument document;
    for (auto _ : state) document.Read(text);
    const double size = static_cast<double>(text.size()) / (1 << 20);
    state.counters["value"] = benchmark::Counter(size, benchmark::Counter::kIsIterationInvariantRate);
    state.SetLabel("MiB/s");
}
BENCHMARK(readDocument)->Name("rtf.read_mib_per_s");

void showLines(benchmark::State& state) {
    RichBody body;
    RichDocument document;
    for (auto _ : state) {
        body.Append(plainLine);
        body.Append(lineEnd);
        document.Show(head, body, tail);
        if (body.Length() > (1U << 20)) body.CutFirstLine();
    }
    state.SetItemsProcessed(state.iterations());
    state.SetLabel("lines/s");
}
BENCHMARK(showLines)->Name("rtf.shown_lines_per_s");

}  // namespace
}  // namespace talvora
