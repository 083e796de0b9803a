#include <cerrno>

#include "Vocabulary.h"
#include "common/HostMessageNumbers.h"
#include "platform/Text.h"
#include "settings/Settings.h"
#include "simulation/FaultOf.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

// Every key of the page, with what it holds when the page has been saved as it came.
constexpr const char* firstSave =
    "Settings/Nickname=Maria Settings/RealName=Default.Unsetted Settings/AP= Settings/Pass= "
    "Settings/MailInterval=1 Settings/QuitMsg= Settings/AutoRetry=T Settings/PopupPM=T Settings/PopupChan=T "
    "Settings/ShowMOTD=1 Settings/PopupFriend=T Settings/EnableBar=T Settings/NoticeBar=T "
    "Settings/ReceiveAnn=T Settings/NoQueries=F Settings/NoInfo=F Settings/PopupMail=T "
    "Settings/DisplayMail=F Settings/PackageSplit=1024 Settings/IPRMethod=0 ChanSettings/CreateOnPM=T";

class SettingsTest : public testing::Test {
  protected:
    std::string get(const std::string& key, const std::string& section = "Settings") {
        return store.GetSetting("Talvora", section, key, "absent");
    }
    void put(const std::string& key, const std::string& value) {
        store.SaveSetting("Talvora", "Settings", key, value);
    }
    std::string file(const std::string& name) { return maria.around.disk.content("System/" + name).value(); }
    std::unique_ptr<Settings> page() { return maria.component->MakeSettingsPage(); }
    // What the host's settings window does at OK.
    void confirms(Settings& settings) {
        EXPECT_EQ(settings.Problem(), "");
        settings.SaveAll();
        maria.host.send(HostMsg::ApplySettings);
        settings.Applied();
        world.time.run(100ms);
    }

    World world;
    Client& maria = world.client("Maria");
    MemorySettings& store = maria.around.settings;
    bool& needsConnection = maria.component->TheAccount().gSettingsChanged;
};

TEST_F(SettingsTest, APageThatIsOnlySavedWritesEveryKeyAndNoFile) {
    const std::string states = file("perflix.lst");
    const int saves = store.SaveCount();
    const auto settings = page();
    EXPECT_EQ(settings->PopupPM.Caption.get(), "Popup PMs when window is closed");
    settings->SaveAll();
    const auto expected = Split(firstSave, " ");
    for (const std::string& row : expected) {
        const auto slash = row.find('/');
        const auto equals = row.find('=');
        EXPECT_EQ(get(row.substr(slash + 1, equals - slash - 1), row.substr(0, slash)),
                  row.substr(equals + 1))
            << row;
    }
    EXPECT_EQ(store.SaveCount() - saves, static_cast<int>(expected.size()));
    EXPECT_EQ(file("perflix.lst"), states);
}

TEST_F(SettingsTest, EachControlKeepsItsOwnKey) {
    auto settings = page();
    int edits = 0;
    const Subscription count = settings->Edited.connect([&] { ++edits; });
    settings->QuitMsg.Text = "So\r\nlong";
    settings->NoInfo.Value = true;
    settings->ShowMOTD.Value = false;
    settings->CreateOnPM.Value = false;
    settings->PackageSplit.ListIndex = 4;
    settings->IPRMethod.ListIndex = 2;
    EXPECT_EQ(edits, 6);
    settings->SaveAll();
    EXPECT_EQ(get("QuitMsg"), "Solong") << "it becomes a part of a line";
    EXPECT_EQ(get("NoInfo") + get("ShowMOTD") + get("CreateOnPM", "ChanSettings"), "T0F");
    EXPECT_EQ(get("PackageSplit") + "/" + get("IPRMethod"), "8192/2");
    // Values of other hands: a flag is shown as the one who acts on it reads it.
    const auto on = {&Settings::PopupPM,   &Settings::PopupChan, &Settings::EnableBar,
                     &Settings::NoticeBar, &Settings::PopupMail, &Settings::ReceiveAnn};
    const auto off = {&Settings::NoQueries,   &Settings::NoInfo,      &Settings::ShowMOTD,
                      &Settings::PopupFriend, &Settings::DisplayMail, &Settings::AutoRetry};
    for (const char* key : {"PopupPM", "PopupChan", "EnableBar", "NoticeBar", "PopupMail", "ReceiveAnn",
                            "NoQueries", "NoInfo", "ShowMOTD", "PopupFriend", "DisplayMail", "AutoRetry"})
        put(key, "?");
    store.SaveSetting("Talvora", "ChanSettings", "CreateOnPM", "?");
    put("PackageSplit", "1500");
    settings = page();
    for (const auto box : on) EXPECT_TRUE(((*settings).*box).Value) << ((*settings).*box).Caption.get();
    for (const auto box : off) EXPECT_FALSE(((*settings).*box).Value) << ((*settings).*box).Caption.get();
    EXPECT_TRUE(settings->CreateOnPM.Value);
    EXPECT_EQ(settings->PackageSplit.Text(), "1500");
    for (const std::string& size : {std::string(400, '9'), std::string("1e999"), std::string(400, '0')}) {
        put("PackageSplit", size);
        EXPECT_EQ(page()->PackageSplit.Text(), "1024") << size;
    }
}

