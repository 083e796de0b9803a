#include <gtest/gtest.h>

#include <cmath>

#include "platform/MemoryClipboard.h"
#include "platform/rich/RichTextBox.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

constexpr std::string_view Document =
    "{\\rtf1\\ansicpg1253{\\fonttbl{\\f0\\fcharset161 Tahoma;}{\\f1\\fcharset161 Arial;}}{\\colortbl "
    ";\\red255;}"
    "\\f0\\fs17 one \\b two\\b0\\par\r\n\\cf1\\f1\\fs30 three\\par\r\n}";

void select(RichTextBox& box, std::size_t begin, std::size_t length) {
    box.SetSelStart(begin);
    box.SetSelLength(length);
}

TEST(RichTextBox, TellsTheFormatsOfTheSelectionAndNothingWhereTheyDiffer) {
    RichTextBox box;
    box.SetTextRTF(Document);
    select(box, 4, 5);
    EXPECT_EQ(box.SelBold(), true);
    select(box, 0, std::string::npos);
    EXPECT_EQ(box.SelText(), "one two\r\nthree\r\n");
    EXPECT_FALSE(box.SelBold() || box.SelColor() || box.SelFontName() || box.SelFontSize());
    box.SetSelColor(0x00FF00);
    box.SetSelFontName("arial");
    box.SetSelFontSize(12.5);
    box.SetSelUnderline(true);
    box.SetSelStrikeThru(true);
    EXPECT_TRUE(box.SelColor() == 0x00FF00u && box.SelFontName() == "Arial" && box.SelFontSize() == 12.5);
    EXPECT_TRUE(box.SelUnderline() == true && box.SelStrikeThru() == true && box.SelItalic() == false);
    for (const double size : {0.0, 145.0, std::nan("")})
        EXPECT_EQ(faultOf([&] { box.SetSelFontSize(size); }), 5);
}

TEST(RichTextBox, AFormatWithoutSelectionIsThatOfWhatIsTypedNext) {
    RichTextBox box;
    box.SetSelBold(true);
    box.userTypes("a");
    box.userTypes("\r\n");
    EXPECT_EQ(box.SelBold(), true) << "in the empty line";
    box.userTypes("b");
    box.userErasesBackward();
    EXPECT_EQ(box.SelBold(), true) << "in the line that has become empty";
    box.SetSelStart(0);
    box.SetSelStartToEnd();
    EXPECT_EQ(box.SelBold(), false) << "forgotten, and the line has no format of its own";
}

TEST(RichTextBox, RaisesEventsWhenSomethingHasChanged) {
    RichTextBox box;
    std::string log;
    const Subscription change = box.Change.connect([&] { log += 'C'; });
    const Subscription selChange = box.SelChange.connect([&] { log += 'S'; });
    const MemoryClipboard clipboard;
    const RichBody body;
    const std::vector<std::tuple<const char*, std::function<void()>, const char*>> cases = {
        {"text", [&] { box.SetText("abc\r\ndef"); }, "CS"},
        {"the same text", [&] { box.SetText("abc\r\ndef"); }, ""},
        {"caret moves", [&] { box.SetSelStart(2); }, "S"},
        {"selected", [&] { box.SetSelLength(1); }, "S"},
        {"bold", [&] { box.SetSelBold(true); }, "C"},
        {"bold again", [&] { box.SetSelBold(true); }, ""},
        {"the same text, caret behind it", [&] { box.SetSelText("c"); }, "S"},
        {"format of what is next", [&] { box.SetSelItalic(true); }, ""},
        {"typed", [&] { box.userTypes("x"); }, "CS"},
        {"to the end", [&] { box.SetSelStartToEnd(); }, "S"},
        {"nothing to erase", [&] { box.userErasesForward(); }, ""},
        {"an empty clipboard", [&] { box.userPastes(clipboard); }, ""},
        {"undone", [&] { box.userUndoes(); }, "CS"},
        {"document", [&] { box.SetTextRTF(Document); }, "CS"},
        {"body", [&] { box.ShowBody("{\\rtf1 ", body, "}"); }, "CS"},
    };
    for (const auto& [name, act, expected] : cases) {
        log.clear();
        act();
        EXPECT_EQ(log, expected) << name;
    }
}

