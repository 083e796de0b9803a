// The wire adapter, both directions. The first four bytes choose encoding, rewrites and cuts; then each piece
// goes one way or the other. What comes out must be whole lines, and bounded.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "irc/wire/WireAdapter.h"

namespace {

using namespace talvora;

WireProfile profileOf(std::uint8_t a, std::uint8_t b, std::uint8_t c) {
    WireProfile profile;
    profile.Encoding = (a & 1U) != 0 ? Encoding::UTF8 : Encoding::CP1253;
    profile.RemoveTags = (a & 2U) != 0;
    const auto bits = static_cast<unsigned>(b) | static_cast<unsigned>(c) << 8U;
    profile.Rewrites = (a & 4U) != 0 ? WireProfile::standard().Rewrites ^ RewriteSet(bits) : RewriteSet(bits);
    return profile;
}

void check(bool holds) {
    if (!holds) std::abort();
}

void checkLines(const std::string& text) {
    check(text.empty() || text.substr(text.size() - 2) == "\r\n");
}

void checkLengths(std::string_view text) {
    while (!text.empty()) {
        const auto end = text.find("\r\n");
        check(end <= Outgoing::LongestSent);
        text.remove_prefix(end + 2);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const auto profile = profileOf(data[0], data[1], data[2]);
    const std::size_t cut = data[3];
    std::string_view text(reinterpret_cast<const char*>(data) + 4, size - 4);
    WireAdapter adapter(profile);
    adapter.connectionStarted();
    std::string toEngine;
    std::string toServer;
    Microseconds now = 0;
    for (std::size_t i = 0; !text.empty(); ++i) {
        // A piece that begins with ">" is the engine's.
        const bool fromEngine = text[0] == '>';
        if (fromEngine) text.remove_prefix(1);
        const auto piece = text.substr(0, cut == 0 ? text.find('\n', 1) : 1 + (i * 7 + cut) % cut);
        text.remove_prefix(piece.size());
        if (fromEngine) {
            adapter.fromEngine(piece, now, toServer, toEngine);
        } else {
            adapter.fromServer(piece, toEngine);
        }
        adapter.tick(now += 100'000, toServer);
        if (!profile.isPlain()) {
            checkLines(toEngine);
            checkLines(toServer);
        }
        if (profile.has(Rewrite::Length)) checkLengths(toServer);
    }
    check(toEngine.size() <= 32 * size + 4096);
    check(adapter.own().channels() <= OwnState::MostChannels);
    adapter.connectionEnded();
    return 0;
}
