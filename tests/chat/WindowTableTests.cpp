// The tables of chat windows, and the ends of windows.

#include "chat/WindowsFixture.h"

namespace talvora::test {
namespace {

TEST_F(WindowsTest, FiftyOneWindowsOpenAndTheRefusalOfMoreIsToldOnce) {
    for (const bool channel : {true, false}) {
        const auto start = [&](int i) {
            channel ? channels.StartChan("#" + std::to_string(i))
                    : privates.PMDistribute(std::to_string(i), "x", "");
        };
        for (int i = 0; i < 51; ++i) start(i);
        around.questions.willAnswer(Answer::Ok, [&] { start(52), start(53); });
        heard.clear();
        start(51);
        EXPECT_EQ(around.questions.lastSuppressed, 2);
        EXPECT_EQ(around.questions.asked.back(), std::string("Error\nCannot display more than 50 ") +
                                                     (channel ? "channel" : "personal chat") +
                                                     " windows, due to this version's limitations.");
        EXPECT_EQ(heard.size(), 2U) << "hello and name of the one that was asked about, no line";
        EXPECT_EQ(loaded().size(), channel ? 51U : 102U);
        if (channel) {
            channels.RemoveChan("#7");
        } else {
            privates.Window("7")->mnuStopPM.Click.raise();
        }
        start(52);
        EXPECT_EQ(loaded().size(), channel ? 51U : 102U);
    }
}

TEST_F(WindowsTest, AStaleIndexTakesAnotherWindowOffTheTableAndLosesNoSlot) {
    for (const char* name : {"#a", "#b", "#c"}) channels.StartChan(name);
    frmChanChat* last = channels.Window("#c");
    channels.Window("#a")->mnuClose.Click.raise();
    channels.Window("#b")->mnuClose.Click.raise();
    EXPECT_THAT(channels.Table().Windows(), IsEmpty());
    EXPECT_THAT(channels.Table().AllLoaded(), ElementsAre(last));
    EXPECT_TRUE(last->Visible);
    for (int i = 0; i < 51; ++i) channels.StartChan("#" + std::to_string(i));
    last->mnuClose.Click.raise();
    EXPECT_EQ(channels.Window("#2"), nullptr);
    EXPECT_NE(channels.Window("#3"), nullptr);
    EXPECT_EQ(channels.Table().AllLoaded().size(), 51U);
}

TEST_F(WindowsTest, AClosingPrivateWindowHidesOrAsks) {
    open(false).Unload(CloseReason::UserClosesBox);
    EXPECT_TRUE(at(false) != nullptr && !at(false)->Visible);
    surroundings.gHideInactive = false;
    frmPM& window = dynamic_cast<frmPM&>(open(false));
    const std::function<void()> meanwhile[] = {
        [&] {
            privates.QuitPM("anna");
            window.Unload(CloseReason::UserClosesBox);  // the question stands already
        },
        [] {},
        [&] {
            // Nobody keeps his window open by talking on.
            for (int i = 0; i < 20; ++i) arrives(false, "wait");
            privates.StartPM("bob");
            window.mnuStopPM.Click.raise();
            window.mnuStopPM.Click.raise();
        }};
    const auto close = [&](Answer answer, int which) {
        around.questions.willAnswer(answer, meanwhile[which]);
        around.platform.Guarded.run("close", [&] { window.Unload(CloseReason::UserClosesBox); });
        EXPECT_EQ(
            around.questions.asked.back(),
            "Close\nThis action will terminate your Personal Conversation. Do you want to minimize instead?");
    };
    close(Answer::Cancel, 0);
    EXPECT_TRUE(at(false) == &window && window.Visible && window.WindowState == FormState::Normal);
    close(Answer::Yes, 1);
    EXPECT_TRUE(at(false) == &window && window.WindowState == FormState::Minimized);
    close(Answer::No, 2);
    EXPECT_TRUE(at(false) == nullptr && privates.Window("bob") != nullptr);
    EXPECT_EQ(around.questions.asked.size(), 3U);
    time.run(1s);
    EXPECT_EQ(living, 1);
    surroundings.gHideInactive = true;
    privates.Window("bob")->mnuStopPM.Click.raise();
    EXPECT_THAT(loaded(), IsEmpty());
}

TEST_F(WindowsTest, AWindowThatIsUnloadedInsideItsOwnCallDoesNothingMore) {
    const auto unload = [this] {
        if (!loaded().empty()) loaded().back()->Unload();
    };
    const Subscription toHost = host.MessageBroadcasted.connect([&](const HostMessage&) { unload(); });
    settings.Save(Section::ChanSettings, "NoFocus_#Greek", "F");
    for (const bool channel : {true, false}) {
        for (const std::string kind : {"###|", "CON|", "USR|", "IRC|", "MSG|", "host"}) {
            if (kind == "USR|" && !channel) continue;
            act = [&](Probe& me, std::string& line) {
                if (!line.starts_with(kind)) return;
                unload();
                me.DataBroadcast("MSG|unseen");
                me.DataBroadcast("IRC|unsent");
                me.DataBroadcast("X|unheard");
            };
            sent.clear();
            around.platform.Guarded.run("story", [&] {
                channel ? channels.StartChan("#greek") : privates.StartPM("anna");
                auto* window = loaded().empty() ? nullptr : loaded().back();
                if (window == nullptr) return;
                window->mnuNoFocus.Checked = false;
                if (kind == "MSG|") {
                    window->Text1.Text = "a\rb\r";
                } else {
                    arrives(channel, "hi");
                }
                EXPECT_FALSE(window->Visible) << kind;
                EXPECT_TRUE(window->IsUnloaded());
                EXPECT_THAT(shown(*window), testing::SizeIs(kind == "host" ? 2 : 1));
            });
            const bool started = channel && kind != "###|" && kind != "CON|";
            EXPECT_EQ(sent, started ? Texts{"NAMES #greek"} : Texts{}) << kind;
            EXPECT_EQ(around.screen.ForegroundWindow(), nullptr) << kind;
            EXPECT_TRUE(channels.Table().Windows().empty() && privates.Table().Windows().empty());
            EXPECT_EQ(living, 0) << kind;
        }
    }
}

}  // namespace
}  // namespace talvora::test