TEST_F(SettingsTest, AWriteThatFailsIsReportedAndTheOthersAreDone) {
    const auto settings = page();
    settings->QuitMsg.Text = "So long";
    store.FailNextSave();
    maria.around.questions.willAnswer(Answer::Ignore);
    settings->SaveAll();
    EXPECT_THAT(maria.around.questions.asked.at(0), HasSubstr("Function:SaveAll"));
    EXPECT_EQ(get("QuitMsg"), "So long");
}

TEST_F(SettingsTest, WhatWouldSurelyFailIsToldInPlainWords) {
    const auto settings = page();
    const std::string manyDigits(400, '9');
    const struct {
        TextBox& box;
        std::vector<const char*> good;
        std::vector<const char*> bad;
    } cases[] = {
        {settings->Nickname, {"Anna", "_a-1|x"}, {"", " ", "An na", "Anna[DND]", "1st", "-a", "#a", "a@b"}},
        {settings->RealName, {"Home", "Work.My town.Pylea"}, {"", ".", "Work..Pylea", "Work. .Pylea", "a."}},
        {settings->Pass, {"", "sesame"}, {"open sesame"}},
        {settings->MailInterval,
         {"1", "32767"},
         {"", "0", "-1", "2.5", "soon", "32768", "1e999", manyDigits.c_str()}},
    };
    for (const auto& row : cases) {
        for (const char* text : row.bad) {
            row.box.Text = text;
            EXPECT_NE(settings->Problem(), "") << text;
        }
        for (const char* text : row.good) {
            row.box.Text = text;
            EXPECT_EQ(settings->Problem(), "") << text;
        }
    }
}

TEST_F(SettingsTest, ANewConnectionIsMadeExactlyWhenOneIsNeeded) {
    maria.host.send(HostMsg::Start);
    world.time.settle();
    maria.server.says(":srv 433 * Maria :Nickname is already in use");
    world.time.run(10ms);
    auto settings = page();
    settings->PopupPM.Value = false;
    confirms(*settings);
    EXPECT_EQ(maria.server.connections, 1) << "the start needs none any more";
    settings->Nickname.Text = "Anna";
    confirms(*settings);
    EXPECT_EQ(maria.server.connections, 2) << "the log-on stood still";
    maria.server.says(":srv 001 Anna :Welcome");
    world.time.run(4s);
    maria.server.heard();
    settings->Nickname.Text = "Eleni";
    settings->AutoRetry.Value = false;
    EXPECT_FALSE(needsConnection);
    confirms(*settings);
    EXPECT_EQ(maria.server.connections, 2);
    EXPECT_THAT(maria.server.heard(), ElementsAre("NICK Eleni")) << "she stays in her channels";
    settings->Pass.Text = "sesame";
    EXPECT_TRUE(needsConnection);
    settings->Pass.Text = "";
    EXPECT_FALSE(needsConnection);
    settings->RealName.Text = "Home";
    settings.reset();
    EXPECT_FALSE(needsConnection) << "closed without saving";
    settings = page();
    settings->RealName.Text = "Home.Kavala";
    confirms(*settings);
    EXPECT_FALSE(needsConnection);
    EXPECT_EQ(maria.server.connections, 3);
    world.time.run(1500ms);
    EXPECT_THAT(maria.server.transcript, HasSubstr("QUIT :Reconfiguring settings\r\n"));
    EXPECT_THAT(maria.server.heard(), testing::Contains(HasSubstr(":UL:Home.Kavala")));
}

TEST_F(SettingsTest, AnotherNetworkIsEnteredWithItsOwnWireAndTheWindowsStay) {
    maria.host.send(HostMsg::Start);
    world.time.settle();
    maria.server.says(":srv 001 Maria :Welcome");
    world.time.run(4s);
    maria.component->Chats().Privates.StartPM("Nikos");
    const frmPM* window = maria.component->Chats().Privates.Window("Nikos");
    const auto settings = page();
    ScriptedServer& other = world.network.server("other.test", 6697);
    maria.profile.ServerHost = "other.test";
    maria.profile.ServerPort = 6697;
    maria.profile.SysChannel = "#other";
    maria.profile.Wire.Encoding = Encoding::UTF8;
    confirms(*settings);
    EXPECT_FALSE(maria.server.connected());
    other.says(":srv 001 Maria :Welcome");
    world.time.run(4s);
    maria.host.send(HostMsg::SayPrivate, HostArray{"Nikos", "\xE1"});
    EXPECT_THAT(other.transcript, AllOf(HasSubstr("JOIN #other "), HasSubstr("PRIVMSG Nikos :\xCE\xB1")));
    EXPECT_EQ(maria.component->Chats().Privates.Window("Nikos"), window);
    EXPECT_EQ(other.connections, 1);
    confirms(*settings);
    EXPECT_EQ(other.connections, 1) << "nothing has changed since";
}

