// What stands between the start of the host program and its first message.
#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "orrery/CommandLine.h"
#include "orrery/Folders.h"
#include "orrery/HostDatabase.h"
#include "orrery/PluginLoader.h"
#include "profile/NetworkProfile.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;
using namespace testing;
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
    const std::pair<std::string, Words> cases[] = {
        {"unknown option --head", {"--head"}},
        {"--headless takes no value", {"--headless=1"}},
        {"\"file\"", {"file"}},
        {"--gate needs a value", {"--gate", "--gate="}},
        {"\"retry\"", {"--answer=retry"}},
        {"SECTION/KEY=VALUE", {"--set=/Key=x", "--set=Section/=x", "--set=Section/Key", "--set=A=B/C"}},
        {"--two?lines", {"--two\nlines"}},
    };
    for (const auto& [why, words] : cases)
        for (const auto& word : words)
            EXPECT_THAT([&] { CommandLine::Parse(Words{word}); }, ThrowsMessage<UsageError>(HasSubstr(why)));
}

class FoldersTest : public Test {
  protected:
    FoldersTest() {
        write(root / "share" / "network.ini", "[network]");
        write(root / "share" / "System" / "perflix.lst", "DND|5");
        write(root / "share" / "System" / "plugin.lst", "");
    }
    static void write(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    std::string furnish() {
        CommandLine line;
        line.Config = config;
        line.Data = data;
        return Folders::Choose(line).Furnish(root / "share");
    }

    QTemporaryDir folder;
    fs::path root = folder.path().toStdString();
    fs::path config = root / "a" / "config";
    fs::path data = root / "a" / "data";
};

TEST_F(FoldersTest, AFirstStartFindsFoldersAndListsForItsOwnerAlone) {
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
    write(data / "SYSTEM" / "Perflix.LST", "m|i");
    fs::create_directories(config);
    fs::create_symlink("nowhere", config / "network.ini");
    EXPECT_EQ(furnish(), "");
    EXPECT_EQ(fs::file_size(data / "SYSTEM" / "Perflix.LST"), 3u);
    for (const auto& other : {data / "System", data / "SYSTEM" / "perflix.lst", config / "nowhere"})
        EXPECT_FALSE(fs::exists(other)) << other;
    data = root / "share" / "network.ini" / "data";
    EXPECT_THAT([&] { furnish(); }, ThrowsMessage<FolderError>(HasSubstr(data.string())));
}

TEST_F(FoldersTest, AListThatIsEmptyOrNoneGivesWayToTheDefaultWithAWord) {
    const fs::path list = data / "System" / "perflix.lst";
    for (const std::string& found : {std::string(), std::string("no state"), std::string("DND|\0|", 6)}) {
        write(list, found);
        write(data / "System" / "plugin.lst", "");  // as it should be
        EXPECT_THAT(furnish(), AllOf(HasSubstr(list.string()), Not(HasSubstr("plugin"))));
        EXPECT_EQ(fs::file_size(list), 5u);
        EXPECT_EQ(fs::exists(list.string() + ".damaged"), !found.empty());
        EXPECT_EQ(furnish(), "");
    }
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
        EXPECT_THROW(database.Broadcast(message), RuntimeError);
        database.Broadcast(message);
    });
    for (int round = 1; round < 3; ++round) {
        EXPECT_THROW(database.Broadcast(message), RuntimeError);
        EXPECT_EQ(heard, round * HostDatabase::DeepestNesting);
    }
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
    // The build puts the plug-ins beside the test program.
    const auto beside = QCoreApplication::applicationDirPath().toStdString() + "/liborrery_test_";
    const std::pair<std::string, std::string> wrong[] = {
        {"/missing.so", "No such file"},
        {"/dev/null", "file too short"},
        {beside + "old_plugin.so", "made for version 0 of the host's interface"},
        {beside + "no_plugin.so", "no OrreryCreatePlugin"},
    };
    for (const auto& [file, reason] : wrong) {
        const std::string& library = file;
        EXPECT_THAT([&] { loader.Load(library, services); },
                    ThrowsMessage<PluginError>(AllOf(HasSubstr(library), HasSubstr(reason))));
    }
    ASSERT_EQ(loader.Load(beside + "plugin.so", services), 1);
    ASSERT_EQ(loader.Load(beside + "plugin.so", services), 2);
    // Each is started alone, and the last is deleted first.
    loader.Start(2);
    loader.UnloadAll();
    EXPECT_THAT(heard, ElementsAre(Pair(1, HostAddress::Host), Pair(2, 2), Pair(8000, 2), Pair(8000, 1)));
}

}  // namespace
}  // namespace talvora
