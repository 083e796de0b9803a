#include <random>

#include "platform/Text.h"
#include "session/PanelFixture.h"

namespace talvora::test {
namespace {

TEST_F(ChannelPanelTest, ShowsJoinedChannelsFirstAndFillsInTheServersList) {
    settings.Save(Section::ChanKeys, "#b", "key");
    says(":me!u@h JOIN :#b");
    says(":me!u@h JOIN :#a");
    for (const char* line :
         {":s 322 me #B 7 :About b", ":s 322 me #System 9 :", ":s 322 me #c 1 :c: topic", ":s 323 me :End"}) {
        says(line);
    }
    EXPECT_THAT(rows(), ElementsAre("+#b 7 7 About b", "+#a 6  ", "-#c 6 1 c: topic"));
    says(":s 442 me #b :not on it");
    EXPECT_THAT(rows(), ElementsAre("+#a 6  ", "-#B 7 7 About b", "-#c 6 1 c: topic"));
    EXPECT_THAT(windows.told, ElementsAre("remove #b"));
}

TEST_F(ChannelPanelTest, TickingRowsWithinFiveSecondsGivesOneNewList) {
    for (const char* line : {":me!u@h JOIN :#a", ":me!u@h JOIN :#b", ":s 322 me #c 1 :", ":s 323 me :End"})
        says(line);
    server.heard();
    list.userTicks(list.ListItems(2), false);
    time.run(3s);
    list.userTicks(list.ListItems(3), true);
    time.run(4900ms);
    EXPECT_THAT(server.heard(), IsEmpty());
    time.run(200ms);
    EXPECT_THAT(server.heard(), ElementsAre("NAMES #a", "PART #b", "JOIN #a", "JOIN #c"));
    EXPECT_EQ(settings.Get(Section::Settings, "ChanList", ""), "#a|#c|");
    says(":s 927 me #a :Already in channel");
    EXPECT_EQ(panel.Joined(), "#a|");
}

TEST_F(ChannelPanelTest, KeyRefusalsOfOneLoginBecomeOneRoundOfQuestions) {
    says(":s 475 me #red :Cannot join channel (+k)");
    time.run(4s);
    says(":s 475 me #blue :Cannot join channel (+k)");
    EXPECT_THAT(windows.told, IsEmpty());
    time.run(2s);
    EXPECT_THAT(windows.told, ElementsAre("keys #red|#blue|"));
    time.run(10s);
    EXPECT_EQ(windows.told.size(), 1U);
}

TEST_F(ChannelPanelTest, OtherRefusalsAreTold) {
    says(":s 474 me #x :banned");
    says(":s 473 me #y :invite");
    EXPECT_THAT(
        windows.told,
        ElementsAre("Join error: You cannot join channel #x because you are banned from it!",
                    "Join error: You cannot join channel #y because it accepts only users with invitation!"));
}

TEST_F(ChannelPanelTest, TheMenusAreCrossedAndADoubleClickJoins) {
    says(":me!u@h JOIN :#a");
    ListItem& row = list.ListItems(1);
    list.userSelects(row);
    panel.popChanJoin.Click.raise();
    EXPECT_FALSE(row.Checked());
    panel.popChanPart.Click.raise();
    EXPECT_TRUE(row.Checked());
    EXPECT_TRUE(panel.tmrRefreshUsers.Enabled);
    server.heard();
    list.DblClick.raise();
    EXPECT_THAT(server.heard(), ElementsAre("JOIN #a", "NAMS #a"));
    EXPECT_THAT(windows.told, ElementsAre("start #a"));
    // Neither of them, nor a tick meanwhile, parts what was joined by a double click.
    time.run(6s);
    EXPECT_THAT(server.heard(), ElementsAre("NAMES #a", "JOIN #a"));
    for (const char* line : {":s 927 me #a :Already", ":s 322 me #c 1 :", ":s 323 me :End"}) says(line);
    list.userSelects(list.ListItems(1));
    panel.popChanJoin.Click.raise();
    list.userTicks(list.ListItems(2), true);
    time.run(6s);
    EXPECT_THAT(server.heard(), ElementsAre("NAMES #a", "JOIN #a", "JOIN #c"));
    // What was left otherwise is not joined again; what is unticked by hand goes, though the server is late.
    for (const char* line : {":s 927 me #a :", ":me!u@h JOIN :#c", ":me!u@h PART #c"}) says(line);
    list.userTicks(list.ListItems(1), false);
    says(":s 927 me #a :Already");
    time.run(6s);
    EXPECT_THAT(server.heard(), ElementsAre("PART #a"));
}

TEST_F(ChannelPanelTest, AKeyIsAskedForAndClearedOnlyAfterYes) {
    says(":me!u@h JOIN :#a");
    const auto chooseKey = [&](std::optional<std::string> typed, std::optional<Answer> clear) {
        list.userSelects(list.ListItems(1));
        around.questions.willType(std::move(typed));
        if (clear) around.questions.willAnswer(*clear);
        panel.popChanKey.Click.raise();
        return settings.Get(Section::ChanKeys, "#A", "");
    };
    EXPECT_EQ(chooseKey("sesame", {}), "sesame");
    EXPECT_EQ(chooseKey(std::nullopt, Answer::No), "sesame");
    EXPECT_EQ(chooseKey("", Answer::Yes), "");
    EXPECT_THAT(around.questions.asked[0], testing::HasSubstr("to use as default for channel #a"));
}

TEST_F(ChannelPanelTest, AServerCannotMakeTheListGrowWithoutEnd) {
    panel.MostListed = 1'000;
    int redrawn = 0;
    const auto counting = list.ListItems.Cleared.connect([&] { ++redrawn; });
    for (int i = 0; i < 140; ++i) server.says(":me!u@h JOIN :#" + std::string(500, 'x') + std::to_string(i));
    time.run(2s);
    EXPECT_GT(panel.Joined().size(), 65000U);
    EXPECT_LE(panel.Joined().size(), 65536U);
    EXPECT_EQ(rows().size(), Split(panel.Joined(), "|").size() - 1);
    EXPECT_EQ(redrawn, 0) << "a channel costs its own row";
    server.says(":s 322 me #late 1 :" + std::string(200'000, 'x'));
    for (int i = 0; i < 1'100; ++i) server.says(":s 322 me #l" + std::to_string(i) + " 1 :");
    time.run(5s);
    says(":s 323 me :End");
    const auto joined = static_cast<int>(Split(panel.Joined(), "|").size() - 1);
    EXPECT_EQ(list.ListItems.Count(), joined + 1'000);
    server.closes();
    time.run(50ms);
    EXPECT_EQ(list.ListItems.Count(), joined) << "what was listed goes with the server";
}

// Against the list that is drawn anew.
TEST_F(ChannelPanelTest, AChannelThatIsJoinedOrLeftTakesItsPlaceInTheList) {
    for (int i = 0; i < 40; ++i) server.says(":s 322 me #c" + std::to_string(i * 7 % 40) + " 1 :t");
    says(":s 323 me :End");
    std::mt19937 dice(3);
    for (int step = 0; step < 400; ++step) {
        const std::string channel = (dice() % 2 == 0 ? "#c" : "#C") + std::to_string(dice() % 50);
        server.says(":me!u@h " + std::string(dice() % 3 != 0 ? "JOIN :" : "PART ") + channel);
        time.run(5ms);
        const auto shown = rows();
        if (step % 10 != 0) continue;
        for (int i = 0; i < 40; ++i) server.says(":s 322 me #c" + std::to_string(i * 7 % 40) + " 1 :t");
        says(":s 323 me :End");
        ASSERT_EQ(shown, rows()) << step << " " << channel;
    }
}

TEST_F(ChannelPanelTest, ChannelsAndUsersFollowTheServersSpelling) {
    for (const char* line :
         {":me!u@h JOIN :#Ab", ":me!u@h JOIN :#AB", ":me!u@h JOIN :#c", ":a!u@h JOIN :#AB"})
        says(line);
    EXPECT_EQ(panel.Joined(), "#AB|#c|");
    EXPECT_THAT(rows(), ElementsAre("+#AB 6  ", "+#c 6  "));
    says(":a!u@h PART #ab");
    EXPECT_EQ(form.UserList1.ListView1.ListItems.Count(), 0);
    says(":me!u@h PART #ab");
    says(":s 474 me #C :banned");
    EXPECT_EQ(panel.Joined(), "");
    says(":a!u@h JOIN :#x");
    server.closes();
    time.run(50ms);
    EXPECT_EQ(form.UserList1.ListView1.ListItems.Count(), 0) << "nobody is known to be anywhere";
}

TEST_F(ChannelPanelTest, TheEndStartsNothingAgainUnderAHandlerThatItInterrupts) {
    windows.removing = [&] { form.Unload(); };
    panel.tmrRefreshUsers.Enabled = true;
    says(":me!u@h PART #a");
    EXPECT_EQ(windows.told.size(), 1U);
    int ticks = 0;
    Subscriptions on;
    for (Timer* timer : {&panel.tmrRefreshUsers, &form.Session.tmrWHOUpdate}) {
        timer->Enabled = true;
        on += timer->Tick.connect([&] { ++ticks; });
    }
    time.run(5min);
    EXPECT_EQ(ticks, 0);
}

TEST_F(ChannelPanelTest, AFailedSaveIsReportedAndTheSessionGoesOn) {
    around.settings.FailNextSave();
    around.questions.willAnswer(Answer::Abort);
    panel.CreateChannelList("#a|");
    EXPECT_THAT(around.questions.asked, Contains(testing::HasSubstr("Function:CreateChannelList")));
    EXPECT_THAT(server.heard(), ElementsAre("JOIN #a"));
}

}  // namespace
}  // namespace talvora::test
