// The plug-in slots of a chat window and the bus through them, on the virtual platform, with plug-ins that do
// what a test tells them; and plug-ins from the shared libraries of a real folder.
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "Vocabulary.h"
#include "extensions/PluginSlots.h"
#include "extensions/modPluginManager.h"
#include "platform_qt/PosixPluginLibraries.h"
#include "platform_qt/TemporaryFolder.h"
#include "simulation/FaultOf.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

namespace fs = std::filesystem;

class SlotsTest : public testing::Test, public VirtualMachine, public PluginWindow {
  protected:
    struct TestPlugin final : ChatPlugin {
        explicit TestPlugin(SlotsTest& test) : living(test.living), heard(test.heard) { ++living; }
        ~TestPlugin() override { --living; }
        void Broadcast(std::string& Data) override {
            heard.push_back(Data);
            if (act) act(Data);
        }
        using ChatPlugin::DataBroadcast;
        int& living;
        Texts& heard;
        std::function<void(std::string&)> act;
    };

    SlotsTest() {
        around.questions.answerFaults(Answer::Ignore);
        for (const int height : {0, 1000, 32768})
            factories.Register("Test" + std::to_string(height), [this, height] {
                auto plugin = std::make_unique<TestPlugin>(*this);
                plugin->Height = height;
                return plugin;
            });
    }
    void ShowPluginLine(const std::string& text) override { heard.push_back("shown " + text); }
    void SendData(const std::string& text) override {
        heard.push_back("sent " + text);
        if (text == "bye") slots.reset();
    }
    TestPlugin& install() {
        slots->Install("Test0", "Caption", false, true);
        return dynamic_cast<TestPlugin&>(*slots->plugins(slots->Count() - 2).Client());
    }
    std::string broadcast(std::string line, int from = -1) {
        const bool stands = slots->Broadcast(line, from);
        EXPECT_EQ(stands, slots != nullptr);
        return line;
    }
    Texts take(Texts& from) { return std::exchange(from, {}); }

    Texts& reports = around.questions.asked;
    PluginFactories factories;
    int living = 0;
    Texts heard;  // by all plug-ins, and what the window showed and sent
    std::unique_ptr<PluginSlots> slots = std::make_unique<PluginSlots>(*this, factories, globError, time);
};

TEST_F(SlotsTest, FillFromTheFirstOnAndStandOneBelowTheOther) {
    slots->InstallAll({"TEST1000@Two words", "broken", "Test0@a@b"});
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_THAT(heard, ElementsAre("###|", "###|"));
    ASSERT_TRUE(slots->Count() == 3 && !slots->plugins(2).Visible);
    Container& high = slots->plugins(0);
    Container& below = slots->plugins(1);
    EXPECT_TRUE(high.Visible && high.Client()->Visible && high.Label1.Loaded && !high.Label2.Visible);
    EXPECT_EQ(below.Label1.Caption.get(), "a@b");
    high.Label1.Click.raise();
    EXPECT_EQ(below.Top, SlotCaption::Height + 1000);
    high.Image2.Click.raise();
    EXPECT_EQ(below.Top, SlotCaption::Height);
}

TEST_F(SlotsTest, APluginThatCannotBeCreatedCostsOneReportAndItsSlotAlone) {
    factories.Register("None", [] { return nullptr; });
    factories.Register("Torn", []() -> std::unique_ptr<ChatPlugin> { throw std::runtime_error("torn"); });
    slots->InstallAll({"Missing@a", "None@a", "Torn@a", "Test32768@a", "Test0@a"});
    Container& unloaded = slots->plugins(0);
    EXPECT_TRUE(unloaded.Visible && unloaded.Label2.Visible && !unloaded.Label1.Loaded);
    std::string line;
    EXPECT_EQ(faultOf([&] { unloaded.Broadcast(line); }), 91);
    broadcast("MSG|reaches those behind");
    EXPECT_THAT(heard, ElementsAre("###|", "MSG|reaches those behind"));
    EXPECT_THAT(reports, ElementsAre(HasSubstr("object Missing"), HasSubstr("Number:429"),
                                     HasSubstr("n: torn"), HasSubstr("Number:6")));
}

TEST_F(SlotsTest, WhatAPluginMakesOfALineIsWhatThoseBehindItAndTheWindowSee) {
    EXPECT_EQ(broadcast("MSG|nobody"), "MSG|nobody");
    for (const char* mark : {"1", "2"}) install().act = [mark](std::string& line) { line += mark; };
    install().act = [](std::string& line) { line.resize(line.ends_with("stop12") ? 4 : line.size()); };
    EXPECT_EQ(broadcast("MSG|go"), "MSG|go12");
    EXPECT_EQ(broadcast("MSG|go", 0), "MSG|go2");
    EXPECT_EQ(broadcast("MSG|stop"), "MSG|");
}

