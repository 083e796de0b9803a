// The small windows, each loaded anew after an unload, as the component loads them.

#include "Vocabulary.h"
#include "notify/frmChanKey.h"
#include "notify/frmMOTD.h"
#include "notify/frmMsgBox.h"
#include "platform/SingleForm.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

class SmallWindowsTest : public testing::Test, public VirtualMachine {
  protected:
    // Types into the key dialog and presses a key there; a null pointer leaves what is offered.
    void answers(const char* typed, int key) {
        frmChanKey& form = prompt.Load();
        if (typed != nullptr) form.Text1.Text = typed;
        around.platform.Guarded.run("key", [&] {
            form.Text1.KeyPress.raise(key);
            EXPECT_EQ(key, 0);
        });
    }
    // The question that stands, what is offered and how much of it is selected.
    std::string question() const {
        const frmChanKey* form = prompt.Get();
        if (form == nullptr) return "";
        EXPECT_TRUE(form->Visible);
        EXPECT_TRUE(form->Image2.Visible != form->NewChanMode && form->Image3.Visible == form->NewChanMode);
        return form->Label1.Caption.get() + " " + form->Text1.Text.get() + " " +
               std::to_string(form->Text1.SelLength);
    }
    std::string keyOf(const char* channel) const { return settings.Get(Section::ChanKeys, channel, "-"); }

    modEmotions emotions{around.files, globError};
    Texts sent;
    SingleForm<frmChanKey> prompt{around.platform, [this] {
                                      return std::make_unique<frmChanKey>(
                                          globError, settings,
                                          [this](const std::string& line) { sent.push_back(line); });
                                  }};
    SingleForm<frmMsgBox> notes{around.platform,
                                [this] { return std::make_unique<frmMsgBox>(around.platform, globError); }};
    SingleForm<frmMOTD> motd{
        around.platform,
        [this] { return std::make_unique<frmMOTD>(around.platform, globError, settings, emotions); }};
};

TEST_F(SmallWindowsTest, KeysAreAskedForInTurnAndANewChannelComesInBetween) {
    settings.Save(Section::ChanKeys, "#Red", "old");
    prompt.Load().ExecList("#red|#blue|#grey|");
    EXPECT_EQ(question(), "Please enter the key for channel #red old 3");
    prompt.Load().ExecList("#late|");
    answers("new", Key::Return);
    EXPECT_EQ(question(), "Please enter the key for channel #blue  0");
    EXPECT_EQ(keyOf("#RED"), "new") << "kept before the server has accepted it";
    prompt.Load().JoinNew();
    EXPECT_EQ(prompt.Load().Caption.get(), "Create new channel");
    answers("half", Key::Return);
    EXPECT_EQ(question(), "Please enter the key for channel #blue  0");
    answers("never kept", Key::Escape);
    answers(nullptr, Key::Return);
    EXPECT_EQ(question(), "Please enter the key for channel #late  0");
    prompt.Load().Picture1[1].Click.raise();
    EXPECT_EQ(question(), "");
    EXPECT_THAT(sent, ElementsAre("JOIN #red new", "JOIN #half", "JOIN #grey "));
    EXPECT_EQ(keyOf("#blue") + keyOf("#grey") + keyOf("#late"), "--");
}

