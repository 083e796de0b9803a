// Announcements over the virtual platform: what the robot says, the list on a disk that may die, the windows.

#include <cerrno>

#include "Vocabulary.h"
#include "announce/frmAnnounce.h"
#include "announce/frmAnnouncements.h"
#include "platform/Text.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

constexpr const char* file = "Mail/Announcements.lst";

struct MovedClock final : Clock {
    DateTime Now() const override { return now; }
    double SecondsSinceMidnight() const override { return 0; }
    DateTime now{2026, 3, 14, 9, 30, 0};
};

struct Host final : MessageDatabase {
    void Broadcast(const HostMessage& message) override { notices.push_back(message.Data.at(1).text()); }
    Texts notices;
};

class AnnounceTest : public testing::Test, public VirtualMachine {
  protected:
    // All that lives in one run of the program.
    struct Run {
        explicit Run(AnnounceTest& t)
            : platform{t.time,         t.network,         t.clock,        t.around.questions,
                       t.around.files, t.around.settings, t.around.screen},
              manager(platform, globError, settings, gate,
                      [&t](const std::string& text) { t.said.push_back(text); }),
              list(platform, globError, manager, panel),
              settings(t.around.settings) {
            gate.Attach(t.host, 1);
            manager.Start();
            list.LoadList();
        }
        Platform platform;
        GlobError globError{platform};
        modAnnounceManager manager;
        picAnn panel;
        frmAnnouncements list;
        ComponentSettings settings;
        HostGate gate{settings};
    };

    AnnounceTest() { restart(); }
    void restart() {
        run.reset();
        run = std::make_unique<Run>(*this);
    }
    void robotSays(const std::string& text) { run->manager.HandleAnnData(text); }
    Texts rows() const {
        Texts all;
        for (int i = 1; i <= run->list.ListView1.ListItems.Count(); ++i) {
            const ListItem& row = run->list.ListView1.ListItems(i);
            all.push_back(row.Tag() + " " + CStr(row.SmallIcon()) + " " + row.Text() + " " + row.SubItems(2) +
                          " " + row.SubItems(4));
        }
        return all;
    }
    std::string latest() const {
        return run->panel.Label17.Caption.get() + " " + run->panel.Label16.Caption.get();
    }
    std::string savedNumber() { return around.settings.GetSetting("Talvora", "Information", "AnnID", "-"); }
    std::string onDisk() { return around.disk.content(file).value_or("none"); }
    void put(const char* key, const char* value) {
        around.settings.SaveSetting("Talvora", "Settings", key, value);
    }

    MovedClock clock;
    Host host;
    Texts said;
    std::unique_ptr<Run> run;
};

TEST_F(AnnounceTest, WhatTheRobotTellsIsKeptShownAndCounted) {
    EXPECT_THAT(rows(), ElementsAre());
    EXPECT_EQ(latest(), "- (No announcements)");
    robotSays("ANNID 40");
    robotSays("ANN 41 Anna 48 14/03/2026_09:10:00 0 Party[#n]at nine");
    put("NoQueries", "T");
    robotSays("ANN 42 Bob 0 14/03/2026_08:59:59 6 Who?");
    robotSays("ann 43 x 1 1 1 x");
    robotSays("NO");
    robotSays("ANN 44 Eva 2 14/03/2026_09:00:00 3 Work");
    put("ReceiveAnn", "F");
    robotSays("ANN 45 Dan 1 13/03/2026_09:00:00 5 Gone");
    run->manager.CheckAnn();
    EXPECT_THAT(said, ElementsAre("ANN HAS 45"));
    EXPECT_EQ(savedNumber(), "45");
    EXPECT_THAT(host.notices, ElementsAre("Party[#n]at nine", "Work"));
    const Texts all = {"1 1 Anna 48 hours 2 days", "2 3 Bob (Expired) expired", "3 4 Eva 2 hours 2 hours",
                       "4 3 Dan (Expired) expired"};
    EXPECT_EQ(rows(), all);
    EXPECT_EQ(latest(), "Eva at 14/03/2026 09:00:00 posted: Work");
    run->list.LoadList();  // what came one by one is what reading them anew gives
    EXPECT_EQ(rows(), all);
    clock.now.Hour = 12;  // a new hour of the clock reaches all rows with the next one that comes
    robotSays("ANN 46 Zoe 1 01/01/1970_00:00:00 1 Old");
    EXPECT_EQ(rows()[0] + rows()[2], "1 1 Anna 45 hours 45 hours3 3 Eva (Expired) expired");
    EXPECT_EQ(latest(), "Anna at 14/03/2026 09:10:00 posted: Party\r\nat nine");
}

