#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>

#include "platform/Files.h"
#include "platform/WasteFolder.h"
#include "simulation/FaultOf.h"
#include "simulation/MemoryDisk.h"

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
    MemoryDisk disk;
    Files files{disk};
};

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