TEST_F(SlotsTest, WhatAPluginSaysGoesToTheScreenTheNetworkTheOthersOrItsSlot) {
    TestPlugin& speaker = install();
    install();
    heard.clear();
    const std::pair<std::string, std::string> cases[] = {
        {"MSG|a|b", "shown a|b"}, {"IRC|$PM x|", "sent $PM x|"}, {"QIT", "QIT"},   {"msg|a|b", "msg|a|b"},
        {"###|WHAT", ""},         {"MSG", "reported"},           {"", "reported"}, {"###", "reported"}};
    for (const auto& [line, expected] : cases) {
        speaker.DataBroadcast(line);
        if (!take(reports).empty()) heard.push_back("reported");
        EXPECT_EQ(take(heard), expected.empty() ? Texts{} : Texts{expected}) << line;
    }
    speaker.ObjectEvent({"DATAbroadcast", {"MSG|any case"}});
    speaker.ObjectEvent({"Resize", {}});
    EXPECT_THAT(heard, ElementsAre("shown any case"));
}

TEST_F(SlotsTest, APluginCommandsItsSlot) {
    TestPlugin& speaker = install();
    Container& slot = slots->plugins(0);
    const std::tuple<std::string, bool, bool> cases[] = {{"EXPAND", true, true},    {"INSET", false, true},
                                                         {"EXPAND|x", true, true},  {"inset", true, true},
                                                         {"DISABLE", false, false}, {"ENABLE", false, true}};
    for (const auto& [command, expanded, enabled] : cases) {
        speaker.DataBroadcast("###|" + command);
        EXPECT_EQ(slot.Image2.Picture, expanded ? Container::imgUp : Container::imgDown) << command;
        EXPECT_TRUE(slot.Label1.Enabled == enabled && slot.Image2.Visible == enabled) << command;
        if (!enabled) slot.Label1.Click.raise();
        EXPECT_EQ(slot.Expanded, expanded);
    }
}

TEST_F(SlotsTest, AFaultOfAPluginIsReportedAndLetsNothingTypedOutAsItWas) {
    int failures = 0;
    install().act = [&](std::string& line) {
        line = "IRC|changed";
        if (++failures == 1) throw std::runtime_error("torn");
        if (failures < 5) throw "not even an exception";
    };
    install();
    for (const Answer answer : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
        around.questions.answerFaults(answer);
        const char* shown = answer == Answer::Retry ? "IRC|changed" : "IRC|plain";
        EXPECT_EQ(broadcast("IRC|plain"), shown);
        EXPECT_EQ(take(heard).back(), shown) << "it is hidden from nobody else";
    }
    failures = 1;
    around.questions.answerFaults(Answer::Ignore);
    EXPECT_EQ(broadcast("MSG|secret"), "");
    EXPECT_EQ(take(heard).back(), "");
    reports.pop_back();
    EXPECT_THAT(reports, ElementsAre(AllOf(HasSubstr("n: torn"), HasSubstr("Function:Broadcast")),
                                     HasSubstr("Number:51"), HasSubstr("Number:51"), HasSubstr("Number:51")));
}

TEST_F(SlotsTest, TheWindowMayCloseWhileAPluginSpeaksAndBehindTheReportOfItsFault) {
    around.questions.answerFaults(Answer::Retry);
    const auto says = [](TestPlugin& plugin) { plugin.DataBroadcast("IRC|bye"); };
    const auto waits = [this](TestPlugin&) { slots.reset(); };  // and something else closes the window
    const std::pair<bool, std::function<void(TestPlugin&)>> cases[] = {
        {true, says}, {true, waits}, {false, says}};
    for (const auto& [hearing, close] : cases) {
        slots = std::make_unique<PluginSlots>(*this, factories, globError, time);
        TestPlugin& first = install();
        install();
        first.act = [&, &end = close, fails = hearing](std::string&) {
            end(first);
            EXPECT_EQ(living, 1);  // what runs is still there, the other has gone with the window
            first.DataBroadcast("MSG|unheard");
            if (fails) throw 1;
        };
        std::string line;
        hearing ? void(broadcast(line)) : first.act(line);
        time.settle();
        EXPECT_EQ(living, 0);
    }
    EXPECT_EQ(reports.size(), 2u);
}

TEST_F(SlotsTest, PluginsThatAnswerEachOtherWithoutEndAreStoppedOnce) {
    // Each level answers twice: without an end this would take 2 to the 64 lines.
    int emptied = 0;
    for (const int i : {0, 1}) {
        TestPlugin& each = install();
        each.act = [this, &each, &emptied, i](std::string&) {
            each.DataBroadcast("X|1");
            if (broadcast("MSG|unseen by the others", i).empty()) ++emptied;
        };
    }
    for (std::size_t round = 1; round < 3; ++round) {
        heard.clear();
        EXPECT_EQ(broadcast("MSG|x"), "MSG|x");
        EXPECT_THAT(heard.size(), AllOf(testing::Ge(64u), testing::Le(128u)));
        EXPECT_EQ(reports.size(), round);
    }
    EXPECT_GT(emptied, 0);
}

