// Prints one figure a line: name, tab, value, tab, unit. Two real clients hand each other a file on one
// processor; the share is what they reach of bare sockets in the same run, the median of several pairs.

#include <sched.h>
#include <time.h>
#include <unistd.h>

#include <QByteArray>
#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "simulation/programs/FileUser.h"
#include "transfer/Bare.h"

namespace talvora::bench {

namespace {

constexpr int pairs = 7;
constexpr int processor = 0;
constexpr std::size_t mebibyte = std::size_t{1} << 20;

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void print(const std::string& name, double value, const char* unit) {
    std::printf("%s\t%.6g\t%s\n", name.c_str(), value, unit);
    std::fflush(stdout);
}

double processorTime(programs::FileUser& user) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(user.process().id(), &clock) != 0 || clock_gettime(clock, &time) != 0) {
        throw programs::Missing("the processor time of the program");
    }
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void keep(programs::FileUser& user) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    ::sched_setaffinity(user.process().id(), sizeof set, &set);
}

class Transfer {
  public:
    // Seconds by the clock for a file of so many bytes, without what comes before and behind it.
    double run(std::size_t size) {
        if (size != size_) path_ = makeFile(size_ = size);
        from_.offer(to_, path_, to_.address());
        to_.order("accept");
        const double start = to_.expect("receiver Initializing");
        const double end = to_.expect("received file: Received", programs::Milliseconds(300'000));
        to_.expect("receiver hidden");
        from_.expect("sender gone");
        return end - start;
    }
    void blocks(std::size_t size) { from_.order("block " + std::to_string(size)); }
    void onOneProcessor() {
        keep(from_);
        keep(to_);
    }
    double processorSeconds() { return processorTime(from_) + processorTime(to_); }
    double senderMebibytes() const { return from_.peakMebibytes(); }
    double receiverMebibytes() const { return to_.peakMebibytes(); }

  private:
    // But for a very large one, the system has the file at hand.
    std::string makeFile(std::size_t size) {
        const std::string bytes(std::min(size, 128 * mebibyte), 'x');
        const std::string path = from_.folder().write("file", bytes);
        std::filesystem::resize_file(path, size);
        return path;
    }

    std::string path_;
    std::size_t size_ = 0;  // of the file there
    programs::FileUser from_{{.nick = "Anna"}};
    programs::FileUser to_{{.nick = "Nikos"}};
};

// What is measured is the transfer, not the disk: both clients live in memory, if there is such a folder.
struct InMemory {
    InMemory() {
        if (::access("/dev/shm", W_OK) == 0) qputenv("TMPDIR", "/dev/shm");
    }
    ~InMemory() { before.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before); }
    const QByteArray before = qgetenv("TMPDIR");
};

void measureShare(const std::string& name, std::size_t block, std::size_t blocks) {
    const InMemory memory;
    Transfer transfer;
    transfer.onOneProcessor();
    transfer.blocks(block);
    std::vector<double> shares, costs;
    for (int pair = 0; pair < pairs; ++pair) {
        const double bare = bareSeconds(block, blocks, processor);
        const double before = transfer.processorSeconds();
        const double seconds = transfer.run(block * blocks);
        shares.push_back(bare / seconds);
        costs.push_back((transfer.processorSeconds() - before) / static_cast<double>(blocks) * 1e6);
    }
    print("transfer.share_" + name, median(shares), "ratio");
    print("transfer.cpu_us_per_block_" + name, median(costs), "us");
}

void measureMemory() {
    Transfer transfer;
    transfer.blocks(8192);
    transfer.run(1024 * mebibyte);
    print("transfer.rss_mib_sender", transfer.senderMebibytes(), "MiB");
    print("transfer.rss_mib_receiver", transfer.receiverMebibytes(), "MiB");
}

int run() {
    measureShare("1k", 1024, 20'000);
    measureShare("8k", 8192, 10'000);
    measureMemory();
    return 0;
}

}  // namespace

}  // namespace talvora::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        return talvora::bench::run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
