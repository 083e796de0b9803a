#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include "platform/Files.h"
#include "platform/WasteFolder.h"
#include "simulation/FaultOf.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {
namespace {

using Paths = std::vector<std::string>;
using Survived = MemoryDisk::Survived;
using Call = std::function<void(Files&)>;

struct Folder {
    Folder() {
        disk.put("Mail/i1A.ml", "one\r\ntwo\r\n");
        disk.put("System/Friends.lst", "Anna\r\n");
        disk.put("Received/photo.jpg", "old");
    }
    // Empty if there is no such file.
    std::string content(std::string path) const {
        std::replace(path.begin(), path.end(), '\\', '/');
        return disk.content(path).value_or("");
    }
    void expectFaults(int fault, const std::vector<Call>& calls) {
        for (std::size_t i = 0; i < calls.size(); ++i)
            EXPECT_EQ(faultOf([&] { calls[i](files); }), fault) << "call " << i;
    }
    MemoryDisk disk;
    Files files{disk};
};

TEST(FilePaths, ThatLeaveTheFolderAreRefusedBeforeAnythingIsTouched) {
    const std::map<int, Paths> refused = {
        {75,
         {"..", "..\\x", "Mail\\..\\..\\x", "Mail\\..", ".\\Mail\\i1A.ml", "\\etc\\passwd",
          "\\\\server\\share\\x", "/etc/passwd", "C:\\x", "c:x", "Mail\\out\\x", "Mail\\absolute",
          "Mail\\outside", "Mail\\round", "Mail\\toReceived", "Received\\link"}},
        {52,
         {"Mail/i1A.ml", "Mail\\a/../../x", "Mail\\\\i1A.ml", std::string("Mail\\i1A.ml\0.txt", 16),
          "Mail\\a\nb", "Mail\\a\x7F", "Mail\\a\x81", "Mail\\a:b", "Mail\\a*", "Mail\\a?", "Mail\\a|b",
          "Mail\\a\"b", std::string(2000, 'a')}},
        {76, {"Nowhere\\x", "Mail\\i1A.ml\\x"}}};
    Folder folder;
    folder.disk.makeLink("Mail/out", "../..");
    folder.disk.makeLink("Mail/absolute", "/etc/passwd");
    folder.disk.makeLink("Mail/outside", "../System/../../secret");
    folder.disk.makeLink("Mail/round", "round");
    folder.disk.makeLink("Mail/toReceived", "../Received/photo.jpg");
    folder.disk.makeLink("Received/link", "photo.jpg");
    folder.files.AllowReceiving(true);
    const Paths before = folder.disk.paths();
    for (const auto& [fault, paths] : refused) {
        for (const auto& path : paths) {
            SCOPED_TRACE(path);
            folder.expectFaults(
                fault, {[&](Files& f) { f.Open(path, FileMode::Input); },
                        [&](Files& f) { f.Open(path, FileMode::Output); },
                        [&](Files& f) { f.Open(path, FileMode::Binary); }, [&](Files& f) { f.Kill(path); },
                        [&](Files& f) { f.MkDir(path); }, [&](Files& f) { f.Rewrite(path, "x"); },
                        [&](Files& f) { f.Rename("Mail\\i1A.ml", path); }});
        }
    }
    EXPECT_EQ(folder.disk.paths(), before);
}

TEST(FilePaths, FindExistingNamesInAnyCaseAndCreateInTheCaseGiven) {
    Folder folder;
    folder.disk.put("Mail/\xCE\x86\xCE\xBD\xCE\xBD\xCE\xB1.qrm", "greek");  // "Anna" with an accent, in UTF-8
    folder.disk.put("Mail/\xC4\x80.qrm", "no form in the page");
    folder.disk.makeLink("Mail/inside", "../System/Friends.lst");
    Files& files = folder.files;
    EXPECT_EQ(files.ReadWhole("MAIL\\\xDC\xCD\xED\xC1.QRM"), "greek");
    EXPECT_EQ(files.ReadWhole("Mail\\inside"), "Anna\r\n");
    EXPECT_FALSE(files.Exists("Mail\\A.qrm"));
    files.Rewrite("SYSTEM\\friends.LST", "Maria\r\n");
    files.Rewrite("system\\New.lst", "new");
    files.Rename("mail\\i1a.ml", "Mail\\I1A.ML");
    EXPECT_EQ(folder.content("System/Friends.lst"), "Maria\r\n");
    EXPECT_EQ(folder.content("System/New.lst"), "new");
    EXPECT_EQ(folder.content("Mail/I1A.ML"), "one\r\ntwo\r\n");
    EXPECT_EQ(files.List("Mail", "*.QRM"), (Paths{"\xA2\xED\xED\xE1.qrm"}));
}

TEST(FilePatterns, FitAsInTheListOfMails) {
    Folder folder;
    for (const char* name : {"Box/i2.qrm", "Box/I1.qrm", "Box/o1.qrm", "Box/i1.qrm.tmp", "Box/i3.qrm/folder"})
        folder.disk.put(name, "");
    EXPECT_EQ(folder.files.List("Box", "i*.qrm"), (Paths{"I1.qrm", "i2.qrm"}));
    EXPECT_EQ(folder.files.List("Box", "?1.qrm"), (Paths{"I1.qrm", "o1.qrm"}));
    EXPECT_EQ(folder.files.List("Box\\", "*1*.*m*p"), (Paths{"i1.qrm.tmp"}));
    EXPECT_EQ(folder.files.List("Box").size(), 4U);
}

TEST(ReceivedFiles, AreLeftAloneUntilAnOfferStands) {
    Folder folder;
    const Paths before = folder.disk.paths();
    folder.expectFaults(70, {[](Files& f) { f.Open("Received\\new", FileMode::Output); },
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
    EXPECT_EQ(folder.disk.paths(), before);
    EXPECT_EQ(folder.content("Received/photo.jpg"), "old");
}

TEST(ReceivedFiles, GoToTheWasteBasketBeforeTheyAreEmptiedOrDeleted) {
    Folder folder;
    folder.files.AllowReceiving(true);
    folder.files.Open("Received\\Photo.jpg", FileMode::Output).Close();
    File file = folder.files.Open("Received\\photo.jpg", FileMode::Binary);
    file.Put(1, "new");
    file.Put(4, "er");
    file.Close();
    folder.files.Kill("Received\\photo.jpg");
    folder.files.Discard("Mail\\i1A.ml");
    EXPECT_EQ(folder.disk.paths(), (Paths{".waste/0000000001-photo.jpg", ".waste/0000000002-photo.jpg",
                                          ".waste/0000000003-i1A.ml", "System/Friends.lst"}));
    EXPECT_EQ(folder.content(".waste/0000000001-photo.jpg"), "old");
    EXPECT_EQ(folder.content(".waste/0000000002-photo.jpg"), "newer");
}

TEST(DiscardedFiles, AreInTheirPlaceOrInTheWasteFolderWhateverFailsAndWhereverTheDiskDies) {
    for (const auto survived : {Survived::Flushed, Survived::Everything}) {
        bool reached = true;
        for (int step = 0; reached; ++step) {
            Folder folder;
            folder.disk.dieAtWrite(step);
            const bool gone = faultOf([&] { folder.files.Discard("Mail\\i1A.ml"); }) == 0;
            reached = folder.disk.died();
            folder.disk.restart(survived);
            const std::string kept = folder.content(".waste/0000000001-i1A.ml");
            EXPECT_EQ(kept.empty() ? folder.content("Mail/i1A.ml") : kept, "one\r\ntwo\r\n") << step;
            EXPECT_TRUE(!gone || !kept.empty());
        }
    }
}

TEST(DiscardedFiles, AreKeptUpToABoundAndStayWhereTheyAreIfNoRoomCanBeMade) {
    Folder folder;
    const std::string name = std::string(240, 'x') + ".jpg";
    const auto discard = [&](std::size_t file) {
        folder.disk.put("Mail/" + name, std::to_string(file));
        return faultOf([&] { folder.files.Discard("Mail\\" + name); });
    };
    for (std::size_t file = 1; file <= WasteFolder::MostFiles + 3; ++file) EXPECT_EQ(discard(file), 0);
    const auto kept = folder.files.List(WasteFolder::name);
    ASSERT_EQ(kept.size(), WasteFolder::MostFiles);
    EXPECT_EQ(folder.files.ReadWhole(".waste\\" + kept.front()), "4");
    EXPECT_EQ(folder.files.ReadWhole(".waste\\" + kept.back()), "67");
    folder.disk.dieAtWrite(0);
    EXPECT_EQ(discard(68), 57);
    folder.disk.restart(Survived::Everything);
    EXPECT_EQ(folder.content("Mail/" + name), "68");
}

TEST(OpenFiles, ReadLinesWhateverTheirEnds) {
    const std::string chunk(4095, 'a');  // its CR is the last byte of the first piece that is read
    const std::string longest(File::LineLimit, 'x');
    const std::pair<std::string, Paths> cases[] = {{"", {}},
                                                   {"a\nb\rc\r\nd", {"a", "b", "c", "d"}},
                                                   {"\r\n\n\r\r\n", {"", "", "", ""}},
                                                   {{"a\0b\r\n", 5}, {{"a\0b", 3}}},
                                                   {chunk + "\r\nb", {chunk, "b"}},
                                                   {longest + "\r\n", {longest}}};
    Folder folder;
    for (const auto& [content, lines] : cases) {
        folder.disk.put("Mail/x", content);
        File file = folder.files.Open("Mail\\x", FileMode::Input);
        Paths read;
        while (!file.AtEnd()) read.push_back(file.ReadLine());
        EXPECT_EQ(read, lines);
        EXPECT_EQ(faultOf([&] { file.ReadLine(); }), 62);
    }
    folder.disk.put("Mail/x", longest + longest + longest);
    File endless = folder.files.Open("Mail\\x", FileMode::Input);
    int faults = 0;
    while (!endless.AtEnd() && faults < 10) faults += faultOf([&] { endless.ReadLine(); }) != 0 ? 1 : 0;
    EXPECT_LT(faults, 4);
}

TEST(OpenFiles, FaultAsTheClassicOnesDo) {
    Folder folder;
    folder.disk.picked["/home/a/b.txt"] = "picked";
    folder.expectFaults(
        53, {[](Files& f) { f.Open("Mail\\none", FileMode::Input); }, [](Files& f) { f.Kill("Mail\\none"); },
             [](Files& f) { f.FileLen("Mail\\none"); }});
    folder.expectFaults(
        75, {[](Files& f) { f.Open("Mail", FileMode::Output); }, [](Files& f) { f.Kill("Mail"); }});
    folder.expectFaults(58, {[](Files& f) { f.Rename("Mail\\i1A.ml", "System\\Friends.lst"); }});
    folder.expectFaults(70, {[](Files& f) { f.FileCopy("Mail\\i1A.ml", "Mail\\I1A.ml"); }});
    File in = folder.files.Open("Mail\\i1A.ml", FileMode::Input);
    File again = folder.files.Open("mail\\i1a.ml", FileMode::Input);
    File out = folder.files.Open("Mail\\new", FileMode::Output);
    File picked = folder.files.OpenPicked("/home/a/b.txt");
    folder.expectFaults(
        55, {[](Files& f) { f.Open("Mail\\i1A.ml", FileMode::Output); },
             [](Files& f) { f.Kill("Mail\\i1A.ml"); }, [](Files& f) { f.Rewrite("Mail\\i1A.ml", ""); },
             [](Files& f) { f.Open("Mail\\new", FileMode::Input); },
             [](Files& f) { f.Rename("Mail\\i1A.ml", "Mail\\x"); },
             [](Files& f) { f.Replace("Mail\\i1A.ml", "System\\Friends.lst"); },
             [](Files& f) { f.Replace("System\\Friends.lst", "Mail\\i1A.ml"); }});
    folder.expectFaults(54, {[&](Files&) { in.WriteLine("x"); }, [&](Files&) { in.Put(1, "x"); },
                             [&](Files&) { out.ReadLine(); }});
    EXPECT_EQ(picked.Get(3, 10), "cked");
    folder.expectFaults(63, {[&](Files&) { picked.Get(0, 1); }});
    folder.expectFaults(70, {[&](Files&) { picked.Put(1, "x"); }});
    folder.files.CloseAll();
    EXPECT_EQ(folder.disk.openHandles(), 0);
    folder.expectFaults(52, {[&](Files&) { out.WriteLine("x"); }, [&](Files&) { in.AtEnd(); },
                             [](Files&) { File().ReadLine(); }});
    folder.files.Kill("Mail\\new");
}

TEST(OpenFiles, AreAsTheyWereAfterAFaultSoThatItCanBeDoneAgain) {
    Folder folder;
    File out = folder.files.Open("Mail\\o1.qrm", FileMode::Output);
    folder.disk.failAt(0, ENOSPC);
    EXPECT_EQ(faultOf([&] { out.WriteLine("line"); }), 61);
    out.WriteLine("line");
    EXPECT_EQ(folder.content("Mail/o1.qrm"), "line\r\n");
    folder.disk.failAt(0, EIO);
    EXPECT_EQ(faultOf([&] { out.Flush(); }), 57);
    EXPECT_EQ(faultOf([&] { out.Flush(); }), 57);  // the system would say yes now, without having written
    out.Close();
    File in = folder.files.Open("Mail\\o1.qrm", FileMode::Input);
    folder.disk.failAt(0, EIO);
    EXPECT_EQ(faultOf([&] { in.ReadLine(); }), 57);
    EXPECT_EQ(in.ReadLine(), "line");
}

// Tries a change with the disk failing (or, with no error, dying) at its first step, at its second ... : what
// is on the disk then is all old or, if the change was acknowledged, all new.
void expectOldOrNew(const Call& change, const std::string& path, const std::string& whenDone, int error,
                    Survived survived) {
    bool reached = true;
    for (int step = 0; reached; ++step) {
        SCOPED_TRACE(path + " becomes " + whenDone + ", step " + std::to_string(step));
        Folder folder;
        const std::string before = folder.content(path);
        error == 0 ? folder.disk.dieAtWrite(step) : folder.disk.failAt(step, error);
        const bool acknowledged = faultOf([&] { change(folder.files); }) == 0;
        reached = folder.disk.died() || folder.disk.failed();
        if (error == 0) {
            folder.disk.restart(survived);
            Files(folder.disk).DropTornRecord(path);
        } else {
            EXPECT_EQ(folder.disk.openHandles(), 0);
            EXPECT_THAT(folder.disk.paths(), testing::Not(testing::Contains(testing::EndsWith(".new"))));
        }
        const std::string now = folder.content(path);
        EXPECT_TRUE(now == whenDone || (now == before && !acknowledged)) << now;
        EXPECT_TRUE(acknowledged || reached);
    }
}

TEST(FileChanges, LeaveTheOldOrTheNewStateWhateverFailsAndWhereverTheDiskDies) {
    const std::tuple<Call, const char*, const char*> changes[] = {
        {[](Files& f) { f.Rewrite("System\\Friends.lst", "Maria\r\n"); }, "System\\Friends.lst", "Maria\r\n"},
        {[](Files& f) { f.Replace("Mail\\i1A.ml", "System\\Friends.lst"); }, "System\\Friends.lst",
         "one\r\ntwo\r\n"},
        {[](Files& f) { f.FileCopy("Mail\\i1A.ml", "System\\Friends.lst"); }, "System\\Friends.lst",
         "one\r\ntwo\r\n"},
        {[](Files& f) { f.AppendRecord("System\\Friends.lst", "Maria"); }, "System\\Friends.lst",
         "Anna\r\nMaria\r\n"},
        {[](Files& f) { f.AppendRecord("Mail\\Announcements.lst", "1 2"); }, "Mail\\Announcements.lst",
         "1 2\r\n"},
        {[](Files& f) {
             File file = f.Open("Mail\\i2.ml", FileMode::Output);
             file.WriteLine("line");
             file.Flush();
             file.Close();
         },
         "Mail\\i2.ml", "line\r\n"}};
    for (const auto& [change, path, whenDone] : changes) {
        for (const int error : {0, ENOSPC, EIO, EROFS, EMFILE})
            expectOldOrNew(change, path, whenDone, error, Survived::Flushed);
        expectOldOrNew(change, path, whenDone, 0, Survived::Everything);
    }
}

TEST(TornRecords, AreDroppedAndWholeOnesStay) {
    const std::string noRecord(File::LineLimit + 5, 'x');
    using Row = std::pair<std::string, std::string>;
    for (const auto& [content, kept] :
         {Row("", ""), Row("one\r\n", "one\r\n"), Row("one\n", "one\n"), Row("one\r\ntw", "one\r\n"),
          Row("torn", ""), Row("one\r\ntwo\r", "one\r\n"), Row(noRecord, noRecord)}) {
        Folder folder;
        folder.disk.put("Mail/a.lst", content);
        folder.disk.put("Mail/b.lst", content);
        EXPECT_EQ(folder.files.DropTornRecord("Mail\\a.lst"), content != kept);
        EXPECT_EQ(folder.content("Mail/a.lst"), kept);
        folder.files.AppendRecord("Mail\\b.lst", "next");
        EXPECT_EQ(folder.content("Mail/b.lst"), kept + "next\r\n");
    }
    EXPECT_FALSE(Folder().files.DropTornRecord("Mail\\none"));
}

}  // namespace
}  // namespace talvora::test
