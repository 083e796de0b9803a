#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>

#include "platform/RuntimeError.h"
#include "platform_qt/SqliteSettings.h"
#include "platform_qt/TemporaryFolder.h"

extern char** environ;

namespace talvora {
namespace {

std::string everyByte() {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    return all;
}

// What `call` faults with, as text; empty if it ends well.
std::string faultOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& fault) {
        return std::to_string(fault.Number) + " " + fault.Description;
    }
    return "";
}

std::string get(const SqliteSettings& settings, const std::string& key) {
    return settings.GetSetting("Talvora", "Settings", key, "(none)");
}

void save(SqliteSettings& settings, const std::string& key, const std::string& value) {
    settings.SaveSetting("Talvora", "Settings", key, value);
}

// The files of the folder that were put aside, in order.
QStringList asideIn(const TemporaryFolder& folder) {
    return QDir(QString::fromStdString(folder.path())).entryList({"*.damaged-*"}, QDir::Files, QDir::Name);
}

TEST(SqliteSettings, AreFoundAgainByTheNextStart) {
    const TemporaryFolder folder;
    const std::string path = folder.path("a/b/settings.db");
    const std::string large(3'000'000, 'q');
    {
        SqliteSettings settings(path);
        EXPECT_EQ(settings.Notice(), "");
        save(settings, "SendQueue", large);
        save(settings, "Empty", "");
        save(settings, "", "no name");
        save(settings, everyByte(), everyByte());
        // "Anna" in Greek with an accent and a final sigma.
        save(settings, "TimeStamp_\xDC\xED\xED\xE1\xF2", "first");
        save(settings, "Timestamp_\xA2\xCD\xCD\xC1\xD3", "second");
    }
    const SqliteSettings settings(path);
    EXPECT_EQ(settings.Notice(), "");
    EXPECT_EQ(get(settings, "sendqueue"), large);
    EXPECT_EQ(get(settings, "Empty"), "");
    EXPECT_EQ(get(settings, ""), "no name");
    EXPECT_EQ(get(settings, everyByte()), everyByte());
    EXPECT_EQ(get(settings, "TIMESTAMP_\xDC\xCD\xED\xC1\xF3"), "second");
    EXPECT_EQ(get(settings, "Other"), "(none)");
}

TEST(SqliteSettings, BelongToTheirOwnerAlone) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(0);
    {
        SqliteSettings settings(folder.path("config/settings.db"));
        save(settings, "Pass", "secret");
        EXPECT_EQ(folder.mode("config"), 0700);
        EXPECT_EQ(folder.mode("config/settings.db"), 0600);
        EXPECT_EQ(folder.mode("config/settings.db-wal"), 0600);
        EXPECT_EQ(folder.mode("config/settings.db-shm"), -1);
    }
    ::chmod(folder.path("config/settings.db").c_str(), 0664);
    const SqliteSettings settings(folder.path("config/settings.db"));
    EXPECT_EQ(folder.mode("config/settings.db"), 0600);
    ::umask(before);
}

TEST(SqliteSettings, HaveOneStoreAtATime) {
    const TemporaryFolder folder;
    SqliteSettings first(folder.path("one.db"), 0);
    SqliteSettings other(folder.path("two.db"), 0);
    save(first, "Nickname", "Anna");
    save(other, "Nickname", "Nikos");
    EXPECT_NE(faultOf([&] { SqliteSettings(folder.path("one.db"), 0); }).find("in use"), std::string::npos);
    save(first, "Nickname", "Maria");
    EXPECT_EQ(get(other, "Nickname"), "Nikos");
    EXPECT_TRUE(asideIn(folder).isEmpty());
}

TEST(SqliteSettings, SayWhyTheyCannotBeUsed) {
    const TemporaryFolder folder;
    folder.put("file", "x");
    QDir(QString::fromStdString(folder.path())).mkdir("folder");
    EXPECT_EQ(faultOf([&] { SqliteSettings(folder.path("file/settings.db")); }).substr(0, 3), "76 ");
    const std::string fault = faultOf([&] { SqliteSettings(folder.path("folder")); });
    EXPECT_EQ(fault, "75 The settings in " + folder.path("folder") + " can't be used: it is not a file");
}

TEST(SqliteSettings, OfANewerVersionAreLeftAlone) {
    const TemporaryFolder folder;
    { SqliteSettings(folder.path("settings.db")); }
    std::string content = folder.content("settings.db");
    content[63] = 2;  // the version, in the file's header
    folder.put("settings.db", content);
    EXPECT_NE(faultOf([&] { SqliteSettings(folder.path("settings.db")); }).find("newer version"),
              std::string::npos);
    EXPECT_EQ(folder.content("settings.db"), content);
    EXPECT_TRUE(asideIn(folder).isEmpty());
}

// What is left by a process that ended, or was killed behind its last save: then in the log.
void leave(const TemporaryFolder& folder, bool killed) {
    const TemporaryFolder live;
    std::optional<SqliteSettings> settings(live.path("settings.db"));
    for (const char* value : {"zero", "one", "two"}) save(*settings, "Key", value);
    if (!killed) settings.reset();
    folder.put("settings.db", live.content("settings.db"));
    if (killed) folder.put("settings.db-wal", live.content("settings.db-wal"));
}

