#pragma once
// An adapter between two ends that a test plays: lines in, lines out.

#include <string>
#include <vector>

#include "irc/wire/WireAdapter.h"

namespace talvora::test {

using Lines = std::vector<std::string>;

inline Lines linesOf(const std::string& bytes) {
    Lines lines;
    std::size_t begin = 0;
    for (auto end = bytes.find("\r\n"); end != std::string::npos; end = bytes.find("\r\n", begin)) {
        lines.push_back(bytes.substr(begin, end - begin));
        begin = end + 2;
    }
    if (begin < bytes.size()) lines.push_back(bytes.substr(begin) + " (unfinished)");
    return lines;
}

inline WireProfile dialect(const std::string& value, Encoding encoding = Encoding::CP1253) {
    WireProfile profile;
    const auto complaint = parseDialect(value, profile);
    if (complaint) throw std::invalid_argument(*complaint);
    profile.Encoding = encoding;
    return profile;
}

class WireWorld {
  public:
    explicit WireWorld(const WireProfile& profile) : adapter(profile) { adapter.connectionStarted(); }
    explicit WireWorld(const std::string& value) : WireWorld(dialect(value)) {}

    // What the engine reads of it.
    Lines says(const std::string& line) { return arrives(line + "\r\n"); }
    Lines saysAll(const Lines& lines) {
        std::string bytes;
        for (const auto& line : lines) bytes += line + "\r\n";
        return arrives(bytes);
    }
    Lines arrives(const std::string& bytes) {
        std::string toEngine;
        adapter.fromServer(bytes, toEngine);
        return linesOf(toEngine);
    }
    // What the server gets of it; lines for the engine are in `answers`.
    Lines sends(const std::string& line, Microseconds now = 0) {
        std::string toServer;
        std::string toEngine;
        adapter.fromEngine(line + "\r\n", now, toServer, toEngine);
        answers = linesOf(toEngine);
        return linesOf(toServer);
    }
    Lines ticks(Microseconds now) {
        std::string toServer;
        adapter.tick(now, toServer);
        return linesOf(toServer);
    }

    // As Nikos, with the prefix of 22 bytes, in #thes.
    WireWorld& loggedOn() {
        sends("NICK Nikos");
        says(":irc.talvora.test 001 Nikos :Welcome Nikos!~Nikos@127.0.0.1");
        says(":Nikos!~Nikos@127.0.0.1 JOIN :#thes");
        return *this;
    }

    WireAdapter adapter;
    Lines answers;
};

}  // namespace talvora::test
