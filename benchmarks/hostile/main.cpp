// The highest memory of a client whose server names users, channels and WHO lines without end. A process of
// its own, so that nothing else counts.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

#include "BenchSession.h"

namespace {

constexpr std::size_t longLine = 200'000;  // a server's line may have 256 KiB
constexpr int mostPieces = 130'000;        // and a reply 128 Ki names or lines

// In MiB, from the system's own account.
double highestMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kib = 0;
        if (word == "VmHWM:" && status >> kib) return kib / 1024;
    }
    return -1;
}

// A names list as long as it is taken, of users that no other channel has.
void fill(talvora::BenchSession& session, const std::string& channel, std::size_t nickLength) {
    const std::string head = ":srv 353 me = " + channel + " :";
    std::string line = head;
    std::size_t bytes = 0;
    for (int n = 0; n < mostPieces && bytes < (15U << 20); ++n) {
        std::string nick = channel.substr(1) + std::to_string(n);
        nick.resize(std::max(nick.size(), nickLength), 'x');
        (line += nick) += ' ';
        bytes += nick.size() + 1;
        if (line.size() < longLine) continue;
        session.handle(line);
        line = head;
    }
    session.handle(line);
    session.handle(":srv 366 me " + channel + " :End");
    for (int turn = 0; turn < 100; ++turn) session.passTurn();
}

}  // namespace

int main() {
    talvora::BenchSession session;
    for (int n = 0; n < 8; ++n) {
        const std::string channel = "#c" + std::to_string(n);
        session.open(channel);
        fill(session, channel, n % 2 == 0 ? 0 : 100);
    }
    for (int n = 0; n < 30'000; ++n) session.handle(":x!u@h JOIN :#d" + std::to_string(n));
    for (int n = 0; n < mostPieces; ++n)
        session.handle(":srv 322 me #l" + std::to_string(n) + " 1 :" + std::string(90, 't'));
    session.handle(":srv 323 me :End");
    for (int n = 0; n < mostPieces; ++n)
        session.handle(":srv 352 me * user host.example.org srv n" + std::to_string(n) +
                       " H :0 UL:Work.Pylea");
    session.handle(":srv 315 me * :End");
    fill(session, "#last", 100);
    std::printf("names.hostile_rss_mib\t%.0f\tMiB\n", highestMemory());
    return 0;
}