TEST_F(SettingsTest, TheTableOfStatesIsEditedAroundWhatItDoesNotUnderstand) {
    maria.around.disk.put("System/perflix.lst",
                          "; mine\r\nDND|Do not disturb|5\nGONE|Gone\r\n\r\nAWAY| Away |4 \r\nX|y|9");
    const auto settings = page();
    StateRows& states = settings->States;
    ASSERT_EQ(states.Count(), 2U);
    states.Swap(0, 1);
    EXPECT_TRUE(states.Add());
    states.Change(2, {"TE|A\r\n", "Tea | time", 99});
    EXPECT_EQ(settings->Problem(), "");
    settings->SaveAll();
    const std::string edited =
        "; mine\r\nAWAY| Away |4 \r\nGONE|Gone\r\n\r\nDND|Do not disturb|5\r\nX|y|9\r\n";
    EXPECT_EQ(file("perflix.lst"), edited + "TEA|Tea  time|8\r\n");
    states.Remove(2);
    states.Remove(1);
    settings->SaveAll();
    EXPECT_EQ(file("perflix.lst"), "; mine\r\nAWAY| Away |4 \r\nGONE|Gone\r\n\r\nX|y|9\r\n");
    states.Change(0, {"ON TOUR", "On tour", 4});
    EXPECT_THAT(settings->Problem(), HasSubstr("ON TOUR"));
    EXPECT_EQ(faultOf([&] { states.Remove(7); }), 9);
    // What stands there already is nobody's fault until he edits it.
    maria.around.disk.put("System/perflix.lst", "B B|Found so|2\r\n");
    const auto found = page();
    EXPECT_EQ(found->Problem(), "");
    found->States.Change(0, {"B B", "Mine", 0});
    EXPECT_EQ(found->States.Row(0).Icon, 1);
    EXPECT_THAT(found->Problem(), HasSubstr("B B"));
}

TEST_F(SettingsTest, FiftyStatesAreTheMost) {
    const auto settings = page();
    StateRows& states = settings->States;
    while (states.Count() < 50) ASSERT_TRUE(states.Add());
    EXPECT_EQ(states.Row(49), (StateRow{"NEW", "(Change)", 2}));
    maria.around.questions.willAnswer(Answer::Ok);
    EXPECT_FALSE(states.Add());
    EXPECT_THAT(maria.around.questions.asked,
                ElementsAre(HasSubstr("You cannot add more than 50 different user states!")));
    EXPECT_EQ(states.Count(), 50U);
}

TEST_F(SettingsTest, ATableThatCouldNotBeReadIsNotWrittenOver) {
    maria.around.questions.answerFaults(Answer::Ignore);
    maria.around.disk.failAt(0, EIO);
    const auto settings = page();
    settings->States.Add();
    settings->SaveAll();
    EXPECT_THAT(file("perflix.lst"), HasSubstr("DND|Do not disturb|5"));
    EXPECT_THAT(file("perflix.lst"), Not(HasSubstr("NEW")));
    EXPECT_EQ(get("QuitMsg"), "");
}

TEST_F(SettingsTest, PluginsComeAndGoByTheirTwoFlagsAlone) {
    const std::string listed =
        "<SYS>.plg_Encrypt T T 1 x  Secret  talk\r\n\r\nshort T\r\nShout f T 0 - Shout\r\n";
    maria.around.disk.put("System/plugin.lst", listed);
    const auto settings = page();
    PluginRows& plugins = settings->Plugins;
    ASSERT_EQ(plugins.Count(), 2U);
    EXPECT_EQ(plugins.Row(0).Caption, " Secret  talk");
    plugins.SetInPrivates(1, false);
    settings->SaveAll();
    EXPECT_EQ(file("plugin.lst"), listed) << "it said no before, in its own way";
    plugins.SetInPrivates(1, true);
    plugins.SetInChannels(0, false);
    settings->SaveAll();
    EXPECT_EQ(file("plugin.lst"),
              "<SYS>.plg_Encrypt T F 1 x  Secret  talk\r\nshort T\r\nShout T T 0 - Shout\r\n");
}

}  // namespace
}  // namespace talvora::test
