#include "chat/ChatColors.h"
#include "chat/ChatFixture.h"
#include "platform/Text.h"

namespace talvora::test {
namespace {

std::string documentOf(const std::string& body) {
    return "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 Tahoma;}}\r\n"
           "{\\colortbl ;\\red255 \\green255\\blue255;\\red0 \\green0\\blue0;\\red0 \\green0\\blue128;"
           "\\red0 \\green128\\blue0;\\red255 \\green0\\blue0;\\red128 \\green0\\blue0;"
           "\\red128 \\green0\\blue128;\\red255 \\green128\\blue0;\\red255 \\green255\\blue0;"
           "\\red0 \\green255\\blue0;\\red0 \\green128\\blue128;\\red0 \\green255\\blue255;"
           "\\red0 \\green0\\blue255;\\red255 \\green0\\blue255;\\red64 \\green64\\blue64;"
           "\\red192 \\green192\\blue192;}\r\n\\viewkind4\\uc1\\pard\\f0\\fs17 " +
           body + "\r\n\\par }";
}

// Name, line with <n> for character n, its RTF between the line's two colour tags and the blank behind its
// text, and the closers if they are not those of the two tags.
const char* const lineCases = R"(plain|hello|hello
no escaping|a{b\c}<0>d|a{b\c}<0>d
all left open|<31><29><22><2>x|\ul \strike \i \b x|\b0\i0\ul0\strike0\cf0\highlight0
all closed|<31><29><22><2>x<2><22><29><31>|\ul \strike \i \b x\b0 \i0 \strike0 \ul0 
both colours|<3>4,5x|\cf5 \highlight6 x
comma without a background|<3>4,x|\cf5 ,x
second comma|<3>4,5,x|\cf5 \highlight6 ,x
no digits|<3>x|\cf1 x
many digits|<3>000000000000000000000000004x|\cf5 x
colour at the end|x<3>4|x
background at the end|x<3>4,5|x\cf5 
back to the line's colours|<2><3>4,5a<15>b|\b \cf5 \highlight6 a\highlight1 \cf2 b|\b0\cf0\highlight0
two reverses|<3>4,5<28>a<28>b|\cf5 \highlight6 \cf7 \highlight4 a\cf5 \highlight6 b
reverse, then underline again|<2><22><31><28>x<31>y|\b \i \ul \cf2 \highlight1 \b0 \i0 \ul0 x\ul0 y
reverse leaves strike|<29><28>x|\strike \cf2 \highlight1 x|\strike0\cf0\highlight0
link inside a word|xhTTp://a b|x\cf13 \ul hTTp://a\cf2 \ul0  b
link at the end|see ftp:z|see \cf13 \ul ftp:z\cf2 \ul0 
blue and underlined link|<3>12<31>http:a b|\cf13 \ul \cf13 \ul http:a b|\ul0\cf0\highlight0
raw link|http:<2><3>4a<2> b|\cf13 \ul http:<2><3>4a<2>\cf2 \ul0  b
no link|www.x https://a tp: :http|www.x https://a tp: :http
automatic colours|<5>F<1><5>H<1>x|\cf0 \highlight0 x|
colour byte 0|<5>F<0>x|\cf-1 x
unknown tag|<5>Zax|x
tag cut off|x<5>B|x
colours beyond a byte|a<3>9999999999999999999,254b|a\cf2 \highlight1 b
reverse beyond a byte|<3>1,253<28>b|\cf2 \highlight254 \cf2 \highlight1 b)";

std::string withControls(std::string text) {
    for (int n = 0; n < 32; ++n) text = Replace(text, "<" + std::to_string(n) + ">", std::string(1, char(n)));
    return text;
}

TEST_F(ChatTest, ALineBecomesRTF) {
    const ChatColors colours;
    around.questions.answerFaults(Answer::Ignore);
    for (const std::string& each : Split(lineCases, "\n")) {
        const auto fields = Split(withControls(each), "|");
        view.Reset();
        view.AddIRCLine(fields.at(1), colours.ChatForeColor, colours.ChatBackColor);
        const std::string closers = fields.size() > 3 ? fields[3] : "\\cf0\\highlight0";
        EXPECT_EQ(view.Document(),
                  documentOf("\\cf2 \\highlight1 " + fields.at(2) + " " + closers + "\\par\r\n "))
            << fields[0];
    }
    around.questions.answerFaults(Answer::Abort);
    const std::string before = view.Document();
    view.AddIRCLine("\003254", 3, 2);
    view.AddIRCLine("\003254b", 3, 2);
    EXPECT_EQ(view.Document().size(), before.size() + 40) << "one is no colour, the other is lost";
    const auto overflow = AllOf(HasSubstr("Number:6\r\n"), HasSubstr("Function:AddIRCLine\r\n"));
    EXPECT_THAT(asked, ElementsAre(overflow, overflow, overflow)) << "a line is reported once";
}

TEST_F(ChatTest, OtherWaysIntoTheBody) {
    view.TimeStamp = true;
    view.AddIRCLine("^_^", 1, 255);
    view.AddLine(4, "a", true);
    view.AddLine(255, " b", false);
    view.AddRTF("{\\i x}");
    view.AddBBText("\5U ^_^ ", false, true, false);
    EXPECT_EQ(view.Document(), documentOf("\\cf0 \\highlight254 [09:00] {\\b face}\\highlight0\\par\r\n "
                                          "\\cf4a\\cf0\\par\r\n\\cf255 b\\cf0{\\i x}\\ul ^_^ \\ul0 "));
    EXPECT_EQ(view.RichTextBox1.Text(), "[09:00] face\r\n a\r\nbx^_^ \r\n");
    view.FontName = "Arial";
    around.questions.answerFaults(Answer::Ignore);
    for (int i = 16; i <= 101; ++i) view.AddColor(0x030201);
    EXPECT_THAT(view.Document(), AllOf(HasSubstr("161 Arial;}}"), HasSubstr("\\red1 \\green2\\blue3;}")));
    EXPECT_THAT(asked, ElementsAre(AllOf(HasSubstr("Number:9\r\n"), HasSubstr("Function:AddColor\r\n"))));
}

TEST_F(ChatTest, AnOverlongBodyLosesOneLineForEachAddition) {
    const std::string line = "12345\\par\r\n";
    for (int i = 0; i < 3; ++i) view.AddRTF(line);
    view.TruncSize = static_cast<std::int32_t>(4 * line.size());
    view.AddRTF(line);
    EXPECT_EQ(view.Document(), documentOf(line + line + line + line)) << "exactly at the limit";
    view.AddRTF("x");
    EXPECT_EQ(view.RichTextBox1.Text(), "12345\r\n12345\r\n12345\r\n12345\r\nx\r\n") << "shown once";
    EXPECT_EQ(view.Document(), documentOf(line + line + line + "x"));
    view.Reset();
    view.TruncSize = 4;
    view.AddRTF("12345");
    EXPECT_EQ(view.Document(), documentOf("12345")) << "no line end, no cut";
    for (int i = 0; i < 100; ++i) view.AddRTF("12345");
    EXPECT_EQ(view.Document().size(), documentOf("").size() + 60) << "the ceiling";
}

TEST_F(ChatTest, NoLineHidesAnother) {
    auto hostile = Split(
        R"(}}}};{;{\*\x;{\v;{\fonttbl;\v\deleted;\bin1073741824 x;\';\;\u-1;<0><0>;\fs0\li99999999999999999999;)"
        R"({\pict\pngblip\picw60000\pich60000 89504e47;{\object{\*\objdata 00;{\field{\*\fldinst INCLUDEPICTURE "/x"})",
        ";");
    hostile.push_back(Replace(std::string(20'000, '.'), ".", "\\pard{"));
    hostile.push_back(Replace(std::string(64 * 1024, '.'), ".", "^_^ "));
    for (const std::string& line : hostile) {
        view.AddIRCLine(withControls(line), 3, 2);
        view.AddIRCLine("good", 3, 2);
    }
    const std::string text = view.RichTextBox1.Text();
    EXPECT_EQ(Split(text, "good \r\n").size(), hostile.size() + 1);
}

TEST_F(ChatTest, TheWorldGoesOnBehindAReport) {
    auto text = std::make_unique<std::string>("\003254 long enough to lie on the heap");
    around.questions.willAnswer(Answer::Ignore, [&] {
        view.AddIRCLine("meanwhile", 3, 2);
        text.reset();
    });
    view.AddIRCLine(*text, 3, 2);
    EXPECT_EQ(view.RichTextBox1.Text(), "meanwhile \r\n  long enough to lie on the heap \r\n \r\n");
    around.questions.willAnswer(Answer::Ignore, [&] { window.reset(); });
    view.AddIRCLine("\003254x", 3, 2);
}

TEST_F(ChatTest, APictureIsTakenFromTheScratchBox) {
    around.questions.answerFaults(Answer::Abort);
    view.AddPicture(nullptr);
    EXPECT_THAT(asked, ElementsAre(HasSubstr("Number:9\r\n")));
    EXPECT_EQ(view.Document(), documentOf(""));
    for (const char* bytes : {"\1\2\3", "\4\5\6"})
        view.AddPicture(std::make_shared<Picture>(Picture{Picture::Kind::Png, bytes, 2, 2, 30, 30}));
    const auto pictures = Split(view.Document(), "{\\pict");
    ASSERT_EQ(pictures.size(), 3U);
    EXPECT_THAT(pictures[1], testing::EndsWith("010203}"));
    EXPECT_EQ(pictures[2], pictures[1] + "\r\n\\par }") << "the box keeps its pictures, the first is taken";
}

}  // namespace
}  // namespace talvora::test
