#include <gmock/gmock.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <filesystem>

#include "platform/Files.h"
#include "platform/FolderLook.h"
#include "platform/WasteFolder.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/TemporaryFolder.h"
#include "simulation/FaultOf.h"

namespace talvora::test {

// The program's folder, with a neighbour that it must not reach; the user's home is in it too, so that the
// waste basket is the test's own.
class PosixDiskTest : public testing::Test {
  protected:
    PosixDiskTest() {
        qputenv("HOME", QByteArray::fromStdString(folder.path()));
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.path("share")));
        QDir(QString::fromStdString(folder.path())).mkdir("share");
        folder.put("secret", "secret");
        for (const char* name : {"Mail", "System", "Received"}) files.MkDir(name);
        files.Rewrite("Mail\\i1.qrm", "one\r\n");
        link("..", "Mail/up");
        link("../../secret", "Mail/out");
    }
    ~PosixDiskTest() override { data.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", data); }

    void link(const std::string& target, const std::string& name) const {
        ASSERT_EQ(::symlink(target.c_str(), folder.path("program/" + name).c_str()), 0);
    }

    QByteArray home = qgetenv("HOME");
    QByteArray data = qgetenv("XDG_DATA_HOME");
    TemporaryFolder folder;
    PosixDisk disk{folder.path("program")};
    Files files{disk};
};

// In case a link is laid behind the check of the layer above.
TEST_F(PosixDiskTest, TheDriverItselfFollowsNoLink) {
    for (const auto access :
         {DiskDriver::Access::Read, DiskDriver::Access::Create, DiskDriver::Access::Empty}) {
        EXPECT_NE(faultOf([&] { disk.open("Mail/out", access); }), 0);
        EXPECT_NE(faultOf([&] { disk.open("Mail/up/new", access); }), 0);
    }
    EXPECT_NE(faultOf([&] { disk.remove("Mail/up/Mail/i1.qrm"); }), 0);
    EXPECT_NE(faultOf([&] { disk.list("Mail/up", DiskDriver::Detail::Kind); }), 0);
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
    EXPECT_EQ(folder.mode("program/Received/sub"), 0700);
    EXPECT_EQ(folder.mode("program/Received/tool"), 0600);
    EXPECT_EQ(folder.mode("program/Received/old") & 0111, 0);
}

TEST_F(PosixDiskTest, ALookTellsAllWhenNotAllIsKnown) {
    FolderLook look(files, "Mail", "i*.qrm");
    const auto told = [&] {
        const FolderLook::News news = look.Look();
        std::string text = news.All ? "all:" : "";
        for (const auto& entry : news.Found) text += " " + entry.Name;
        return text;
    };
    EXPECT_EQ(told(), "all: i1.qrm");
    for (int file = 0; file < 20'000; ++file) folder.put("program/Mail/o" + std::to_string(file), "");
    EXPECT_EQ(told(), "all: i1.qrm") << "more than the system notes";
    EXPECT_EQ(told(), "");
    std::filesystem::rename(folder.path("program/Mail"), folder.path("program/Old"));
    EXPECT_EQ(told(), "all:");
    files.MkDir("Mail");
    folder.put("program/Mail/i3.qrm", "");
    EXPECT_EQ(told(), "all: i3.qrm");
}

TEST_F(PosixDiskTest, OnlyPlainFilesAreOpened) {
    ASSERT_EQ(::mkfifo(folder.path("program/Mail/pipe").c_str(), 0600), 0);
    EXPECT_NE(faultOf([&] { files.Open("Mail\\pipe", FileMode::Input); }), 0);
    EXPECT_NE(faultOf([&] { files.OpenPicked("/dev/zero"); }), 0);
    EXPECT_EQ(faultOf([&] { files.OpenPicked(folder.path("none")); }), 53);
    EXPECT_EQ(faultOf([&] { files.Rewrite("Mail\\" + std::string(300, 'x'), ""); }), 52);
    EXPECT_EQ(faultOf([&] { PosixDisk(folder.path("secret/program")); }), 76);
}

TEST_F(PosixDiskTest, DeletedFilesCanBeHadBack) {
    files.Discard("Mail\\i1.qrm");
    EXPECT_EQ(folder.content("share/Trash/files/i1.qrm"), "one\r\n");
    EXPECT_FALSE(files.Exists("Mail\\i1.qrm"));
    files.Rewrite("Mail\\i1.qrm", "two\r\n");
    WasteFolder(disk).keep("Mail/i1.qrm");
    EXPECT_EQ(files.ReadWhole(".waste\\0000000001-i1.qrm"), "two\r\n");
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.path("secret")));  // no folder
    files.Rewrite("Mail\\i2.qrm", "three\r\n");
    files.Discard("Mail\\i2.qrm");
    EXPECT_EQ(files.ReadWhole(".waste\\0000000002-i2.qrm"), "three\r\n");
    EXPECT_FALSE(QDir::current().exists("info")) << "the toolkit's own waste basket";
}

TEST_F(PosixDiskTest, AFullDiskLeavesTheOldData) {
    onAFullDisk(1000, [&] {
        EXPECT_EQ(faultOf([&] { files.Rewrite("Mail\\i1.qrm", std::string(5000, 'x')); }), 61);
        EXPECT_EQ(faultOf([&] { files.AppendRecord("Mail\\i1.qrm", std::string(5000, 'x')); }), 61);
    });
    EXPECT_EQ(files.ReadWhole("Mail\\i1.qrm"), "one\r\n");
    EXPECT_THAT(files.List("Mail", "i*"), testing::ElementsAre("i1.qrm"));
}

}  // namespace talvora::test
