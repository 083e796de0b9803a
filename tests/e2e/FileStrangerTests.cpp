// A stranger in the place of a sender or a receiver, against a real client.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "simulation/programs/FileRelay.h"
#include "simulation/programs/FileUser.h"

namespace talvora::programs {

namespace {

namespace fs = std::filesystem;

constexpr double mostMebibytes = 64;

// All files but those that a client writes for itself.
std::set<std::string> filesOf(const FileUser& user) {
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(user.folder().path())) {
        const std::string name = entry.path().lexically_relative(user.folder().path());
        const bool own = name.starts_with("settings.db") || name.starts_with("data/System/") ||
                         name.starts_with("data/Mail/");
        if (entry.is_regular_file() && !own) found.insert(name);
    }
    return found;
}

class FileStrangers : public testing::Test {
  protected:
    FileStrangers() { victim.forget(); }
    // An honest transfer, and no memory or file that a stranger has caused.
    void expectUnharmed(const std::set<std::string>& expected) {
        EXPECT_LT(victim.peakMebibytes() - atFirst_, mostMebibytes);
        EXPECT_EQ(filesOf(victim), expected);
        Stranger sender(connectForFiles(victim.address()));
        sender.says(framed("CAnna 1"));
        victim.expect("asked User Anna");
        victim.order("accept");
        EXPECT_TRUE(sender.hears(framed("W")));
        sender.says(framed("S4 good"));
        EXPECT_TRUE(sender.hears(framed("G1")));
        sender.says(framed("Dgood"));
        EXPECT_TRUE(sender.hears(framed("F") + framed("A")));
        victim.expect("received good: Received");
    }
    void expectDropped(Stranger& stranger) { EXPECT_FALSE(stranger.hears("never said")); }

    FileUser victim;

  private:
    double atFirst_ = victim.peakMebibytes();
};

TEST_F(FileStrangers, WhoSendTooEarlyTooMuchOrWhereverTheyLikeWriteNothing) {
    const std::set<std::string> before = filesOf(victim);
    {
        Stranger early(connectForFiles(victim.address()));
        early.says(framed("CEve 1"));
        victim.expect("asked User Eve");
        early.says(framed("S4 evil") + framed("Devil") + framed("S4 evil"));
        victim.expect("Permission denied");
        EXPECT_EQ(filesOf(victim), before);
    }
    victim.killAndStart();  // what nobody has read would be read in front of the next offer
    {
        Stranger sender(connectForFiles(victim.address()));
        sender.says(framed("CEve 9"));
        victim.expect("asked User Eve");
        victim.order("accept");
        EXPECT_TRUE(sender.hears(framed("W")));
        for (const std::string where :
             {"../evil", "../../evil", "/tmp/talvora-evil", "a/../../../evil", "ev\til"})
            sender.says(framed("S4 " + where) + framed("Devil"));
        sender.says(framed("S-5 size") + framed("S99999999999999999999 size") + framed("S size") +
                    framed("S"));
        sender.says(framed("G1") + framed("Z") + framed("") + "\x01:.");
    }
    victim.expect("received size: ");
    EXPECT_FALSE(fs::exists("/tmp/talvora-evil"));
    std::set<std::string> after = filesOf(victim);
    std::erase_if(after, [](const std::string& name) {
        return name.starts_with("data/Received/") || name.starts_with("data/.") ||
               name.starts_with(".local/share/Trash/");
    });
    EXPECT_EQ(after, before);
    victim.killAndStart();
    expectUnharmed(filesOf(victim));
}

TEST_F(FileStrangers, WhoNeverComeToAnEndAreDropped) {
    const std::set<std::string> before = filesOf(victim);
    {
        Stranger endless(connectForFiles(victim.address()));
        endless.says(framed("CEve 1"));
        victim.expect("asked User Eve");
        victim.order("accept");
        EXPECT_FALSE(endless.says(std::string(std::size_t{256} << 20, 'D')));
    }
    victim.expect("The other side sends what has no end");
    {
        // Longer than anybody waits for an offer, byte for byte.
        Stranger trickling(connectForFiles(victim.address()));
        const Deadline deadline(Patience);
        while (!deadline.passed() && trickling.says("C")) ::poll(nullptr, 0, 200);
        EXPECT_FALSE(deadline.passed());
    }
    victim.killAndStart();
    expectUnharmed(before);
}

TEST_F(FileStrangers, WhoAskForAMillionBlocksOrForWhatIsNotThereGetNoMemory) {
    const std::string file = victim.folder().write("file", std::string(5000, 'f'));
    const std::string address = ownAddress();
    const Descriptor door = listenForFiles(address);
    const auto offered = [&] {
        victim.order("offer |" + file);
        victim.order("send " + address);
        EXPECT_TRUE(readable(door.get(), static_cast<int>(Patience.count())));
        Stranger receiver(Descriptor(::accept4(door.get(), nullptr, nullptr, SOCK_CLOEXEC)));
        EXPECT_TRUE(receiver.hears(framed("")));
        return receiver;
    };
    std::string million;
    for (int i = 0; i < 1'000'000; ++i) million += framed("G1");
    {
        Stranger greedy = offered();
        greedy.says(framed("W"));
        greedy.says(million);
        victim.expect("The other side does not take what is sent");
    }
    {
        Stranger odd = offered();
        odd.says(framed("W"));
        EXPECT_TRUE(odd.hears(framed("S5000 file")));
        for (const char* wrong : {"G0", "G-1", "G99999999999999999999", "G", "Gabc", "Q", "D", "S1 x"})
            odd.says(framed(wrong));
        odd.says(framed("G2147483647") + framed("G4097"));
        EXPECT_TRUE(odd.hears("D" + std::string(904, 'f') + std::string(120, ' ')));
        odd.says(framed("A"));
        victim.expect("sender gone");
    }
    expectUnharmed(filesOf(victim));
}

}  // namespace

}  // namespace talvora::programs