TEST_F(SmallWindowsTest, ANewChannelGetsExactlyOneMarkAndAnEmptyRoundNoDialog) {
    const std::tuple<const char*, int, Texts> cases[] = {{"new", Key::Return, {"JOIN #new"}},
                                                         {"##a#b", Key::Return, {"JOIN #ab"}},
                                                         {"never", Key::Escape, {}}};
    for (const auto& [typed, key, expected] : cases) {
        prompt.Load().JoinNew();
        EXPECT_EQ(question(), "Please enter the new channel name:  0");
        prompt.Load().Text1.Text = typed;
        prompt.Load().JoinNew();  // asked for once more, what is typed stays
        answers(nullptr, key);
        EXPECT_EQ(std::exchange(sent, {}), expected);
        EXPECT_EQ(prompt.Get(), nullptr);
    }
    prompt.Load().ExecList("");
    EXPECT_EQ(prompt.Get(), nullptr);
    prompt.Load().ExecList("#a|");
    EXPECT_EQ(question(), "Please enter the key for channel #a  0");
    for (int i = 0; i < 20000; ++i) prompt.Load().ExecList("#more|");
    EXPECT_LE(prompt.Load().ChanList.size(), frmChanKey::LongestList);
    around.settings.FailNextSave();
    around.questions.willAnswer(Answer::Ignore);
    answers("key", Key::Return);
    EXPECT_EQ(question(), "Please enter the key for channel #more  0");
}

TEST_F(SmallWindowsTest, NotesWaitForTheirTurnAndTheLastOneUnloadsTheWindow) {
    const auto stands = [&] {
        const frmMsgBox* form = notes.Get();
        if (form == nullptr || !form->Visible) return std::string();
        return form->Caption.get() + ": " + form->Label1.Caption.get() + " " +
               std::to_string(form->Image2.Picture);
    };
    for (const int i : {1, 2, 3, 4}) notes.Load().Display("text" + std::to_string(i), "title", i);
    EXPECT_EQ(stands(), "title: text1 1");
    EXPECT_EQ(around.screen.topMost, 1);
    notes.Load().Hide();
    time.run(1s);
    EXPECT_TRUE(notes.Load().Visible) << "shown once more, a second after the load";
    EXPECT_EQ(around.screen.topMost, 2);
    notes.Load().Label2.Click.raise();
    EXPECT_EQ(stands(), "title: text2 2");
    notes.Load().Picture1.Click.raise();
    EXPECT_EQ(stands(), "title: text3 3");
    notes.Load().Unload(CloseReason::UserClosesBox);
    EXPECT_EQ(stands(), "title: text4 4") << "no note is lost with the close box";
    notes.Load().Unload(CloseReason::UserClosesBox);
    EXPECT_EQ(notes.Get(), nullptr);
    time.run(5s);
    EXPECT_EQ(around.screen.topMost, 4 + 1);
    notes.Load().Display("anew", "", 0);
    EXPECT_EQ(stands(), ": anew 0");
    for (int i = 0; i < 20000; ++i) notes.Load().Display(std::string(100, 'x'), "", 0);
    EXPECT_LE(notes.Load().MsgQueue.size(), frmMsgBox::LongestQueue + 200);
}

TEST_F(SmallWindowsTest, TheMessageOfTheDayIsShownUntilTheUserHasHadEnough) {
    around.disk.put("System/emoticons.dat", "^_^:=:{\\b face}\r\n");
    emotions.LoadEmotions();
    motd.Load().Display("old\r\n");
    frmMOTD& form = motd.Load();
    form.Display("one\r\ntwo");
    const std::string document = form.IRCWin1.Document();
    EXPECT_THAT(document,
                HasSubstr("\\cf2 \\highlight1 one \\cf0\\highlight0\\par\r\n \\cf2 \\highlight1 two"));
    EXPECT_EQ(document.find("old"), std::string::npos);
    EXPECT_TRUE(form.Visible && form.Check1.Value);
    form.Check1.Value = false;
    EXPECT_EQ(settings.Get(Section::Settings, "ShowMOTD", "-"), "0");
    form.Check1.Value = true;
    EXPECT_EQ(settings.Get(Section::Settings, "ShowMOTD", "-"), "1");
    for (const char* other : {"0", "T", ""}) {
        settings.Save(Section::Settings, "ShowMOTD", other);
        motd.Load().Display("unseen");
        EXPECT_EQ(motd.Get(), nullptr) << other;
        EXPECT_FALSE(form.Visible);
    }
}

}  // namespace
}  // namespace talvora::test
