// Files between real clients: what arrives, byte for byte, and what is left when a side or the line goes.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "simulation/programs/FileRelay.h"
#include "simulation/programs/FileUser.h"
#include "simulation/programs/Network.h"

namespace talvora::programs {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t noLimit = ~std::size_t{0};
constexpr const char* lineLost = ": The connection was lost";

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(file), {}};
}

// Any bytes, but not the one that a delimiter begins with.
std::string anyBytes(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(2 + random() % 254);
    return bytes;
}

// What of a file arrives: whole blocks, the last filled up with blanks, but for a single byte behind them.
std::string asReceived(std::string content, std::size_t block) {
    const std::size_t blocks = content.size() < 2 ? 1 : (content.size() - 2) / block + 1;
    content.resize(blocks * block, ' ');
    return content;
}

// From the offer to the stored file.
void expectGoodTransfer(FileUser& from, FileUser& to) {
    const std::string content = anyBytes(3000);
    from.offer(to, from.folder().write("honest", content), to.address());
    to.order("accept");
    from.expect("sender gone");
    to.expect("receiver hidden");
    EXPECT_EQ(contentOf(to.received("honest")), asReceived(content, 1024));
}

class FileBlocks : public testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Of, FileBlocks, testing::Values(512, 1024, 8192));

TEST_P(FileBlocks, AllSizesArriveAsTheProtocolHasIt) {
    const std::size_t block = GetParam();
    FileUser anna({.nick = "Anna"}), nikos;
    anna.order("block " + std::to_string(block));
    std::string paths;
    const std::size_t sizes[] = {0, 1, block - 1, block, block + 1, 1500, std::size_t{10} << 20};
    for (const std::size_t size : sizes)
        paths += "|" + anna.folder().write(std::to_string(size), anyBytes(size));
    anna.offer(nikos, paths.substr(1), nikos.address());
    nikos.order("accept");
    nikos.expect("receiver hidden", 6 * Patience);
    anna.expect("sender gone");
    for (const std::size_t size : sizes) {
        EXPECT_EQ(contentOf(nikos.received(std::to_string(size))), asReceived(anyBytes(size), block)) << size;
    }
    EXPECT_EQ(contentOf(nikos.received(std::to_string(block + 1))).size(), block);
}

TEST(Files, GoFromTheQuestionForTheAddressToTheFolder) {
    if (const auto reason = Network::whyNot(); !reason.empty()) GTEST_SKIP() << reason;
    const std::string addresses = ownAddress();
    Network network({.addressHost = addresses, .addressListen = addresses, .addressPort = 37183});
    // The address server sees whoever comes over loopback there.
    FileUser nikos({.nick = "Nikos", .address = "127.0.0.1", .serverPort = network.port()});
    FileUser anna({.nick = "Anna", .serverPort = network.port()});
    for (FileUser* user : {&nikos, &anna}) user->expect("numeric 366");
    std::string paths;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "φωτο no " + std::to_string(i);
        paths += "|" + anna.folder().write(name, name);
    }
    anna.order("offer Nikos" + paths);
    anna.expect("address 127.0.0.1");
    anna.order("send");
    nikos.expect("asked User Anna is sending you 40 file(s).");
    EXPECT_TRUE(fs::is_empty(nikos.received("")));
    nikos.order("accept");
    nikos.expect("received φωτο no 39: Received");
    anna.expect("sender gone");
    for (int i = 0; i < 40; ++i) {
        const std::string name = "φωτο no " + std::to_string(i);
        EXPECT_EQ(contentOf(nikos.received(name)), asReceived(name, 1024));
    }
}

TEST(Files, OfTwoGibibytesAreRefusedInWordsAndAFullDiskIsTold) {
    FileUser anna({.nick = "Anna"});
    const std::string huge = anna.folder().write("huge", "");
    fs::resize_file(huge, std::uintmax_t{1} << 31);
    anna.order("offer |" + huge);
    anna.expect("\"huge\" has 2.00 Gb; files of 2 Gb and more can't be sent.");
    anna.order("send " + anna.address());
    anna.expect("there is nothing to send");
    // A small disk, or where nobody may mount one, a bound to the size of files.
    const bool mayMount = std::system("unshare -rm true 2>/dev/null") == 0;
    FileUser nikos({.within = mayMount
                                  ? "exec unshare -rm sh -c 'mkdir -p \"$2/data\"; mount -t tmpfs -o size=2m "
                                    "tmpfs \"$2/data\"; exec \"$@\"' sh"
                                  : "ulimit -f 4096; exec"});
    anna.offer(nikos, anna.folder().write("big", anyBytes(std::size_t{8} << 20)), nikos.address());
    nikos.order("accept");
    nikos.expect("Disk full", 3 * Patience);
    anna.order("abort");
    nikos.expect("received big: Canceled by the other side");
    nikos.expect("receiver hidden");
    anna.expect("sender gone");
}