TEST_F(AnnounceTest, OddClocksAndDatesAreRowsAsAnyOther) {
    clock.now = {2026, 3, 29, 4, 0, 0};  // three hours after 1:59 by the clock, two by the sun
    for (const char* date : {"29/03/2026_01:59:59", "31/12/9999_23:59:59", "01/01/1970_00:00:00", "soon"})
        around.disk.put(file, onDisk() == "none" ? "" : onDisk() + "1 P 3 " + date + " 9 T\r\n");
    around.questions.answerFaults(Answer::Abort);
    run->list.LoadList();
    EXPECT_THAT(rows(), ElementsAre("1 0 P (Now) now", HasSubstr("2 0 P 69896542 hours 416051 weeks"),
                                    "3 3 P (Expired) expired", "4 0 P (Unknown) unknown"));
    EXPECT_EQ(latest(), "P at 31/12/9999 23:59:59 posted: T");
    clock.now = {1970, 1, 1,
                 1,    0, 0};  // set back: nothing has expired, and nothing is younger than the future
    run->list.LoadList();
    EXPECT_THAT(rows()[2], HasSubstr("2 hours"));
    EXPECT_EQ(around.questions.asked.size(), 1u);
}

TEST_F(AnnounceTest, ALineThatIsNoneIsKeptReportedOnceAndCanBeRemoved) {
    around.questions.answerFaults(Answer::Abort);
    robotSays("ANN 7 rubbish");
    robotSays("ANN 8 rubbish");
    robotSays("ANNID");
    EXPECT_EQ(around.questions.asked.size(), 2u);  // the lines once, and the number that is missing
    robotSays("ANN 9 Anna 9 14/03/2026_09:00:00 0 Good");
    EXPECT_THAT(rows(), ElementsAre("1 0 (Unreadable) (Unknown) unknown", testing::_, testing::_));
    EXPECT_THAT(run->list.ListView1.ListItems(1).SubItems(3), HasSubstr("7 rubbish"));
    EXPECT_THAT(latest(), HasSubstr("Good"));
    run->list.Command3.Click.raise();
    EXPECT_EQ(rows().size(), 3u);
    ListView& view = run->list.ListView1;
    view.userClicks(view.ListItems(2));
    const std::string question =
        "Delete\nDo you really want to remove this announcement? It is not expired yet!";
    // While the question stands the list becomes another one: the line goes, whatever row it is in.
    around.questions.willAnswer(Answer::Yes, [&] { run->manager.RemoveAnn(9); });
    run->list.Command2.Click.raise();
    EXPECT_EQ(around.questions.asked.back(), question);
    EXPECT_EQ(onDisk(), "7 rubbish\r\n9 Anna 9 14/03/2026_09:00:00 0 Good\r\n");
    restart();
    robotSays("ANN ");
    EXPECT_EQ(rows().size(), 3u);
    EXPECT_EQ(savedNumber(), "9");
    EXPECT_EQ(around.questions.asked.size(), 4u);
}

// Sorting and filtering leave a row's number alone.
TEST_F(AnnounceTest, ARowIsRemovedByItsNumberAndNotByItsPlace) {
    around.disk.put(file,
                    "1 B 0 13/03/2026_09:00:00 0 one\r\n2 A 0 13/03/2026_09:00:00 0 two\r\n"
                    "3 C 0 14/03/2026_09:00:00 0 three\r\n");  // holds for the rest of this hour
    run->list.LoadList();
    run->list.ListView1.ColumnClick.raise(1);
    EXPECT_TRUE(run->list.ListView1.Sorted && run->list.ListView1.SortKey == 0);
    EXPECT_EQ(run->list.ListView1.SortOrder.get(), SortOrder::Descending);
    run->list.Filter.Text = "TWO";
    EXPECT_THAT(rows(), ElementsAre("2 3 A (Expired) expired"));
    run->list.ListView1.userClicks(run->list.ListView1.ListItems(1));
    EXPECT_EQ(run->list.Text1.Text.get(), "two");
    run->list.Command2.Click.raise();
    EXPECT_EQ(run->list.Nothing.Caption.get(), "No announcement holds this text.");
    run->list.Filter.Text = "";
    EXPECT_EQ(rows().size(), 2u);
    run->list.Command3.Click.raise();
    EXPECT_THAT(rows(), ElementsAre(HasSubstr("C")));
}

