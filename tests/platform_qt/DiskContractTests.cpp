// What a disk in memory and a real one both promise to `Files`.

#include <gmock/gmock.h>
#include <unistd.h>

#include <map>
#include <set>

#include "platform/Files.h"
#include "platform/FolderLook.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/TemporaryFolder.h"
#include "simulation/FaultOf.h"
#include "simulation/MemoryDisk.h"

namespace talvora::test {
namespace {

using Paths = std::vector<std::string>;
using Call = std::function<void(Files&)>;

struct EachDisk : testing::TestWithParam<const char*> {
    EachDisk() {
        put("Mail/i1A.ml", "one\r\ntwo\r\n");
        put("System/Friends.lst", "Anna\r\n");
        put("Received/photo.jpg", "old");
    }
    // A file of that name, to the letter; folders on the way are made.
    void put(const std::string& path, const std::string& text) {
        for (auto slash = path.find('/'); slash != path.npos; slash = path.find('/', slash + 1)) {
            const std::string above = path.substr(0, slash);
            if (disk.status(above).What == DiskDriver::Kind::Missing) disk.makeFolder(above);
        }
        const auto file = disk.open(path, DiskDriver::Access::Create);
        disk.write(file, 0, text);
        disk.close(file);
    }
    std::string content(const std::string& path) {
        std::string text(100, '\0');
        const auto file = disk.open(path, DiskDriver::Access::Read);
        text.resize(disk.read(file, 0, text.data(), text.size()));
        disk.close(file);
        return text;
    }
    void link(const std::string& name, const std::string& target) {
        if (!real) return memory.makeLink(name, target);
        ASSERT_EQ(::symlink(target.c_str(), posix.nativePath(name).c_str()), 0);
    }
    // All files and links.
    std::set<std::string> paths(const std::string& folder = "") {
        std::set<std::string> found;
        for (const auto& [name, status] : disk.list(folder, DiskDriver::Detail::Kind)) {
            const std::string path = folder + (folder.empty() ? "" : "/") + name;
            if (status.What == DiskDriver::Kind::Folder)
                found.merge(paths(path));
            else
                found.insert(path);
        }
        return found;
    }
    void expectFaults(int fault, const std::vector<Call>& calls) {
        for (const Call& call : calls)
            EXPECT_EQ(faultOf([&] { call(files); }), fault) << "call " << &call - calls.data();
    }