TEST(DamagedSettings, ArePutAsideAndToldOf) {
    struct Case {
        const char* name;
        bool killed;
        std::string file;
        std::function<std::string(std::string)> damage;
        std::string read;  // what is left of Key
        bool told;
    };
    const auto flipped = [](std::string content, std::size_t at) {
        content.at(at) = static_cast<char>(content.at(at) ^ 0x55);
        return content;
    };
    constexpr std::size_t page = 4096;
    constexpr std::size_t frame = 24 + page;
    const auto garbage = [](const std::string&) { return std::string(9000, 'x'); };
    const auto emptied = [](const std::string&) { return std::string(); };
    const Case cases[] = {
        {"nothing", true, "settings.db", [](const std::string& c) { return c; }, "two", false},
        {"no database", false, "settings.db", garbage, "(none)", true},
        {"the log has it all", true, "settings.db", garbage, "two", false},
        {"emptied", true, "settings.db", emptied, "(none)", true},
        {"cut", false, "settings.db", [](const std::string& c) { return c.substr(0, page); }, "(none)", true},
        {"a page", false, "settings.db", [&](const std::string& c) { return flipped(c, page); }, "(none)",
         true},
        {"no log", true, "settings.db-wal", garbage, "(none)", true},
        {"log's header", true, "settings.db-wal", [&](const std::string& c) { return flipped(c, 10); },
         "(none)", true},
        {"frame of one", true, "settings.db-wal",
         [&](const std::string& c) { return flipped(c, c.size() - frame - 10); }, "zero", true},
        {"torn last frame", true, "settings.db-wal",
         [](const std::string& c) { return c.substr(0, c.size() - 9); }, "one", false},
    };
    for (const auto& [name, killed, file, damage, read, told] : cases) {
        SCOPED_TRACE(name);
        const TemporaryFolder folder;
        leave(folder, killed);
        const std::string damaged = damage(folder.content(file));
        folder.put(file, damaged);
        {
            SqliteSettings settings(folder.path("settings.db"));
            EXPECT_EQ(get(settings, "Key"), read);
            EXPECT_EQ(settings.Notice().empty(), !told) << settings.Notice();
            EXPECT_EQ(asideIn(folder).isEmpty(), !told);
            save(settings, "Key", "new");
        }
        bool kept = !told || damaged.empty();
        for (const auto& aside : asideIn(folder)) {
            EXPECT_EQ(folder.mode(aside.toStdString()) & 077, 0);
            kept = kept || folder.content(aside.toStdString()) == damaged;
        }
        EXPECT_TRUE(kept);
        const SqliteSettings again(folder.path("settings.db"));
        EXPECT_EQ(again.Notice(), "");
        EXPECT_EQ(get(again, "Key"), "new");
    }
}

TEST(SqliteSettings, KeepTheOldValueWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    SqliteSettings settings(folder.path("settings.db"));
    save(settings, "Key", "old");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    auto* const action = ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{64 << 10, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const std::string fault = faultOf([&] { save(settings, "Key", std::string(1 << 20, 'x')); });
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, action);
    EXPECT_NE(fault, "");
    EXPECT_EQ(get(settings, "Key"), "old");
    save(settings, "Key", "new");
    EXPECT_EQ(get(settings, "Key"), "new");
}

// A process that saves without end, and tells what it has saved.
class Writer {
  public:
    Writer(const std::string& file, int round) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
        out_ = ends[0];
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string program = SETTINGS_WRITER;
        std::string path = file;
        std::string number = std::to_string(round);
        std::array<char*, 4> arguments{program.data(), path.data(), number.data(), nullptr};
        ::posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { ::close(out_); }

    // Until so many bytes are there, or the other end is closed.
    void read(std::size_t enough) {
        std::array<char, 4096> bytes{};
        while (told_.size() < enough) {
            const auto got = ::read(out_, bytes.data(), bytes.size());
            if (got <= 0) return;
            told_.append(bytes.data(), static_cast<std::size_t>(got));
        }
    }
    void kill() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        read(std::string::npos);
    }
    // The last value of each key.
    std::map<std::string, std::string> saved() const {
        std::map<std::string, std::string> values;
        std::istringstream lines(told_.substr(0, told_.rfind('\n') + 1));
        for (std::string key, value; lines >> key >> value;) values[key] = value;
        return values;
    }

  private:
    pid_t process_ = -1;
    int out_ = -1;
    std::string told_;
};

// "round.save": later saves of the same round are as good, since one may have been finished but not yet told.
bool isAtLeast(const std::string& value, const std::string& told) {
    const std::size_t dot = told.find('.') + 1;
    return value.substr(0, dot) == told.substr(0, dot) &&
           std::stoi(value.substr(dot)) >= std::stoi(told.substr(dot));
}

TEST(SavedSettings, SurviveAKilledProcess) {
    const auto seed = std::random_device{}();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
    const TemporaryFolder folder;
    for (int round = 0; round < 200; ++round) {
        Writer writer(folder.path("settings.db"), round);
        writer.read(1 + random() % 120);
        // Somewhere in the middle of the next save.
        volatile unsigned work = random() % 100'000;
        while (work > 0) work = work - 1;
        writer.kill();
        const auto saved = writer.saved();
        ASSERT_FALSE(saved.empty());
        const SqliteSettings settings(folder.path("settings.db"));
        ASSERT_EQ(settings.Notice(), "");
        for (const auto& [key, value] : saved) {
            const std::string found = settings.GetSetting("Talvora", "Incompleted", key, "0.0");
            ASSERT_PRED2(isAtLeast, found, value) << "key " << key << " in round " << round;
        }
    }
}

}  // namespace
}  // namespace talvora