// At every call of the disk: the old list or the new one, and a number never ahead of what is kept.
TEST_F(AnnounceTest, ACrashLeavesTheOldListOrTheNewOne) {
    const std::string old = "1 A 0 13/03/2026_09:00:00 0 old\r\n2 B 9 14/03/2026_09:00:00 0 two\r\n";
    const std::string line = "3 C 9 14/03/2026_09:00:00 0 new";
    around.questions.answerFaults(Answer::Abort);
    const std::vector<std::pair<std::function<void()>, std::string>> changes = {
        {[&] { robotSays("ANN " + line); }, old + line + "\r\n"},
        {[&] { run->manager.RemoveAnn(2); }, "1 A 0 13/03/2026_09:00:00 0 old\r\n"},
        {[&] { run->manager.RemoveExpired(); }, "2 B 9 14/03/2026_09:00:00 0 two\r\n"}};
    for (const auto& [change, after] : changes) {
        for (const auto survived : {MemoryDisk::Survived::Flushed, MemoryDisk::Survived::Everything}) {
            for (int call = 0; !HasFailure(); ++call) {
                around.disk.put(file, old);
                around.settings.SaveSetting("Talvora", "Information", "AnnID", "2");
                restart();
                around.disk.dieAtWrite(call);
                change();
                const bool died = around.disk.died();
                around.disk.restart(survived);
                run.reset();
                around.files.CloseAll();
                restart();
                EXPECT_TRUE(onDisk() == old || onDisk() == after || onDisk().starts_with(old)) << onDisk();
                EXPECT_TRUE(savedNumber() == "2" || onDisk() == after) << call << " " << onDisk();
                // The robot tells again what was not confirmed, and it stands once.
                if (savedNumber() == "2" && after.starts_with(old)) robotSays("ANN " + line);
                if (after.starts_with(old)) EXPECT_EQ(onDisk(), after) << call;
                if (!died) break;
            }
        }
    }
}

TEST_F(AnnounceTest, WhatAFullDiskDoesNotTakeIsAskedForAgain) {
    around.questions.answerFaults(Answer::Ignore);
    around.disk.failAt(3, ENOSPC);
    robotSays("ANN 1 A 9 14/03/2026_09:00:00 0 one");
    ASSERT_TRUE(around.disk.failed());
    robotSays("ANN 2 A 9 14/03/2026_09:00:00 0 two");
    EXPECT_EQ(savedNumber(), "0");
    EXPECT_TRUE(host.notices.empty());
    run->manager.CheckAnn();
    EXPECT_THAT(said, ElementsAre("ANN HAS 0"));
    robotSays("ANN 1 A 9 14/03/2026_09:00:00 0 one");
    EXPECT_EQ(savedNumber(), "1");
}

TEST_F(AnnounceTest, APostKeepsToItsCategorysLimitsAndSaysWhatIsLeft) {
    const auto width = [](std::string_view text) { return text.size(); };
    const auto form = std::make_unique<frmAnnounce>(run->platform, run->globError, run->manager,
                                                    PostRoom(width), [] { return "Maria"; });
    // A category, what was typed, and what became of it.
    const std::vector<std::tuple<int, const char*, const char*>> cases = {
        {Category::Simple, "48", "48"},      {Category::Simple, "49", "48"},
        {Category::Query, "200", "48"},      {Category::Owner, "100", "100"},
        {Category::Moderator, "200", "168"}, {Category::Urgent, "200", "200"},
        {Category::Meeting, "100", "48"},    {Category::Information, "soon", "soon"}};
    for (const auto& [category, typed, kept] : cases) {
        form->Text2.Text = "";
        form->Combo1.ListIndex = category;
        form->Text2.Text = typed;
        form->Refused = false;
        if (std::string(typed) != kept) around.questions.willAnswer(Answer::Ok);
        form->CheckMax();
        EXPECT_EQ(form->Text2.Text.get(), kept) << category << " " << typed;
        EXPECT_EQ(form->Refused, std::string(typed) != kept);
    }
    EXPECT_THAT(around.questions.asked.back(), HasSubstr("longer than 2 days"));
    form->Text1.Text = "Two\r\nlines";
    EXPECT_EQ(form->Room.Caption.get(), "306 bytes left");
    form->Text1.Text = std::string(400, 'x');
    EXPECT_THAT(form->Room.Caption.get(), HasSubstr("too long"));
    form->Text1.Text = "Two\r\nlines";
    form->Text2.Text = " 12 ";
    form->Command1.Click.raise();
    EXPECT_THAT(said, ElementsAre("ANN POST 12 7 Two[#n]lines"));
    EXPECT_TRUE(form->IsUnloaded());
}

}  // namespace
}  // namespace talvora::test
