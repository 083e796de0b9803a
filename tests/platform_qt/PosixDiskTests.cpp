#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/TemporaryFolder.h"
#include "platform_qt/WasteFolder.h"

namespace talvora {
namespace {

int faultOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& fault) {
        return fault.Number;
    }
    return 0;
}

// The program's folder, with a neighbour that it must not reach; the user's home is in it too, so that the
// waste basket is the test's own.
class PosixDiskTest : public testing::Test {
  protected:
    PosixDiskTest() {
        qputenv("HOME", QByteArray::fromStdString(folder.path("home")));
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.path("home/share")));
        QDir(QString::fromStdString(folder.path())).mkpath("home/share");
        folder.put("secret", "secret");
        for (const char* name : {"Mail", "System", "Received"}) files.MkDir(name);
        files.Rewrite("Mail\\i1.qrm", "one\r\n");
    }
    ~PosixDiskTest() override {
        qputenv("HOME", home);
        data.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", data);
    }

    void link(const std::string& target, const std::string& name) const {
        ASSERT_EQ(::symlink(target.c_str(), folder.path("program/" + name).c_str()), 0);
    }

    QByteArray home = qgetenv("HOME");
    QByteArray data = qgetenv("XDG_DATA_HOME");
    TemporaryFolder folder;
    PosixDisk disk{folder.path("program")};
    Files files{disk};
};

TEST_F(PosixDiskTest, NothingLeadsOut) {
    link("..", "Mail/up");
    link("../../secret", "Mail/out");
    link(folder.path("secret"), "Mail/absolute");
    link("/dev/zero", "Mail/device");
    link("../Mail/i1.qrm", "System/inside");
    link("../Mail", "Received/sub");
    link("/nowhere", "Received/dangling");
    files.AllowReceiving(true);
    const char* const refused[] = {
        "Mail\\out",        "Mail\\absolute",        "Mail\\up\\..\\secret", "Mail\\up\\up\\secret",
        "Mail\\device",     "Received\\sub\\i1.qrm", "Received\\dangling",   "Received\\..\\Mail\\x",
        "Mail/../../secret"};
    for (const char* path : refused) {
        EXPECT_NE(faultOf([&] { files.Open(path, FileMode::Input); }), 0) << path;
        EXPECT_NE(faultOf([&] { files.Open(path, FileMode::Output); }), 0) << path;
        EXPECT_NE(faultOf([&] { files.Kill(path); }), 0) << path;
        EXPECT_NE(faultOf([&] { files.Rewrite(path, "x"); }), 0) << path;
    }
    EXPECT_EQ(folder.content("secret"), "secret");
    EXPECT_EQ(folder.content("program/Mail/i1.qrm"), "one\r\n");
    EXPECT_EQ(files.ReadWhole("System\\inside"), "one\r\n");
    EXPECT_EQ(files.ReadWhole("Mail\\up\\Mail\\i1.qrm"), "one\r\n");
}

TEST_F(PosixDiskTest, TheDriverItselfFollowsNoLink) {
    link("../../secret", "Mail/out");
    link("..", "Mail/up");
    for (const auto access :
         {DiskDriver::Access::Read, DiskDriver::Access::Create, DiskDriver::Access::Empty}) {
        EXPECT_NE(faultOf([&] { disk.open("Mail/out", access); }), 0);
        EXPECT_NE(faultOf([&] { disk.open("Mail/up/new", access); }), 0);
    }
    EXPECT_NE(faultOf([&] { disk.remove("Mail/up/Mail/i1.qrm"); }), 0);
    EXPECT_NE(faultOf([&] { disk.list("Mail/up"); }), 0);
    EXPECT_NE(faultOf([&] { disk.moveToWaste("Mail/out"); }), 0);
    EXPECT_EQ(folder.content("secret"), "secret");
}

