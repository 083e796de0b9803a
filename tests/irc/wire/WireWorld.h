#pragma once
// An adapter between two ends that a test plays. In what goes in and comes out, "|" is the end of a line.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "irc/wire/WireAdapter.h"

namespace talvora::test {

inline std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

inline WireProfile dialect(const std::string& value, Encoding encoding = Encoding::CP1253) {
    WireProfile profile;
    EXPECT_EQ(parseDialect(value, profile), std::nullopt);
    profile.Encoding = encoding;
    return profile;
}

class WireWorld {
  public:
    explicit WireWorld(const WireProfile& profile) : adapter(profile) { adapter.connectionStarted(); }
    explicit WireWorld(const std::string& value) : WireWorld(dialect(value)) {}

    // What the engine reads of it.
    std::string says(const std::string& lines) {
        std::string toEngine;
        adapter.fromServer(replaced(lines, "|", "\r\n"), toEngine);
        return replaced(toEngine, "\r\n", "|");
    }
    // What the server gets of it, and of what waited for this time; lines for the engine are in `answers`.
    std::string sends(const std::string& lines) {
        std::string toServer;
        adapter.fromEngine(replaced(lines, "|", "\r\n"), now, toServer, answers);
        adapter.tick(now, toServer);
        return replaced(toServer, "\r\n", "|");
    }

    // As Nikos, with the prefix of 22 bytes, in #thes.
    WireWorld& loggedOn() {
        sends("NICK Nikos|");
        says(
            ":irc.talvora.test 001 Nikos :Welcome Nikos!~Nikos@127.0.0.1|:Nikos!~Nikos@127.0.0.1 JOIN "
            ":#thes|");
        return *this;
    }

    Microseconds now = 0;
    WireAdapter adapter;
    std::string answers;
};

// A rewrite's name, lines before and lines after. Each row holds with that rewrite alone and together with
// the others, and without it nothing happens. (Replies that are kept back would hide what becomes of their
// lines.)
using Rewritten = std::tuple<std::string, std::string, std::string>;
inline void expectEach(std::string (WireWorld::*way)(const std::string&),
                       const std::vector<Rewritten>& rows) {
    for (const auto& [rewrite, before, after] : rows) {
        EXPECT_EQ((WireWorld("plain +" + rewrite).loggedOn().*way)(before), after) << rewrite;
        EXPECT_EQ((WireWorld("standard -one-reply-at-a-time").loggedOn().*way)(before), after) << "all";
        EXPECT_EQ((WireWorld("plain +length").loggedOn().*way)(before), before) << "without " << rewrite;
    }
}

}  // namespace talvora::test
