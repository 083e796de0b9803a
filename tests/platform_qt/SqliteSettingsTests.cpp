#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <sstream>

#include "platform/RuntimeError.h"
#include "platform_qt/Descriptor.h"
#include "platform_qt/Flushes.h"
#include "platform_qt/SqliteSettings.h"
#include "platform_qt/TemporaryFolder.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

struct Store {
    explicit Store(const std::string& path) : settings(path, 0) {}
    std::string get(const std::string& key) const {
        return settings.GetSetting("Talvora", "Settings", key, "(none)");
    }
    void save(const std::string& key, const std::string& value) {
        settings.SaveSetting("Talvora", "Settings", key, value);
    }
    SqliteSettings settings;
};

// Why the settings of this file can't be used: the number of the fault and its words.
std::string refusal(const std::string& path) {
    try {
        const Store store(path);
    } catch (const RuntimeError& fault) {
        return std::to_string(fault.Number) + " " + fault.Description;
    }
    return "";
}

// The files of the folder that were put aside, in order.
QStringList asideIn(const TemporaryFolder& folder) {
    return QDir(QString::fromStdString(folder.path())).entryList({"*.damaged-*"}, QDir::Files, QDir::Name);
}

TEST(SqliteSettings, AreFlushedWithEachSave) {
    const TemporaryFolder folder;
    Store store(folder.path("settings.db"));
    store.save("first", "value");
    for (const char* value : {"one", "two"}) {
        const int before = flushes;
        store.save("second", value);
        EXPECT_GT(flushes, before) << value;
    }
}

TEST(SqliteSettings, AreFoundAgainByTheNextStartOfTheirOwnerAlone) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(0);
    std::string every;
    for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
    const std::map<std::string, std::string> values = {
        {"sendqueue", std::string(3'000'000, 'q')}, {"Empty", ""}, {"", "no name"}, {every, every}};
    {
        Store store(folder.path("a/b/settings.db"));
        for (const auto& [key, value] : values) store.save(key, value);
        // "Anna" in Greek with an accent and a final sigma.
        store.save("TimeStamp_\xDC\xED\xED\xE1\xF2", "first");
        store.save("Timestamp_\xA2\xCD\xCD\xC1\xD3", "second");
        EXPECT_EQ(folder.mode("a/b"), 0700);
        EXPECT_EQ(folder.mode("a/b/settings.db"), 0600);
        EXPECT_EQ(folder.mode("a/b/settings.db-wal"), 0600);
        EXPECT_EQ(folder.mode("a/b/settings.db-shm"), -1);
    }
    ::chmod(folder.path("a/b/settings.db").c_str(), 0664);
    const Store store(folder.path("a/b/settings.db"));
    ::umask(before);
    EXPECT_EQ(folder.mode("a/b/settings.db"), 0600);
    EXPECT_EQ(store.settings.Notice(), "");
    for (const auto& [key, value] : values) EXPECT_EQ(store.get(key), value);
    EXPECT_EQ(store.get("TIMESTAMP_\xDC\xCD\xED\xC1\xF3"), "second");
    EXPECT_EQ(store.get("Other"), "(none)");
}

TEST(SqliteSettings, ThatCannotBeUsedAreLeftAlone) {
    const TemporaryFolder folder;
    folder.put("file", "x");
    QDir(QString::fromStdString(folder.path())).mkdir("folder");
    Store first(folder.path("one.db"));
    Store other(folder.path("two.db"));
    { const Store newer(folder.path("newer.db")); }
    std::string content = folder.content("newer.db");
    content[63] = 2;  // the version, in the file's header
    folder.put("newer.db", content);
    EXPECT_THAT(refusal(folder.path("file/settings.db")), testing::StartsWith("76 "));
    EXPECT_EQ(refusal(folder.path("folder")),
              "75 The settings in " + folder.path("folder") + " can't be used: it is not a file");
    EXPECT_THAT(refusal(folder.path("one.db")), testing::HasSubstr("in use"));
    EXPECT_THAT(refusal(folder.path("newer.db")), testing::HasSubstr("newer version"));
    EXPECT_EQ(folder.content("newer.db"), content);
    EXPECT_TRUE(asideIn(folder).isEmpty());
}