TEST_F(PosixDiskTest, FilesBelongToTheirOwnerAloneAndNeverRun) {
    const mode_t before = ::umask(0);
    files.AllowReceiving(true);
    files.MkDir("Received\\sub");
    files.Open("Received\\tool", FileMode::Output).Close();
    folder.put("program/Received/old", "#!/bin/sh\n");
    ::chmod(folder.path("program/Received/old").c_str(), 0755);
    files.Open("Received\\old", FileMode::Binary).Put(1, "x");
    ::umask(before);
    EXPECT_EQ(folder.mode("program"), 0700);
    EXPECT_EQ(folder.mode("program/Mail"), 0700);
    EXPECT_EQ(folder.mode("program/Received/sub"), 0700);
    EXPECT_EQ(folder.mode("program/Received/tool"), 0600);
    EXPECT_EQ(folder.mode("program/Received/old") & 0111, 0);
    EXPECT_EQ(folder.mode("program/Mail/i1.qrm"), 0600);
}

TEST_F(PosixDiskTest, OnlyPlainFilesAreOpened) {
    ASSERT_EQ(::mkfifo(folder.path("program/Mail/pipe").c_str(), 0600), 0);
    EXPECT_NE(faultOf([&] { files.Open("Mail\\pipe", FileMode::Input); }), 0);
    EXPECT_NE(faultOf([&] { files.OpenPicked(folder.path("program/Mail/pipe")); }), 0);
    EXPECT_NE(faultOf([&] { files.OpenPicked("/dev/zero"); }), 0);
    EXPECT_EQ(faultOf([&] { files.OpenPicked(folder.path("none")); }), 53);
    EXPECT_EQ(files.OpenPicked(folder.path("secret")).Get(1, 100), "secret");
}

TEST_F(PosixDiskTest, DeletedFilesCanBeHadBack) {
    files.Discard("Mail\\i1.qrm");
    EXPECT_EQ(folder.content("home/share/Trash/files/i1.qrm"), "one\r\n");
    EXPECT_FALSE(files.Exists("Mail\\i1.qrm"));
}

TEST_F(PosixDiskTest, ThePrivateWasteIsBounded) {
    files.MkDir(WasteFolder::name);
    for (std::size_t file = 1; file <= WasteFolder::mostFiles + 3; ++file) {
        files.Rewrite("Mail\\" + std::string(240, 'x') + ".jpg", std::to_string(file));
        WasteFolder(disk).keep("Mail/" + std::string(240, 'x') + ".jpg");
    }
    const auto kept = files.List(WasteFolder::name);
    ASSERT_EQ(kept.size(), WasteFolder::mostFiles);
    EXPECT_EQ(files.ReadWhole(".waste\\" + kept.front()), "4");
    EXPECT_EQ(files.ReadWhole(".waste\\" + kept.back()), "67");
    EXPECT_TRUE(kept.back().ends_with(".jpg"));
}

TEST_F(PosixDiskTest, AFullDiskLeavesTheOldData) {
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto action = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(faultOf([&] { files.Rewrite("Mail\\i1.qrm", std::string(5000, 'x')); }), 61);
    EXPECT_EQ(faultOf([&] { files.AppendRecord("Mail\\i1.qrm", std::string(5000, 'x')); }), 61);
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, action);
    EXPECT_EQ(files.ReadWhole("Mail\\i1.qrm"), "one\r\n");
    EXPECT_EQ(files.List("Mail"), std::vector<std::string>{"i1.qrm"});
}

TEST_F(PosixDiskTest, NamesAreFoundInAnyCase) {
    files.Rewrite("Mail\\\xDC\xED\xED\xE1.qrm", "greek");
    EXPECT_EQ(files.ReadWhole("MAIL\\\xA2\xCD\xED\xE1.QRM"), "greek");
    EXPECT_EQ(files.FileLen("mail\\I1.QRM"), 5);
    EXPECT_EQ(faultOf([&] { files.Rewrite("Mail\\" + std::string(300, 'x'), ""); }), 52);
}

TEST(PosixDisk, SaysWhichFolderCannotBeUsed) {
    const TemporaryFolder folder;
    folder.put("file", "");
    try {
        PosixDisk disk(folder.path("file/program"));
        FAIL();
    } catch (const RuntimeError& fault) {
        EXPECT_NE(fault.Description.find(folder.path("file/program")), std::string::npos);
    }
}

}  // namespace
}  // namespace talvora