TEST(RichTextBox, StepsAreTakenBackAsTheyWereDone) {
    RichTextBox box;
    for (const char* text : {"a", "b", "\n", "c", "d"}) box.userTypes(text);
    box.userErasesBackward();
    box.userErasesBackward();
    std::string seen;
    for (; box.CanUndo(); box.userUndoes()) seen += box.Text() + '|';
    EXPECT_EQ(seen, "ab\r\n|ab\r\ncd|ab\r\n|ab|");
    box.userRedoes();
    box.SetSelStart(1);
    box.userTypes("x");
    EXPECT_FALSE(box.CanRedo());
    box.userUndoes();
    EXPECT_EQ(box.Text(), "ab") << "the caret had moved";
    for (std::size_t i = 0; i < 2 * RichUndo::MaxSteps; ++i) box.userTypes("\n");
    std::size_t steps = 0;
    for (; box.CanUndo(); ++steps) box.userUndoes();
    EXPECT_EQ(steps, RichUndo::MaxSteps);
    box.userTypes("y");
    const std::string before = box.Text();
    box.SetSelText(std::string(RichUndo::MaxBytes, 'z'));
    box.userUndoes();
    EXPECT_TRUE(box.Text() == before) << "the newest step is kept, however large";
    EXPECT_FALSE(box.CanUndo());
}

TEST(RichTextBox, TheClipboardCarriesFormatsIntoAnotherDocument) {
    RichTextBox from;
    from.SetTextRTF(Document);
    select(from, 4, 10);
    MemoryClipboard clipboard;
    from.userCopies(clipboard);
    RichTextBox to;
    to.SetSelColor(0x123456);
    to.SetSelText("<>");
    to.SetSelStart(1);
    to.userPastes(clipboard);
    EXPECT_EQ(to.Text(), "<two\r\nthree>");
    select(to, 6, 5);
    EXPECT_TRUE(to.SelColor() == 0x0000FFu && to.SelFontName() == "Arial" && to.SelFontSize() == 15);
    to.SetSelRTF("no {RTF}");
    to.userPastesPlain(clipboard);
    EXPECT_EQ(to.Text(), "<two\r\nno {RTF}two\r\nthree>");
    clipboard.Clear();
    clipboard.SetData(std::make_shared<const Picture>(Picture{Picture::Kind::Png, "", 4224, 10, 0, 0}));
    to.Paste(clipboard);
    const auto pictures = to.Document().At(to.Document().EndNumber() - 1).Pictures;
    ASSERT_EQ(pictures.size(), 1u);
    EXPECT_TRUE(pictures[0]->WidthTwips == MaxTwips && pictures[0]->HeightTwips == 75) << "in proportion";
}

TEST(RichTextBox, HandsLeaveALockedBoxAsItIs) {
    RichTextBox box(true);
    box.SetSelText("text");
    MemoryClipboard clipboard;
    box.userSelects({0, 0}, {0, 2});
    box.userCopies(clipboard);
    EXPECT_EQ(clipboard.GetText(ClipboardFormat::Text), "te");
    box.userErasesBackward();
    box.userPastes(clipboard);
    box.userCuts(clipboard);
    EXPECT_EQ(box.Text(), "text");
}

TEST(RichTextBox, HandsCannotMakeTheTextEndless) {
    RichTextBox box;
    box.SetText(std::string(RichTextBox::MaxTextByHand - 4, 'x'));
    box.SetSelStartToEnd();
    box.userTypes("ab\ncd");
    EXPECT_TRUE(box.Text().ends_with("xab\r\n"));
    select(box, 0, 1);
    box.userTypes("ef");
    EXPECT_TRUE(box.Text().starts_with("ex"));
}

TEST(RichTextBox, ParagraphsKeepTheirFormatsWhereTheyAreJoined) {
    RichTextBox box;
    const RichDocument& document = box.Document();
    const auto alignments = [&] {
        std::string seen;
        for (const Paragraph& p : document.Copy(document.Begin(), document.End()))
            seen += "lrcj"[int(p.Format.Align)];
        return seen;
    };
    box.SetTextRTF("{\\rtf1\\qc middle\\par\\pard\\qr right\\par\\pard left}");
    select(box, 3, 7);
    box.userTypes("\n\n");
    EXPECT_EQ(alignments(), "ccrl");
    select(box, 0, 8);
    box.userErasesForward();
    EXPECT_EQ(alignments(), "rl") << "nothing is left of the first";
    box.userUndoes();
    EXPECT_EQ(alignments(), "ccrl");
}

}  // namespace
}  // namespace talvora::test