TEST(SqliteSettings, KeepTheOldValueWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    Store store(folder.path("settings.db"));
    store.save("Key", "old");
    onAFullDisk(64 << 10, [&] { EXPECT_THROW(store.save("Key", std::string(1 << 20, 'x')), RuntimeError); });
    EXPECT_EQ(store.get("Key"), "old");
    store.save("Key", "new");
    EXPECT_EQ(store.get("Key"), "new");
}

// What is left by a process that ended, or was killed behind its last save: then in the log.
void leave(const TemporaryFolder& folder, bool killed) {
    const TemporaryFolder live;
    std::optional<Store> store(live.path("settings.db"));
    for (const char* value : {"zero", "one", "two"}) store->save("Key", value);
    if (!killed) store.reset();
    folder.put("settings.db", live.content("settings.db"));
    if (killed) folder.put("settings.db-wal", live.content("settings.db-wal"));
}

// Changes one byte of the last frame's header and signs all anew, as nobody but a forger does.
void forgeLastFrame(std::string& log, std::size_t at, char byte) {
    constexpr std::size_t header = 32, frame = 24 + 4096;
    log[log.size() - frame + at] = byte;
    const bool big = (log[3] & 1) != 0;
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(log[i]); };
    std::uint32_t first = 0, second = 0;
    const auto word = [&](std::size_t i) {
        std::uint32_t value = 0;
        for (std::size_t k = 0; k < 4; ++k)
            value |= std::uint32_t{byteAt(i + k)} << (big ? 24 - 8 * k : 8 * k);
        return value;
    };
    const auto add = [&](std::size_t from, std::size_t size) {
        for (std::size_t i = from; i < from + size; i += 8) {
            first += word(i) + second;
            second += word(i + 4) + first;
        }
    };
    add(0, 24);
    for (std::size_t i = header; i + frame <= log.size(); i += frame) {
        add(i, 8);
        add(i + 24, 4096);
        for (std::size_t k = 0; k < 4; ++k) {
            log[i + 16 + k] = static_cast<char>(first >> (24 - 8 * k));
            log[i + 20 + k] = static_cast<char>(second >> (24 - 8 * k));
        }
    }
}

TEST(SqliteSettings, AreReadButNotKeptWhereNoFileCanBeMadeBesideThem) {
    const TemporaryFolder folder;
    Store(folder.path("a?b %41.db")).save("Key", "old");
    QDir(QString::fromStdString(folder.path())).mkdir("a?b %41.db-wal");  // in the log's place
    Store store(folder.path("a?b %41.db"));
    EXPECT_THAT(store.settings.Notice(), testing::HasSubstr("full"));
    EXPECT_EQ(store.get("Key"), "old");
    EXPECT_EQ(faultOf([&] { store.save("Key", "new"); }), 61);
    EXPECT_EQ(store.get("Key"), "old");
}

