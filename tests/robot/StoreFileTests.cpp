#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>

#include <array>
#include <filesystem>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>

#include "platform_qt/Descriptor.h"
#include "robot/StorePlaces.h"

namespace talvora::test {
namespace {

TEST(RobotStoreFile, IsItsOwnersAloneAndRefusedAsItIsWhenDamaged) {
    const SqlitePlace live;
    const mode_t before = ::umask(0);
    std::filesystem::permissions(live.folder.path(), std::filesystem::perms::all);
    for (const char* file : {"store.db", "store.db-shm"}) live.folder.put(file, "");  // of a looser time
    RobotStore store(live.settings());
    ::umask(before);
    for (int mail = 0; mail < 100; ++mail) store.AddMail(mailOf(std::to_string(mail)), nullptr);
    store.Commit();
    store.AddMail(mailOf("last"), nullptr);
    store.Commit();
    for (const char* file : {"store.db", "store.db-wal", "store.db-shm"}) {
        EXPECT_EQ(live.folder.mode(file), 0600) << file;
    }
    EXPECT_EQ(live.folder.mode("."), 0700);
    using Damage = std::function<void(std::string & database, std::string & log)>;
    const std::pair<Damage, std::string> cases[] = {
        {[](std::string&, std::string&) {}, ""},
        {[](std::string& d, std::string&) { d.assign(9000, 'x'); }, "not a database"},
        {[](std::string& d, std::string&) { d.clear(); }, "damaged"},
        {[](std::string&, std::string& l) { l.at(l.size() / 2) ^= 0x55; }, "damaged"},
    };
    for (const auto& [damage, complaint] : cases) {
        SCOPED_TRACE(complaint);
        const SqlitePlace place;
        std::string database = live.folder.content("store.db"), log = live.folder.content("store.db-wal");
        damage(database, log);
        place.folder.put("store.db", database);
        if (complaint != "not a database") place.folder.put("store.db-wal", log);
        try {
            RobotStore again(place.settings());
            EXPECT_EQ(again.TotalsOf("Nikos").Mails, 101);
            EXPECT_EQ(complaint, "");
        } catch (const StoreError& error) {
            EXPECT_NE(complaint, "");
            EXPECT_THAT(error.what(), testing::HasSubstr(complaint));
            EXPECT_EQ(place.folder.content("store.db"), database);
        }
    }
    const SqlitePlace other;
    other.meddle({"CREATE TABLE recipes(name TEXT)"});
    EXPECT_THROW(RobotStore{other.settings()}, StoreError);
    EXPECT_THROW(RobotStore{storeAt(other.folder.path())}, StoreError);
    EXPECT_THROW(RobotStore{storeAt(other.folder.path("no/such.db"))}, StoreError);
}

TEST(RobotStoreFile, GrowsToItsCeilingAndTakesMailAgainWhenSomeHasGone) {
    const SqlitePlace place;
    StoreSettings settings = place.settings();
    settings.Megabytes = 1;
    RobotStore store(settings);
    int kept = 0;
    const auto keep = [&] {
        store.AddMail(mailOf(std::to_string(kept), {std::string(50'000, 'x')}),
                      [&](bool safe) { kept += safe; });
        store.Commit();
    };
    EXPECT_THROW(for (int mail = 0; mail < 30; ++mail) keep(), StoreError);
    EXPECT_GT(kept, 15);
    EXPECT_EQ(store.TotalsOf("Nikos").Mails, kept);
    store.RemoveMail(store.FirstMailFor("Nikos", noon)->Id);
    store.Commit();
    keep();
}

// What a robot does that will be killed: keeps mails, several to a commit, and tells of those that are safe.
[[noreturn]] void keepForEver(const StoreSettings& place, int round, int out) {
    try {
        RobotStore store(place);
        for (int mail = 0;; ++mail) {
            const std::string name = std::to_string(round) + "." + std::to_string(mail);
            store.AddMail(mailOf(name, {"a", "b"}), [&store, name, out](bool safe) {
                const std::string line = name + "\n";
                if (!safe || ::write(out, line.data(), line.size()) < 0) ::_exit(1);
                store.NoteConfirmed("Maria", noon);
            });
            if (mail % 3 == 0) store.Commit();
        }
    } catch (const std::exception& fault) {
        std::cerr << fault.what() << std::endl;
    }
    ::_exit(1);
}

// The mails that a robot had told of when it was killed.
std::vector<std::string> toldBeforeTheKill(const StoreSettings& place, int round, std::mt19937& random) {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return {};
    const Descriptor from(pipe[0]);
    Descriptor to(pipe[1]);
    const pid_t process = ::fork();
    if (process == 0) keepForEver(place, round, to.get());
    to.reset();
    std::string told;
    std::array<char, 4096> bytes{};
    const auto readUntil = [&](std::size_t enough) {
        for (ssize_t got = 1; told.size() < enough && got > 0;) {
            got = ::read(from.get(), bytes.data(), bytes.size());
            told.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        }
    };
    readUntil(1 + random() % 100);
    for (volatile unsigned work = random() % 200'000; work > 0;) work = work - 1;
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    readUntil(std::string::npos);
    std::istringstream lines(told.substr(0, told.rfind('\n') + 1));
    return {std::istream_iterator<std::string>(lines), {}};
}

TEST(RobotStoreFile, LosesAndDoublesNoMailWhenTheRobotIsKilled) {
    const auto seed = std::random_device{}();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
    const SqlitePlace place;
    for (int round = 1; round <= 30; ++round) {
        const auto told = toldBeforeTheKill(place.settings(), round, random);
        ASSERT_FALSE(told.empty());
        RobotStore store(place.settings());
        // The senders whom the confirmation of the last mails never reached send them again.
        for (const auto& name : told) store.AddMail(mailOf(name, {"a", "b"}), nullptr);
        store.Commit();
        std::map<std::string, int> kept;
        while (const auto head = store.FirstMailFor("Nikos", noon)) {
            ++kept[head->Subject];
            ASSERT_EQ(store.Piece(head->Id, 1) + store.Piece(head->Id, 2), "ab");
            store.NoteEndSent(head->Id, nullptr);
        }
        store.RemoveDelivered("Nikos");
        store.Commit();
        for (const auto& name : told) ASSERT_EQ(kept[name], 1) << name;
        for (const auto& [name, times] : kept) ASSERT_EQ(times, 1) << name;
    }
}

}  // namespace
}  // namespace talvora::test
