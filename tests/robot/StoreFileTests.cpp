#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

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

}  // namespace
}  // namespace talvora::test
