#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "orrery/Folders.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

class FoldersTest : public testing::Test {
  protected:
    FoldersTest() {
        fs::create_directories(defaults / "System");
        write(defaults / "network.ini", "[network]\n");
        write(defaults / "System" / "perflix.lst", "DND|Do not disturb|5\r\n");
        line.Config = root / "a" / "config";
        line.Data = root / "a" / "data";
        line.Gate = root / "gate";
    }

    static void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }
    static std::string read(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    Folders furnished() {
        Folders folders = Folders::Choose(line);
        folders.Furnish(defaults);
        return folders;
    }

    QTemporaryDir folder;
    fs::path root = folder.path().toStdString();
    fs::path defaults = root / "share";
    CommandLine line;
};

TEST_F(FoldersTest, AFirstStartFindsFoldersAndListsForItsOwnerAlone) {
    const Folders folders = furnished();
    const fs::path data = folders.Data;
    for (const fs::path& made :
         {fs::path(folders.Config), data, data / "Mail", data / "Received", data / "System"}) {
        EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all) << made;
    }
    EXPECT_EQ(read(folders.ProfileFile), "[network]\n");
    EXPECT_EQ(read(data / "System" / "perflix.lst"), "DND|Do not disturb|5\r\n");
    EXPECT_EQ(fs::status(data / "System" / "perflix.lst").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(folders.SettingsFile, (root / "a" / "config" / "settings.db").string());
}

TEST_F(FoldersTest, WhatIsThereInWhateverCaseStaysAsItIs) {
    const fs::path data = root / "a" / "data";
    fs::create_directories(data / "SYSTEM");
    write(data / "SYSTEM" / "Perflix.LST", "mine");
    fs::create_directories(line.Config);
    fs::create_symlink("nowhere", fs::path(line.Config) / "network.ini");
    furnished();
    furnished();
    EXPECT_EQ(read(data / "SYSTEM" / "Perflix.LST"), "mine");
    EXPECT_FALSE(fs::exists(data / "System"));
    EXPECT_FALSE(fs::exists(data / "SYSTEM" / "perflix.lst"));
    EXPECT_FALSE(fs::exists(fs::path(line.Config) / "nowhere"));
}

TEST_F(FoldersTest, AHalfWrittenFileOfAKilledStartIsReplaced) {
    const fs::path data = root / "a" / "data";
    fs::create_directories(data / "System");
    write(data / "System" / "perflix.lst.new", "DN");
    furnished();
    EXPECT_EQ(read(data / "System" / "perflix.lst"), "DND|Do not disturb|5\r\n");
    EXPECT_FALSE(fs::exists(data / "System" / "perflix.lst.new"));
}

TEST_F(FoldersTest, AFolderThatCannotBeMadeIsNamed) {
    write(root / "a", "a file");
    try {
        furnished();
        FAIL();
    } catch (const FolderError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr((root / "a").string()));
    }
}

TEST_F(FoldersTest, TheStandardFoldersAreThoseOfTheUsersSession) {
    ::setenv("XDG_CONFIG_HOME", "/u/config", 1);
    ::setenv("XDG_DATA_HOME", "not absolute", 1);
    ::setenv("HOME", "/u", 1);
    ::setenv("XDG_RUNTIME_DIR", "/run/u", 1);
    Folders folders = Folders::Choose({});
    EXPECT_EQ(folders.ProfileFile, "/u/config/talvora/network.ini");
    EXPECT_EQ(folders.Data, "/u/.local/share/talvora");
    EXPECT_EQ(folders.Gate, "/run/u/talvora/gate");
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(Folders::Choose({}).Gate, "/u/.local/share/talvora/gate");
}

TEST_F(FoldersTest, AnInstallationIsFoundFromItsExecutable) {
    const fs::path bin = root / "bin";
    EXPECT_EQ(InstalledDefaults(bin), "");
    EXPECT_EQ(InstalledPlugin(bin, "talvora"), (bin / "libtalvora.so").string());
    fs::create_directories(root / "lib" / "talvora");
    fs::create_directories(root / "share" / "talvora");
    write(root / "lib" / "talvora" / "libtalvora.so", "");
    EXPECT_EQ(InstalledDefaults(bin), (root / "share" / "talvora").string());
    EXPECT_EQ(InstalledPlugin(bin, "talvora"), (root / "lib" / "talvora" / "libtalvora.so").string());
}

}  // namespace
}  // namespace talvora
