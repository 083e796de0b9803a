#include <random>

#include "chat/ChatFixture.h"
#include "chat/frmEmoticons.h"
#include "platform/Text.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

TEST_F(ChatTest, CodesCountInFrontOfABlank) {
    load("  :-)):=:{big}\r\n\r\n:-):=:{a[#13]b}\r\nlol:=:{l}:=:ignored\r\nf2:=:{two}  ");
    EXPECT_EQ(emotions.EmotionCount(), 4);
    for (const auto& [text, result] : {std::pair{"hello", "hello "},
                                       {"x :-)", "x {a\r\nb}"},
                                       {"x:-) :-)x", "x{a\r\nb}:-)x "},
                                       {":-)) :-)", "{big}{a\r\nb}"},
                                       {"LOL Lol", "{l}{l}"},
                                       {"\\cf2 x", "\\c{two}x "}})
        EXPECT_EQ(emotions.ReplaceEmotion(text), result);
}

// One entry after the other over the whole text, as slowly as it can be said.
std::string replacedNaively(const std::vector<std::string>& entries, std::string text) {
    text += " ";
    for (const std::string& entry : entries) {
        const auto fields = Split(entry, "\1");
        text = Replace(text, fields.at(0) + " ", fields.at(1), Compare::Text);
        text = Replace(text, "[#13]", "\r\n");
    }
    return text;
}

TEST_F(ChatTest, ReplacementIsAsIfEachEntryWentOverTheText) {
    const unsigned seed = std::random_device()();
    std::mt19937 random(seed);
    const std::vector<std::string> bricks{"a", "A", "b", " ", " ", ":", "[#13]", "[#1", "3]", "\xE1", "\xC1"};
    const auto piled = [&](unsigned most) {
        std::string text;
        for (auto n = random() % (most + 1); n > 0; --n) text += bricks[random() % bricks.size()];
        return text;
    };
    for (int round = 0; round < 1000; ++round) {
        std::string table = "z:=:y\r\n";
        for (auto n = random() % 6; n > 0; --n) table += piled(3) + ":=:" + piled(4) + "\r\n";
        load(table);
        const std::string text = piled(20);
        ASSERT_EQ(emotions.ReplaceEmotion(text), replacedNaively(emotions.EmotionList(), text))
            << table << "in " << text << " by seed " << seed;
    }
}

TEST_F(ChatTest, AFloodOfCodesStaysBounded) {
    const std::string picture(1500, 'f');
    load(":-):=:" + picture + "\r\n;-):=:" + picture + "\r\n");
    const std::string text = Replace(std::string(64 * 1024, '.'), ".", ":-) ");
    EXPECT_EQ(emotions.ReplaceEmotion(text + ";-)"), text + picture);
}

TEST_F(ChatTest, FaultsOfTheTable) {
    const modEmotions unloaded(around.files, globError);
    around.questions.answerFaults(Answer::Ignore);
    EXPECT_EQ(unloaded.ReplaceEmotion("x"), "x ");
    EXPECT_THAT(asked, ElementsAre(HasSubstr("Number:9\r\n")));
    load("a:=:1\r\nbroken\r\nb:=:2");
    EXPECT_EQ(emotions.ReplaceEmotion("a [#13]b"), "1\r\n2");
    around.questions.answerFaults(Answer::Abort);
    EXPECT_EQ(emotions.ReplaceEmotion("a b"), "1b ");
    EXPECT_EQ(asked.size(), 3U);
    around.disk.put("System/emoticons.dat", "");
    EXPECT_EQ(faultOf([&] { emotions.LoadEmotions(); }), 62);
    around.disk.remove("System/emoticons.dat");
    EXPECT_EQ(faultOf([&] { emotions.LoadEmotions(); }), 53);
}

struct TypingWindow final : EmotionTarget {
    void Emotion(const std::string& code) override { typed.push_back(code); }
    std::vector<std::string> typed;
};

std::string shown(const frmEmoticons& picker, int cell) {
    return picker.Ico(cell).Tag.get() + "=" + picker.Ico(cell).Text();
}

TEST_F(ChatTest, ThePickersPagesShowTheTable) {
    TypingWindow owner;
    frmEmoticons picker(around.platform, globError, emotions);
    std::string table;
    for (int i = 0; i < 76; ++i) {
        load(table += "c" + CStr(i) + ":=:{\\b p" + CStr(i) + "}\r\n");
        frmEmoticons each(around.platform, globError, emotions);
        each.Display(owner, 0, 0);
        EXPECT_EQ(each.VScroll1.Max, i + 1 <= 15 ? 0 : i + 1 < 45 ? 1 : i + 1 <= 75 ? 2 : 3);
        EXPECT_EQ(each.VScroll1.Enabled, i + 1 >= 45);
    }
    picker.Display(owner, 300, 450);
    EXPECT_TRUE(picker.Visible && picker.Left == 300 && picker.Top == 450);
    picker.VScroll1.userDrags(2);
    EXPECT_EQ(shown(picker, 15), "c75=p75 \r\n");
    EXPECT_EQ(shown(picker, 16), "=");
    picker.VScroll1.Value = 1;
    EXPECT_EQ(shown(picker, 0), "c30=p30 \r\n");
}

TEST_F(ChatTest, APickerTypesOneCodeAndGoesAlsoWhenTheUserWorksElsewhere) {
    auto owner = std::make_unique<TypingWindow>();
    for (int how = 0; how < 4; ++how) {
        frmEmoticons picker(around.platform, globError, emotions);
        const frmEmoticons other(around.platform, globError, emotions);
        picker.Display(*owner, 0, 0);
        for (const Form* front : {static_cast<const Form*>(nullptr), static_cast<const Form*>(&picker)}) {
            around.screen.works(front);
            time.run(1h);
            EXPECT_FALSE(picker.IsUnloaded()) << "it comes to the front, or is there";
        }
        if (how < 2) picker.Ico(how).MouseUp.raise(MouseButton::Left);
        if (how >= 2) around.screen.works(how == 2 ? &other : nullptr);
        time.run(5ms);
        EXPECT_TRUE(picker.IsUnloaded()) << how;
    }
    EXPECT_THAT(owner->typed, ElementsAre("^_^", "")) << "an empty cell types an empty code";
    frmEmoticons orphan(around.platform, globError, emotions);
    orphan.Display(*owner, 0, 0);
    owner.reset();
    orphan.Ico(0).MouseUp.raise(MouseButton::Left);
    EXPECT_TRUE(orphan.IsUnloaded());
}

}  // namespace
}  // namespace talvora::test
