// Prints one figure a line: name, tab, value, tab, unit. Two real clients hand each other a file on one
// processor; the share is what they reach of bare sockets in the same run, the median of several pairs. The
// share of files is what they reach of bare sockets that read and write each block, as they have to.

#include <sched.h>
#include <unistd.h>

#include <QByteArray>
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "Figures.h"
#include "simulation/programs/FileUser.h"
#include "transfer/Bare.h"

namespace talvora::bench {

namespace {

constexpr int pairs = 7;
constexpr int processor = 0;
constexpr std::size_t mebibyte = std::size_t{1} << 20;

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
    double processorSeconds() {
        return processorTime(from_.process().id()) + processorTime(to_.process().id());
    }
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
    std::vector<double> shares, sharesOfFiles, costs;
    for (int pair = 0; pair < pairs; ++pair) {
        const double bare = bareSeconds(block, blocks, processor);
        const double withFiles = bareSeconds(block, blocks, processor, Blocks::OfFiles);
        const double before = transfer.processorSeconds();
        const double seconds = transfer.run(block * blocks);
        shares.push_back(bare / seconds);
        sharesOfFiles.push_back(withFiles / seconds);
        costs.push_back((transfer.processorSeconds() - before) / static_cast<double>(blocks) * 1e6);
    }
    print("transfer.share_" + name, median(shares), "ratio");
    print("transfer.share_of_files_" + name, median(sharesOfFiles), "ratio");
    print("transfer.cpu_us_per_block_" + name, median(costs), "us");
}

void measureMemory() {
    Transfer transfer;
    transfer.blocks(8192);
    transfer.run(1024 * mebibyte);
    print("transfer.rss_mib_sender", transfer.senderMebibytes(), "MiB");
    print("transfer.rss_mib_receiver", transfer.receiverMebibytes(), "MiB");
}

void run() {
    measureShare("1k", 1024, 20'000);
    measureShare("8k", 8192, 10'000);
    measureMemory();
}

}  // namespace

}  // namespace talvora::bench

int main(int argc, char** argv) {
    return talvora::bench::measured(argc, argv, talvora::bench::run);
}