TEST_F(SlotsTest, TheListOfPluginsGivesTwoArraysInTheOrderOfTheFile) {
    modPluginManager manager(around.files, globError);
    around.disk.put("System/other", "");
    manager.ReloadPlugins();
    EXPECT_THAT(take(reports), ElementsAre(AllOf(HasSubstr("Number:53"), HasSubstr("n:ReloadPlugins"))));
    const std::tuple<std::string, Answer, Texts, Texts, std::size_t> cases[] = {
        {"<SYS>.A T F 0 0 a b\r\n\r\n", {}, {"TalvoraClient.A@a b"}, {}, 0},
        {"\nB<sys> F T x y  c \n", {}, {}, {"BTalvoraClient@ c "}, 0},
        {"A T T 0 0 a\nB F F 0 0 b\nC T t 0 0 c", {}, {"A@a", "C@c"}, {"A@a"}, 0},
        {"A T F 0 0 a\nB\nC T T 0\nD F F\nE T T 0 0 e", Answer::Ignore, {"A@a", "E@e"}, {"E@e"}, 2},
        {"A T F 0 0 a|b@c\n", {}, {"A@a", "b@c"}, {}, 0},
        {"A T F 0 0 a\nB T\nC T T 0 0 c", Answer::Abort, {"A@a", "b@c"}, {}, 1},  // as it was before
        {"", {}, {}, {}, 0}};
    for (const auto& [file, answer, priv, channel, reported] : cases) {
        around.questions.answerFaults(answer);
        around.disk.put("System/Plugin.LST", file);
        manager.ReloadPlugins();
        EXPECT_EQ(manager.PrivatePlugins(), priv) << file;
        EXPECT_EQ(manager.ChannelPlugins(), channel) << file;
        EXPECT_EQ(take(reports).size(), reported) << file;
    }
}

class LibrariesTest : public SlotsTest {
  protected:
    LibrariesTest() { fs::create_directory(plugins, folder.path()); }  // with the rights of that one
    fs::path place(const char* library, const char* as, fs::perms mode = fs::perms::owner_all) {
        fs::copy_file(fs::path(PLUGIN_LIBRARIES) / library, plugins / as);
        fs::permissions(plugins / as, mode);
        return plugins / as;
    }
    void load() { factories.LoadLibraries(libraries, globError); }

    TemporaryFolder folder;
    PosixPluginLibraries libraries{folder.path()};
    fs::path plugins = folder.path("Plugins");
};

TEST_F(LibrariesTest, TheExampleShoutsUntilItIsToldToStop) {
    place("shout.so", "shout.so");
    load();
    slots->InstallAll({"Shout.Shout@Shout"});
    std::string all;
    for (const char* line :
         {"MSG|a", "MSG|!shout", "MSG|b \xE1|c", "MSG|$ACTION d", "IRC|e", "MSG|!shout", "MSG|f"})
        all += broadcast(line) + "\n";
    EXPECT_EQ(all, "MSG|a\nMSG|\nMSG|B \xE1|C\nMSG|$ACTION d\nIRC|e\nMSG|\nMSG|f\n");
    EXPECT_THAT(heard, ElementsAre("shown You are shouting now.", "shown You speak calmly again."));
}

TEST_F(LibrariesTest, ALibraryThatIsNotSafeOrNotRightIsNamedWithTheReasonAndTheOthersAreLoaded) {
    place("chat_test_old.so", "a.so");
    place("chat_test_bare.so", "b.so");
    place("shout.so", "c.so", fs::perms::all);
    fs::rename(place("shout.so", "moved"), folder.path("outside"));
    fs::create_symlink("../outside", plugins / "d.so");
    fs::create_directory(plugins / "e.so");
    place("shout.so", "real.so.1");
    fs::create_symlink("real.so.1", plugins / "f.so");
    place("shout.so", "g.so");
    const bool given = ::chown(place("shout.so", "h.so").c_str(), 1, 1) == 0;  // only root can
    load();
    EXPECT_THAT(reports,
                ElementsAre(HasSubstr("a.so can't be used: it is made for version 0"),
                            HasSubstr("no TalvoraCreateChatPlugin"), HasSubstr("c.so can be"),
                            HasSubstr("leads out"), HasSubstr("is no file"), HasSubstr("Shout already"),
                            HasSubstr(given ? "not belong to the user" : "Shout already")));
    EXPECT_NE(factories.Create("shout.SHOUT"), nullptr);
    // A folder into which others can put libraries is not looked at; one that is missing is no fault.
    fs::permissions(plugins, fs::perms::all);
    load();
    fs::remove_all(plugins);
    load();
    EXPECT_EQ(reports.size(), 8u);
    EXPECT_THAT(reports.back(), HasSubstr("Plugins can be written by others"));
}

}  // namespace
}  // namespace talvora::test
