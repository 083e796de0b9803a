#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/RuntimeError.h"
#include "support/MemoryDisk.h"

namespace talvora {
namespace {

using Paths = std::vector<std::string>;

// The number of the fault that `call` ends with; 0 if it ends well.
int faultOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& fault) {
        return fault.Number;
    }
    return 0;
}

std::string native(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

// Empty if there is no such file.
std::string contentOf(const MemoryDisk& disk, const std::string& path) {
    return disk.content(native(path)).value_or("");
}

struct Folder {
    Folder() {
        disk.put("Mail/i1A.ml", "one\r\ntwo\r\n");
        disk.put("System/Friends.lst", "Anna\r\n");
        disk.put("Received/photo.jpg", "old");
    }
    MemoryDisk disk;
    Files files{disk};
};

TEST(FilePaths, ThatLeaveTheFolderAreRefusedBeforeAnythingIsTouched) {
    struct Case {
        std::string path;
        int fault;
    };
    const Case cases[] = {
        {"..", 75},
        {"..\\x", 75},
        {"Mail\\..\\..\\x", 75},
        {"Mail\\..", 75},
        {".\\Mail\\i1A.ml", 75},
        {"\\etc\\passwd", 75},
        {"\\\\server\\share\\x", 75},
        {"/etc/passwd", 75},
        {"C:\\x", 75},
        {"c:x", 75},
        {"Mail/i1A.ml", 52},
        {"Mail\\a/../../x", 52},
        {"Mail\\\\i1A.ml", 52},
        {std::string("Mail\\i1A.ml\0.txt", 16), 52},
        {"Mail\\a\nb", 52},
        {"Mail\\a\x7F", 52},
        {"Mail\\a\x81", 52},
        {"Mail\\a:b", 52},
        {"Mail\\a*", 52},
        {"Mail\\a?", 52},
        {"Mail\\a|b", 52},
        {"Mail\\a\"b", 52},
        {std::string(2000, 'a'), 52},
        {"Nowhere\\x", 76},
        {"Mail\\i1A.ml\\x", 76},
        {"Mail\\out\\x", 75},
        {"Mail\\absolute", 75},
        {"Mail\\outside", 75},
        {"Mail\\round", 75},
        {"Mail\\toReceived", 75},
        {"Received\\link", 75},
    };
    Folder folder;
    folder.disk.makeLink("Mail/out", "../..");
    folder.disk.makeLink("Mail/absolute", "/etc/passwd");
    folder.disk.makeLink("Mail/outside", "../System/../../secret");
    folder.disk.makeLink("Mail/round", "round");
    folder.disk.makeLink("Mail/toReceived", "../Received/photo.jpg");
    folder.disk.makeLink("Received/link", "photo.jpg");
    folder.files.AllowReceiving(true);
    const Paths before = folder.disk.paths();
    for (const auto& [refused, fault] : cases) {
        const auto& path = refused;  // for the lambdas
        SCOPED_TRACE(path);
        Files& files = folder.files;
        EXPECT_EQ(faultOf([&] { files.Open(path, FileMode::Input); }), fault);
        EXPECT_EQ(faultOf([&] { files.Open(path, FileMode::Output); }), fault);
        EXPECT_EQ(faultOf([&] { files.Open(path, FileMode::Binary); }), fault);
        EXPECT_EQ(faultOf([&] { files.Kill(path); }), fault);
        EXPECT_EQ(faultOf([&] { files.Rewrite(path, "x"); }), fault);
        EXPECT_EQ(faultOf([&] { files.Rename("Mail\\i1A.ml", path); }), fault);
        EXPECT_EQ(faultOf([&] { files.MkDir(path); }), fault);
    }
    EXPECT_EQ(folder.disk.paths(), before);
    EXPECT_TRUE(folder.disk.waste.empty());
}

TEST(FilePaths, FindExistingNamesInAnyCaseAndCreateInTheCaseGiven) {
    Folder folder;
    folder.disk.put("Mail/\xCE\x86\xCE\xBD\xCE\xBD\xCE\xB1.qrm", "greek");  // "Anna" with an accent, in UTF-8
    folder.disk.put("Mail/\xC4\x80.qrm", "no form in the page");
    folder.disk.makeLink("Mail/inside", "../System/Friends.lst");
    Files& files = folder.files;
    EXPECT_EQ(files.ReadWhole("mail\\I1a.ML"), "one\r\ntwo\r\n");
    EXPECT_EQ(files.ReadWhole("MAIL\\\xDC\xCD\xED\xC1.QRM"), "greek");
    EXPECT_EQ(files.ReadWhole("Mail\\inside"), "Anna\r\n");
    EXPECT_FALSE(files.Exists("Mail\\A.qrm"));
    EXPECT_FALSE(files.Exists("Nowhere\\A.qrm"));
    files.Rewrite("SYSTEM\\friends.LST", "Maria\r\n");
    files.Rewrite("system\\New.lst", "");
    files.Rename("mail\\i1a.ml", "Mail\\I1A.ML");
    EXPECT_EQ(folder.disk.content("System/Friends.lst"), "Maria\r\n");
    EXPECT_TRUE(folder.disk.content("System/New.lst"));
    EXPECT_TRUE(folder.disk.content("Mail/I1A.ML"));
    EXPECT_EQ(files.List("Mail", "*.QRM"), (Paths{"\xA2\xED\xED\xE1.qrm"}));
}

TEST(FilePatterns, FitAsInTheListOfMails) {
    Folder folder;
    for (const char* name : {"i2.qrm", "I1.qrm", "o1.qrm", "i1.qrm.tmp", "i1.qrmx"}) {
        folder.disk.put(std::string("Box/") + name, "");
    }
    folder.disk.put("Box/i3.qrm/inner", "");  // a folder is no mail
    Files& files = folder.files;
    EXPECT_EQ(files.List("Box", "i*.qrm"), (Paths{"I1.qrm", "i2.qrm"}));
    EXPECT_EQ(files.List("Box", "?1.qrm"), (Paths{"I1.qrm", "o1.qrm"}));
    EXPECT_EQ(files.List("Box\\", "*1*.*m*p"), (Paths{"i1.qrm.tmp"}));
    EXPECT_EQ(files.List("Box", "i1.qrm"), (Paths{"I1.qrm"}));
    EXPECT_EQ(files.List("Box").size(), 5u);
    EXPECT_EQ(faultOf([&] { files.List("Nowhere"); }), 76);
}

TEST(ReceivedFiles, AreLeftAloneUntilAnOfferStands) {
    Folder folder;
    Files& files = folder.files;
    const Paths before = folder.disk.paths();
    const std::vector<std::function<void()>> refused = {
        [&] { files.Open("Received\\new", FileMode::Output); },
        [&] { files.Open("RECEIVED\\photo.jpg", FileMode::Binary); },
        [&] { files.Open("Received\\photo.jpg", FileMode::Append); },
        [&] { files.Kill("received\\PHOTO.jpg"); },
        [&] { files.Discard("Received\\photo.jpg"); },
        [&] { files.Rename("Received\\photo.jpg", "Mail\\x"); },
        [&] { files.Rename("Mail\\i1A.ml", "Received\\x"); },
        [&] { files.Replace("Mail\\i1A.ml", "Received\\photo.jpg"); },
        [&] { files.FileCopy("Mail\\i1A.ml", "Received\\photo.jpg"); },
        [&] { files.Rewrite("Received\\photo.jpg", "x"); },
        [&] { files.AppendRecord("Received\\photo.jpg", "x"); },
        [&] { files.MkDir("Received\\sub"); },
    };
    for (const auto& call : refused) EXPECT_EQ(faultOf(call), 70);
    EXPECT_EQ(folder.disk.paths(), before);
    EXPECT_EQ(files.ReadWhole("Received\\photo.jpg"), "old");
}

TEST(ReceivedFiles, GoToTheWasteBasketBeforeTheyAreEmptiedOrDeleted) {
    Folder folder;
    Files& files = folder.files;
    files.AllowReceiving(true);
    files.Open("Received\\Photo.jpg", FileMode::Output).Close();
    File file = files.Open("Received\\photo.jpg", FileMode::Binary);
    file.Put(1, "new");
    file.Put(4, "er");
    file.Close();
    files.Kill("Received\\photo.jpg");
    files.Discard("Mail\\i1A.ml");
    ASSERT_EQ(folder.disk.waste.size(), 3u);
    EXPECT_EQ(folder.disk.waste[0].Content, "old");
    EXPECT_EQ(folder.disk.waste[1].Content, "newer");
    EXPECT_EQ(folder.disk.waste[2].Path, "Mail/i1A.ml");
    EXPECT_EQ(folder.disk.paths(), (Paths{"System/Friends.lst"}));
}

TEST(OpenFiles, ReadLinesWhateverTheirEnds) {
    struct Case {
        std::string content;
        Paths lines;
    };
    const std::string chunk(4095, 'a');  // its CR is the last byte of the first piece that is read
    const Case cases[] = {
        {"", {}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\nb\rc", {"a", "b", "c"}},
        {"\r\n\n\r\r\n", {"", "", "", ""}},
        {std::string("a\0b\r\n", 5), {std::string("a\0b", 3)}},
        {chunk + "\r\nb", {chunk, "b"}},
        {std::string(File::LineLimit, 'x') + "\r\n", {std::string(File::LineLimit, 'x')}},
    };
    for (const auto& [content, lines] : cases) {
        Folder folder;
        folder.disk.put("Mail/x", content);
        File file = folder.files.Open("Mail\\x", FileMode::Input);
        Paths read;
        while (!file.AtEnd()) read.push_back(file.ReadLine());
        EXPECT_EQ(read, lines);
        EXPECT_EQ(faultOf([&] { file.ReadLine(); }), 62);
        EXPECT_EQ(file.ReadAll(), "");
    }
}

TEST(OpenFiles, EndALoopOverAnEndlessLine) {
    Folder folder;
    folder.disk.put("Mail/x", std::string(3 * File::LineLimit, 'x'));
    File file = folder.files.Open("Mail\\x", FileMode::Input);
    int faults = 0;
    while (!file.AtEnd() && faults < 10) faults += faultOf([&] { file.ReadLine(); }) != 0 ? 1 : 0;
    EXPECT_LT(faults, 4);
}

TEST(OpenFiles, FaultAsTheClassicOnesDo) {
    Folder folder;
    Files& files = folder.files;
    folder.disk.picked["/home/a/b.txt"] = "picked";
    EXPECT_EQ(faultOf([&] { files.Open("Mail\\none", FileMode::Input); }), 53);
    EXPECT_EQ(faultOf([&] { files.Kill("Mail\\none"); }), 53);
    EXPECT_EQ(faultOf([&] { files.FileLen("Mail\\none"); }), 53);
    EXPECT_EQ(faultOf([&] { files.Open("Mail", FileMode::Output); }), 75);
    EXPECT_EQ(faultOf([&] { files.Kill("Mail"); }), 75);
    EXPECT_EQ(faultOf([&] { files.Rename("Mail\\i1A.ml", "System\\Friends.lst"); }), 58);
    EXPECT_EQ(faultOf([&] { files.FileCopy("Mail\\i1A.ml", "Mail\\I1A.ml"); }), 70);
    File in = files.Open("Mail\\i1A.ml", FileMode::Input);
    File again = files.Open("mail\\i1a.ml", FileMode::Input);
    EXPECT_EQ(faultOf([&] { files.Open("Mail\\i1A.ml", FileMode::Output); }), 55);
    EXPECT_EQ(faultOf([&] { files.Kill("Mail\\i1A.ml"); }), 55);
    EXPECT_EQ(faultOf([&] { files.Rewrite("Mail\\i1A.ml", ""); }), 55);
    EXPECT_EQ(faultOf([&] { in.WriteLine("x"); }), 54);
    EXPECT_EQ(faultOf([&] { in.Put(1, "x"); }), 54);
    File out = files.Open("Mail\\new", FileMode::Output);
    EXPECT_EQ(faultOf([&] { files.Open("Mail\\new", FileMode::Input); }), 55);
    EXPECT_EQ(faultOf([&] { out.ReadLine(); }), 54);
    File picked = files.OpenPicked("/home/a/b.txt");
    EXPECT_EQ(picked.Get(3, 10), "cked");
    EXPECT_EQ(faultOf([&] { picked.Get(0, 1); }), 63);
    EXPECT_EQ(faultOf([&] { picked.Put(1, "x"); }), 70);
    files.CloseAll();
    EXPECT_EQ(folder.disk.openHandles(), 0);
    EXPECT_EQ(faultOf([&] { out.WriteLine("x"); }), 52);
    EXPECT_EQ(faultOf([&] { in.AtEnd(); }), 52);
    EXPECT_EQ(faultOf([&] { File().ReadLine(); }), 52);
    files.Kill("Mail\\new");
}

TEST(OpenFiles, AreAsTheyWereAfterAFaultSoThatItCanBeDoneAgain) {
    Folder folder;
    File out = folder.files.Open("Mail\\o1.qrm", FileMode::Output);
    out.WriteLine("one");
    folder.disk.failAt(0, ENOSPC);
    EXPECT_EQ(faultOf([&] { out.WriteLine("second"); }), 61);
    EXPECT_EQ(folder.disk.content("Mail/o1.qrm"), "one\r\n");
    out.WriteLine("second");
    EXPECT_EQ(folder.disk.content("Mail/o1.qrm"), "one\r\nsecond\r\n");
    folder.disk.failAt(0, EIO);
    EXPECT_EQ(faultOf([&] { out.Flush(); }), 57);
    EXPECT_EQ(faultOf([&] { out.Flush(); }), 57);  // the system would say yes now, without having written
    out.Close();
    File in = folder.files.Open("Mail\\o1.qrm", FileMode::Input);
    folder.disk.failAt(0, EIO);
    EXPECT_EQ(faultOf([&] { in.ReadLine(); }), 57);
    EXPECT_EQ(in.ReadLine(), "one");
}

// Everything that must leave the old or the new state, whatever happens in the middle of it.
struct Change {
    const char* name;
    std::function<void(Files&)> run;
    std::string path;
    std::string before;
    std::string after;
};

const Change changes[] = {
    {"Rewrite", [](Files& f) { f.Rewrite("System\\Friends.lst", "Maria\r\n"); }, "System\\Friends.lst",
     "Anna\r\n", "Maria\r\n"},
    {"Replace", [](Files& f) { f.Replace("Mail\\i1A.ml", "System\\Friends.lst"); }, "System\\Friends.lst",
     "Anna\r\n", "one\r\ntwo\r\n"},
    {"FileCopy", [](Files& f) { f.FileCopy("Mail\\i1A.ml", "System\\Friends.lst"); }, "System\\Friends.lst",
     "Anna\r\n", "one\r\ntwo\r\n"},
    {"AppendRecord", [](Files& f) { f.AppendRecord("System\\Friends.lst", "Maria"); }, "System\\Friends.lst",
     "Anna\r\n", "Anna\r\nMaria\r\n"},
    {"First AppendRecord", [](Files& f) { f.AppendRecord("Mail\\Announcements.lst", "1 2 3"); },
     "Mail\\Announcements.lst", "", "1 2 3\r\n"},
    {"Flush of a new file",
     [](Files& f) {
         File file = f.Open("Mail\\i2.ml", FileMode::Output);
         file.WriteLine("line");
         file.Flush();
         file.Close();
     },
     "Mail\\i2.ml", "", "line\r\n"},
};

TEST(FileChanges, LeaveTheOldOrTheNewStateWhereverTheDiskDies) {
    for (const auto survived : {MemoryDisk::Survived::Flushed, MemoryDisk::Survived::Everything}) {
        for (const auto& change : changes) {
            for (int write = 0;; ++write) {
                SCOPED_TRACE(std::string(change.name) + ", dies at write " + std::to_string(write));
                Folder folder;
                folder.disk.dieAtWrite(write);
                const bool acknowledged = faultOf([&] { change.run(folder.files); }) == 0;
                const bool died = folder.disk.died();
                folder.disk.restart(survived);
                Files files(folder.disk);
                files.DropTornRecord(change.path);
                const std::string now = contentOf(folder.disk, change.path);
                EXPECT_TRUE(now == change.after || (now == change.before && !acknowledged)) << now;
                if (!died) break;
            }
        }
    }
}

TEST(FileChanges, LeaveTheOldOrTheNewStateWhateverCallFails) {
    for (const int error : {ENOSPC, EIO, EROFS, EMFILE}) {
        for (const auto& change : changes) {
            for (int call = 0;; ++call) {
                SCOPED_TRACE(std::string(change.name) + ", fails at call " + std::to_string(call));
                Folder folder;
                folder.disk.failAt(call, error);
                const int fault = faultOf([&] { change.run(folder.files); });
                const std::string now = contentOf(folder.disk, change.path);
                EXPECT_TRUE(now == change.after || (now == change.before && fault != 0)) << now;
                EXPECT_EQ(folder.disk.openHandles(), 0);
                EXPECT_FALSE(folder.disk.content(native(change.path) + ".new")) << "left behind";
                if (!folder.disk.failed()) {
                    EXPECT_EQ(fault, 0);
                    break;
                }
            }
        }
    }
}

TEST(TornRecords, AreDroppedAndWholeOnesStay) {
    struct Case {
        std::string content;
        std::string kept;
    };
    const std::string noRecord(File::LineLimit + 5, 'x');
    const Case cases[] = {
        {"", ""},     {"one\r\n", "one\r\n"},      {"one\n", "one\n"},   {"one\r\ntw", "one\r\n"},
        {"torn", ""}, {"one\r\ntwo\r", "one\r\n"}, {noRecord, noRecord},
    };
    for (const auto& [content, kept] : cases) {
        Folder folder;
        folder.disk.put("Mail/a.lst", content);
        EXPECT_EQ(folder.files.DropTornRecord("Mail\\a.lst"), content != kept);
        EXPECT_EQ(folder.disk.content("Mail/a.lst"), kept);
        folder.disk.put("Mail/a.lst", content);
        folder.files.AppendRecord("Mail\\a.lst", "next");
        EXPECT_EQ(folder.disk.content("Mail/a.lst"), kept + "next\r\n");
    }
    Folder folder;
    EXPECT_FALSE(folder.files.DropTornRecord("Mail\\none"));
}

}  // namespace
}  // namespace talvora