    const bool real = std::string(GetParam()) == "Real";
    TemporaryFolder place;
    MemoryDisk memory;
    PosixDisk posix{place.path("program")};
    DiskDriver& disk = real ? static_cast<DiskDriver&>(posix) : memory;
    Files files{disk};
};
INSTANTIATE_TEST_SUITE_P(Platform, EachDisk, testing::Values("Real", "InMemory"),
                         [](const auto& disk) { return disk.param; });

TEST_P(EachDisk, RefusesPathsThatLeaveTheFolderBeforeAnythingIsTouched) {
    const std::map<int, Paths> refused = {
        {75,
         {"..", "..\\x", "Mail\\..\\..\\x", "Mail\\..", ".\\Mail\\i1A.ml", "\\etc\\passwd",
          "\\\\server\\share\\x", "/etc/passwd", "C:\\x", "c:x", "Mail\\out\\x", "Mail\\absolute",
          "Mail\\outside", "Mail\\round", "Mail\\toReceived", "Received\\link", "Received\\sub\\i1A.ml"}},
        {52,
         {"Mail/i1A.ml", "Mail\\a/../../x", "Mail\\\\i1A.ml", std::string("Mail\\i1A.ml\0.txt", 16),
          "Mail\\a\nb", "Mail\\a\x7F", "Mail\\a\x81", "Mail\\a:b", "Mail\\a*", "Mail\\a?", "Mail\\a|b",
          "Mail\\a\"b", std::string(2000, 'a')}},
        {76, {"Nowhere\\x", "Mail\\i1A.ml\\x"}}};
    link("Mail/out", "../..");
    link("Mail/absolute", "/etc/passwd");
    link("Mail/outside", "../System/../../secret");
    link("Mail/round", "round");
    link("Mail/toReceived", "../Received/photo.jpg");
    link("Received/link", "photo.jpg");
    link("Received/sub", "../Mail");
    files.AllowReceiving(true);
    const auto before = paths();
    for (const auto& [fault, paths] : refused) {
        for (const auto& path : paths) {
            SCOPED_TRACE(path);
            expectFaults(fault,
                         {[&](Files& f) { f.Open(path, FileMode::Input); },
                          [&](Files& f) { f.Open(path, FileMode::Output); },
                          [&](Files& f) { f.Open(path, FileMode::Binary); }, [&](Files& f) { f.Kill(path); },
                          [&](Files& f) { f.MkDir(path); }, [&](Files& f) { f.Rewrite(path, "x"); },
                          [&](Files& f) { f.Rename("Mail\\i1A.ml", path); }});
        }
    }
    EXPECT_EQ(paths(), before);
}

TEST_P(EachDisk, FindsExistingNamesInAnyCaseAndCreatesInTheCaseGiven) {
    put("Mail/\xCE\x86\xCE\xBD\xCE\xBD\xCE\xB1.qrm", "greek");  // "Anna" with an accent, in UTF-8
    put("Mail/\xC4\x80.qrm", "no form in the page");
    link("Mail/inside", "../System/Friends.lst");
    EXPECT_EQ(files.ReadWhole("MAIL\\\xDC\xCD\xED\xC1.QRM"), "greek");
    EXPECT_EQ(files.ReadWhole("Mail\\inside"), "Anna\r\n");
    EXPECT_FALSE(files.Exists("Mail\\A.qrm"));
    files.Rewrite("SYSTEM\\friends.LST", "Maria\r\n");
    files.Rewrite("system\\New.lst", "new");
    files.Rename("mail\\i1a.ml", "Mail\\I1A.ML");
    EXPECT_EQ(content("System/Friends.lst"), "Maria\r\n");
    EXPECT_EQ(content("System/New.lst"), "new");
    EXPECT_EQ(content("Mail/I1A.ML"), "one\r\ntwo\r\n");
    EXPECT_EQ(files.List("Mail", "*.QRM"), (Paths{"\xA2\xED\xED\xE1.qrm"}));
}

TEST_P(EachDisk, ListsWhatFitsAPattern) {
    for (const char* name : {"Box/i2.qrm", "Box/I1.qrm", "Box/o1.qrm", "Box/i1.qrm.tmp", "Box/i3.qrm/folder"})
        put(name, "");
    EXPECT_EQ(files.List("Box", "i*.qrm"), (Paths{"I1.qrm", "i2.qrm"}));
    EXPECT_EQ(files.List("Box", "?1.qrm"), (Paths{"I1.qrm", "o1.qrm"}));
    EXPECT_EQ(files.List("Box\\", "*1*.*m*p"), (Paths{"i1.qrm.tmp"}));
    EXPECT_EQ(files.List("Box").size(), 4U);
}

TEST_P(EachDisk, LeavesReceivedFilesAloneUntilAnOfferStands) {
    const auto before = paths();
    expectFaults(70, {[](Files& f) { f.Open("Received\\new", FileMode::Output); },
                      [](Files& f) { f.Open("RECEIVED\\photo.jpg", FileMode::Binary); },
                      [](Files& f) { f.Open("Received\\photo.jpg", FileMode::Append); },
                      [](Files& f) { f.Kill("received\\PHOTO.jpg"); },
                      [](Files& f) { f.Discard("Received\\photo.jpg"); },
                      [](Files& f) { f.Rename("Received\\photo.jpg", "Mail\\x"); },
                      [](Files& f) { f.Rename("Mail\\i1A.ml", "Received\\x"); },
                      [](Files& f) { f.Replace("Mail\\i1A.ml", "Received\\photo.jpg"); },
                      [](Files& f) { f.FileCopy("Mail\\i1A.ml", "Received\\photo.jpg"); },
                      [](Files& f) { f.Rewrite("Received\\photo.jpg", "x"); },
                      [](Files& f) { f.AppendRecord("Received\\photo.jpg", "x"); },
                      [](Files& f) { f.MkDir("Received\\sub"); }});
    EXPECT_EQ(paths(), before);
    EXPECT_EQ(content("Received/photo.jpg"), "old");
}

TEST_P(EachDisk, FaultsAsTheClassicFilesDo) {
    place.put("b.txt", "picked");
    memory.picked[place.path("b.txt")] = "picked";
    expectFaults(53, {[](Files& f) { f.Open("Mail\\none", FileMode::Input); },
                      [](Files& f) { f.Kill("Mail\\none"); }, [](Files& f) { f.FileLen("Mail\\none"); }});
    expectFaults(75, {[](Files& f) { f.Open("Mail", FileMode::Output); }, [](Files& f) { f.Kill("Mail"); }});
    expectFaults(58, {[](Files& f) { f.Rename("Mail\\i1A.ml", "System\\Friends.lst"); }});
    expectFaults(70, {[](Files& f) { f.FileCopy("Mail\\i1A.ml", "Mail\\I1A.ml"); }});
    File in = files.Open("Mail\\i1A.ml", FileMode::Input);
    File again = files.Open("mail\\i1a.ml", FileMode::Input);
    File out = files.Open("Mail\\new", FileMode::Output);
    File picked = files.OpenPicked(place.path("b.txt"));
    expectFaults(55,
                 {[](Files& f) { f.Open("Mail\\i1A.ml", FileMode::Output); },
                  [](Files& f) { f.Kill("Mail\\i1A.ml"); }, [](Files& f) { f.Rewrite("Mail\\i1A.ml", ""); },
                  [](Files& f) { f.Open("Mail\\new", FileMode::Input); },
                  [](Files& f) { f.Rename("Mail\\i1A.ml", "Mail\\x"); },
                  [](Files& f) { f.Replace("Mail\\i1A.ml", "System\\Friends.lst"); },
                  [](Files& f) { f.Replace("System\\Friends.lst", "Mail\\i1A.ml"); }});
    expectFaults(54, {[&](Files&) { in.WriteLine("x"); }, [&](Files&) { in.Put(1, "x"); },
                      [&](Files&) { out.ReadLine(); }});
    EXPECT_EQ(picked.Get(3, 10), "cked");
    expectFaults(63, {[&](Files&) { picked.Get(0, 1); }});
    expectFaults(70, {[&](Files&) { picked.Put(1, "x"); }});
    files.CloseAll();
    EXPECT_EQ(memory.openHandles(), 0);
    expectFaults(52, {[&](Files&) { out.WriteLine("x"); }, [&](Files&) { in.AtEnd(); },
                      [](Files&) { File().ReadLine(); }});
    files.Kill("Mail\\new");
}

// Whoever did it; `put` goes past the files' own layer.
TEST_P(EachDisk, ALookTellsAllAndLaterWhatHappened) {
    FolderLook look(files, "Mail", "*.ml");
    const auto told = [&] {
        const FolderLook::News news = look.Look();
        std::string text = news.All ? "all:" : "";
        for (const auto& entry : news.Found) text += " " + entry.Name + " " + std::to_string(entry.Size);
        for (const auto& name : news.Gone) text += " -" + name;
        return text;
    };
    EXPECT_EQ(told(), "all: i1A.ml 10");
    EXPECT_EQ(told(), "");
    put("Mail/i1A.ml", "ONE\r\ntwo\r\n");
    put("Mail/o1.txt", "");
    EXPECT_EQ(told(), " i1A.ml 10");
    files.AppendRecord("Mail\\a.ml", "Subject: lunch");
    EXPECT_EQ(told(), " a.ml 16");
    files.Rename("Mail\\a.ml", "Mail\\b.ml");
    EXPECT_EQ(told(), " b.ml 16 -a.ml");
    files.Kill("Mail\\b.ml");
    EXPECT_EQ(told(), " -b.ml");
    EXPECT_EQ(files.ReadStart("Mail\\i1A.ml", 3), "ONE");
}

}  // namespace
}  // namespace talvora::test
