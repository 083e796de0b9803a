// What stands between the start of the host program and its first message.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "host/profile/NetworkProfile.h"
#include "orrery/CommandLine.h"
#include "orrery/Folders.h"
#include "orrery/HostDatabase.h"
#include "orrery/PluginLoader.h"
#include "support/VirtualPlatform.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::ThrowsMessage;
using Words = std::vector<std::string>;

TEST(CommandLine, OptionsTakeTheirValueBehindABlankOrAnEqualsSign) {
    const auto line =
        CommandLine::Parse(Words{"--headless", "--profile", "net.ini", "--data", "/d=e", "--gate=/g",
                                 "--answer", "ignore", "--set", "A/b=Μ", "--set=PM/T_a/b=x=y"});
    EXPECT_TRUE(line.Headless && line.ReportAnswer == Answer::Ignore);
    EXPECT_EQ(line.Profile + line.Data + line.Gate, "net.ini/d=e/g");
    const std::vector<CommandLine::Setting> settings{{"A", "b", "\xCC"}, {"PM", "T_a/b", "x=y"}};
    EXPECT_EQ(line.Settings, settings);
}

TEST(CommandLine, WrongUsageIsOneLineThatNamesTheWord) {
    const std::pair<Words, std::string> cases[] = {
        {{"--head"}, "unknown option --head"},
        {{"--headless=1"}, "--headless takes no value"},
        {{"--headless", "file"}, "\"file\""},
        {{"--gate"}, "--gate needs a value"},
        {{"--gate="}, "--gate needs a value"},
        {{"--gate", ""}, "--gate needs a value"},
        {{"--answer", "retry"}, "\"retry\""},
        {{"--set", "/Nickname=Anna"}, "SECTION/KEY=VALUE"},
        {{"--set", "Settings/=Anna"}, "SECTION/KEY=VALUE"},
        {{"--set", "Settings/Nickname"}, "SECTION/KEY=VALUE"},
        {{"--set", "A=B/C"}, "SECTION/KEY=VALUE"},
        {{"--two\nlines"}, "--two?lines"},
    };
    for (const auto& [words, named] : cases)
        EXPECT_THAT([&] { CommandLine::Parse(words); }, ThrowsMessage<UsageError>(HasSubstr(named)));
}

class FoldersTest : public testing::Test {
  protected:
    FoldersTest() {
        write(root / "share" / "network.ini", "[network]");
        write(root / "share" / "System" / "perflix.lst", "DND|5");
    }
    static void write(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    void furnish() {
        CommandLine line;
        line.Config = config;
        line.Data = data;
        Folders::Choose(line).Furnish(root / "share");
    }

    QTemporaryDir folder;
    fs::path root = folder.path().toStdString();
    fs::path config = root / "a" / "config";
    fs::path data = root / "a" / "data";
};

TEST_F(FoldersTest, AFirstStartFindsFoldersAndListsForItsOwnerAlone) {
    fs::create_directories(data);
    fs::permissions(data, fs::perms::owner_all);
    write(data / "System" / "perflix.lst.new", "DN");  // the half of a file that a killed start left
    furnish();
    for (const fs::path& made : {config, data / "Mail", data / "Received"})
        EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all) << made;
    const fs::path list = data / "System" / "perflix.lst";
    EXPECT_EQ(fs::file_size(config / "network.ini"), 9u);
    EXPECT_EQ(fs::file_size(list), 5u);
    EXPECT_EQ(fs::status(list).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_FALSE(fs::exists(data / "System" / "perflix.lst.new"));
}

TEST_F(FoldersTest, WhatIsThereInWhateverCaseStaysAsItIsAndWhatIsInTheWayIsNamed) {
    write(data / "SYSTEM" / "Perflix.LST", "mine");
    fs::create_directories(config);
    fs::create_symlink("nowhere", config / "network.ini");
    furnish();
    EXPECT_EQ(fs::file_size(data / "SYSTEM" / "Perflix.LST"), 4u);
    for (const auto& other : {data / "System", data / "SYSTEM" / "perflix.lst", config / "nowhere"})
        EXPECT_FALSE(fs::exists(other)) << other;
    data = root / "share" / "network.ini" / "data";
    EXPECT_THAT([&] { furnish(); }, ThrowsMessage<FolderError>(HasSubstr(data.string())));
}

TEST_F(FoldersTest, TheStandardFoldersAreThoseOfTheUsersSession) {
    ::setenv("XDG_CONFIG_HOME", "/u/config", 1);
    ::setenv("XDG_DATA_HOME", "not absolute", 1);
    ::setenv("HOME", "/u", 1);
    ::setenv("XDG_RUNTIME_DIR", "/run/u", 1);
    EXPECT_EQ(Folders::Choose({}).ProfileFile, "/u/config/talvora/network.ini");
    EXPECT_EQ(Folders::Choose({}).Gate, "/run/u/talvora/gate");
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(Folders::Choose({}).Gate, "/u/.local/share/talvora/gate");
}

TEST(HostDatabase, AnswersWithoutEndEndInFaultsThatLeaveNoLevelBehind) {
    HostDatabase database;
    HostMessage message;
    int heard = 0;
    // Each level answers twice and survives the fault: without an end this would take 2 to the 64 broadcasts.
    const auto answer = database.MessageBroadcasted.connect([&](const HostMessage&) {
        ++heard;
        const auto again = [&] { database.Broadcast(message); };
        EXPECT_THROW(again(), RuntimeError);
        again();
    });
    for (int round = 1; round < 3; ++round) {
        EXPECT_THROW(database.Broadcast(message), RuntimeError);
        EXPECT_EQ(heard, round * HostDatabase::DeepestNesting);
    }
}

// The build puts the plug-ins beside the test program.
std::string plugin(const std::string& name) {
    return QCoreApplication::applicationDirPath().toStdString() + "/liborrery_test_" + name + ".so";
}

TEST(PluginLoader, NumbersItsPlugInsAndNamesAWrongLibraryWithTheReason) {
    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform around{time, network};
    const NetworkProfile profile;
    const HostServices services{around.platform, profile};
    HostDatabase database;
    std::vector<std::pair<std::int32_t, std::int32_t>> heard;  // number and sender
    const auto hearing = database.MessageBroadcasted.connect(
        [&](const HostMessage& message) { heard.emplace_back(message.MsgID, message.FromID); });
    PluginLoader loader{database};
    const std::pair<std::string, std::string> wrong[] = {
        {"/missing.so", "No such file"},
        {"/dev/null", "file too short"},
        {plugin("old_plugin"), "made for version 0 of the host's interface, this is version 1"},
        {plugin("no_plugin"), "no OrreryCreatePlugin"},
    };
    for (const auto& [file, reason] : wrong)
        EXPECT_THAT([&] { loader.Load(file, services); },
                    ThrowsMessage<PluginError>(AllOf(HasSubstr(file), HasSubstr(reason))));
    ASSERT_EQ(loader.Load(plugin("plugin"), services), 1);
    ASSERT_EQ(loader.Load(plugin("plugin"), services), 2);
    // Each is started alone, and the last is deleted first.
    loader.Start(2);
    loader.UnloadAll();
    EXPECT_THAT(heard, ElementsAre(Pair(1, HostAddress::Host), Pair(2, 2), Pair(8000, 2), Pair(8000, 1)));
}

}  // namespace
}  // namespace talvora