// ---- A side or the line goes

struct Moment {
    const char* name;
    bool accepted;
    std::size_t ofSender;  // bytes that still pass
    std::size_t ofReceiver;
    const char* sign;  // of the receiver's that it has come
    // What is torn is read as the beginning of the next offer, which is lost with it.
    bool tears = false;
};
// "C Anna" and so on: letter, parameter, five bytes of delimiter each.
constexpr std::size_t untilFile = 12 + 17;
const Moment moments[] = {
    {"asking", false, noLimit, noLimit, "User"},
    {"offering", true, noLimit, 6, "receiver Initializing"},
    {"between blocks", true, noLimit, 6 + 7 + 10, "receiver Receiving"},
    {"in a block", true, untilFile + 1030 + 500, noLimit, "receiver Receiving", true},
    {"ending", true, noLimit, 6 + 7 + 3 * 10, "received cut: Received"},
};

enum class End { SenderKilled, ReceiverKilled, LineCut };
class FileEnds : public testing::TestWithParam<End> {};
INSTANTIATE_TEST_SUITE_P(By, FileEnds, testing::Values(End::SenderKilled, End::ReceiverKilled, End::LineCut));

// Up to a moment; then the line is as the test has it.
struct HeldTransfer {
    HeldTransfer(FileUser& from, FileUser& to, const std::string& path, const Moment& moment)
        : Line(At, to.address(), moment.ofSender, moment.ofReceiver) {
        from.offer(to, path, At);
        if (moment.accepted) to.order("accept");
        to.expect(moment.sign);
    }
    const std::string At = ownAddress();
    FileRelay Line;
};

TEST_P(FileEnds, InEachStateLeaveNoHalfFileAndTheNextTransferWorks) {
    FileUser anna({.nick = "Anna"}), nikos;
    const std::string path = anna.folder().write("cut", anyBytes(4096));
    for (const Moment& moment : moments) {
        SCOPED_TRACE(moment.name);
        HeldTransfer held(anna, nikos, path, moment);
        if (GetParam() == End::SenderKilled) anna.killAndStart();
        if (GetParam() == End::ReceiverKilled) nikos.killAndStart();
        held.Line.cut();
        const bool whole = std::string_view(moment.name) == "ending";
        if (GetParam() != End::SenderKilled) anna.expect(std::string("sent cut") + lineLost);
        if (GetParam() != End::ReceiverKilled) {
            if (!whole) nikos.expect(lineLost);
            nikos.expect("receiver hidden");
            EXPECT_EQ(fs::exists(nikos.received("cut")), whole);
        }
        if (moment.tears) nikos.killAndStart();
        expectGoodTransfer(anna, nikos);
    }
}

enum class Side { Sender, Receiver };
class FileAborts : public testing::TestWithParam<Side> {};
INSTANTIATE_TEST_SUITE_P(By, FileAborts, testing::Values(Side::Sender, Side::Receiver));

TEST_P(FileAborts, InEachStateAreToldToTheOtherSideAndLeaveNothing) {
    FileUser anna({.nick = "Anna"}), nikos;
    const bool bySender = GetParam() == Side::Sender;
    FileUser& self = bySender ? anna : nikos;
    FileUser& other = bySender ? nikos : anna;
    const std::string path = anna.folder().write("cut", anyBytes(4096));
    for (const Moment& moment : moments) {
        SCOPED_TRACE(moment.name);
        if (std::string_view(moment.name) == "ending") continue;  // there is nothing left to give up
        HeldTransfer held(anna, nikos, path, moment);
        self.order(bySender ? "abort" : "refuse");
        self.expect(bySender ? "sender Canceling..." : ": Canceled");
        held.Line.passAll();
        other.expect(": Canceled by the other side");
        nikos.expect("receiver hidden");
        if (bySender) anna.expect("sender gone");
        EXPECT_FALSE(fs::exists(nikos.received("cut")));
        // Whoever has refused hides each five seconds what comes next, until the other side gives up, too.
        if (moment.tears || !bySender) nikos.killAndStart();
        expectGoodTransfer(anna, nikos);
    }
}

}  // namespace

}  // namespace talvora::programs