TEST(SqliteSettings, ThatAreDamagedArePutAsideAndToldOf) {
    struct Case {
        bool killed;
        std::string file;
        std::function<void(std::string&)> damage;
        std::string read;  // what is left of Key
        bool told;
    };
    constexpr std::size_t page = 4096;
    constexpr std::size_t frame = 24 + page;
    const std::string database = "settings.db", log = "settings.db-wal";
    const auto garbage = [](std::string& c) { c.assign(9000, 'x'); };
    const Case cases[] = {
        {true, database, [](std::string&) {}, "two", false},
        {false, database, garbage, "(none)", true},
        {true, database, garbage, "two", false},  // the log has it all
        {true, database, [](std::string& c) { c.clear(); }, "(none)", true},
        {false, database, [](std::string& c) { c.resize(page); }, "(none)", true},
        {false, database, [](std::string& c) { c.at(page) ^= 0x55; }, "(none)", true},
        {true, log, garbage, "(none)", true},
        {true, log, [](std::string& c) { c.at(10) ^= 0x55; }, "(none)", true},
        {true, log, [](std::string& c) { c.at(c.size() - frame - 10) ^= 0x55; }, "(none)", true},
        // A sound log whose last frame makes the database one of 2,147,483,648 pages, and one of page 4e9.
        {true, log, [](std::string& c) { forgeLastFrame(c, 4, 0x80); }, "(none)", true},
        {true, log, [](std::string& c) { forgeLastFrame(c, 0, 0xEE); }, "(none)", true},
        {true, log, [](std::string& c) { c.resize(c.size() - 9); }, "one", false},  // a torn last frame
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(&one - cases);
        const TemporaryFolder folder;
        leave(folder, one.killed);
        std::string damaged = folder.content(one.file);
        one.damage(damaged);
        folder.put(one.file, damaged);
        {
            Store store(folder.path("settings.db"));
            EXPECT_EQ(store.get("Key"), one.read);
            EXPECT_EQ(store.settings.Notice().empty(), !one.told) << store.settings.Notice();
            store.save("Key", "new");
        }
        EXPECT_EQ(asideIn(folder).isEmpty(), !one.told);
        bool kept = !one.told || damaged.empty();
        for (const auto& aside : asideIn(folder)) {
            EXPECT_EQ(folder.mode(aside.toStdString()) & 077, 0);
            kept = kept || folder.content(aside.toStdString()) == damaged;
        }
        EXPECT_TRUE(kept);
        const Store again(folder.path("settings.db"));
        EXPECT_EQ(again.settings.Notice(), "");
        EXPECT_EQ(again.get("Key"), "new");
    }
}

// What a killed process does: it saves without end, and tells what it has saved.
[[noreturn]] void saveForEver(const std::string& path, int round, int out) {
    try {
        Store store(path);
        for (int save = 0;; ++save) {
            const std::string key = std::to_string(save % 7), value = std::to_string(round * 10'000 + save);
            store.save(key, value);
            const std::string line = key + " " + value + "\n";
            if (::write(out, line.data(), line.size()) < 0) break;
        }
    } catch (const RuntimeError& fault) {
        std::cerr << fault.what() << std::endl;
    }
    ::_exit(1);
}

// The last value of each key that a process had told when it was killed, somewhere in the middle of a save.
std::map<std::string, int> toldBeforeTheKill(const std::string& path, int round, std::mt19937& random) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    const Descriptor from(ends[0]);
    Descriptor to(ends[1]);
    const pid_t process = ::fork();
    if (process == 0) saveForEver(path, round, to.get());
    to.reset();
    std::string told;
    std::array<char, 4096> bytes{};
    const auto readUntil = [&](std::size_t enough) {
        for (ssize_t got = 1; told.size() < enough && got > 0;) {
            got = ::read(from.get(), bytes.data(), bytes.size());
            told.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        }
    };
    readUntil(1 + random() % 120);
    for (volatile unsigned work = random() % 100'000; work > 0;) work = work - 1;
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    readUntil(std::string::npos);
    std::istringstream lines(told.substr(0, told.rfind('\n') + 1));
    std::map<std::string, int> values;
    int value = 0;
    for (std::string key; lines >> key >> value;) values[key] = value;
    return values;
}

TEST(SavedSettings, SurviveAKilledProcess) {
    const auto seed = std::random_device{}();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
    const TemporaryFolder folder;
    for (int round = 1; round <= 20; ++round) {
        const auto told = toldBeforeTheKill(folder.path("settings.db"), round, random);
        ASSERT_FALSE(told.empty());
        const Store store(folder.path("settings.db"));
        ASSERT_EQ(store.settings.Notice(), "");
        // A later one is as good: it may have been saved but not yet told.
        for (const auto& [key, value] : told) ASSERT_GE(std::stoi("0" + store.get(key)), value) << round;
    }
}

}  // namespace
}  // namespace talvora::test
