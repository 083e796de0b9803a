#include <gtest/gtest.h>

#include <random>

#include "platform/rich/BodyJudge.h"

namespace talvora::test {
namespace {

const std::string picture =
    "{\\pict\\pngblip 89504e470d0a1a0a0000000d49484452000000030000000278787878787878787878787878787878}";

TEST(Show, EachFragmentIsReadOnItsOwn) {
    const std::string hostile[] = {
        "}",
        "}}}}\\par}",
        "{",
        std::string(10000, '{'),
        std::string(300, '{') + "{\\*\\x {\\info {\\fonttbl",
        "{\\*\\x",
        "{\\info",
        "{\\fonttbl{\\f0 Wrong;",
        "{\\colortbl;;;;\\red9",
        "{\\pict\\pngblip 89",
        "{\\pict\\jpegblip ffd8ffe00002",
        picture.substr(0, 30) + "00ff60000000ff60000}",
        "\\v",
        "\\'",
        "\\",
        "\\u",
        "\\u1234",
        "\\bin1073741824 ",
        "{\\pict\\pngblip\\bin99999999999 ",
        "\\deff7\\ansicpg1250\\mac\\f1",
        "\\pard\\qc\\li9\\fs99\\b\\i\\plain\\pard",
        std::string("\0\0\x1A\x0B\x7F", 5),
        std::string(20000, '}') + "\\rtf1",
    };
    for (const std::string& line : hostile) {
        BodyJudge judge;
        for (const std::string& fragment : {std::string("\\cf1 \xE1\\'e1"), line, std::string("\\b\\qc b")}) {
            judge.Append(fragment);
            judge.Append("\\par\r\n ");
        }
        ASSERT_EQ(judge.Show(), "") << line.substr(0, 60);
        const std::string dump = dumpOf(judge.Document);
        EXPECT_TRUE(dump.starts_with("[c1]\xE1\xE1| ")) << dump;
        EXPECT_TRUE(dump.ends_with("|<center 0 0 0 0 0> [b]b| |")) << dump;
    }
    BodyJudge flood;
    for (int i = 0; i < 20000; ++i) flood.Append("\\pard{\\par");
    EXPECT_EQ(flood.Show(), "");
}

TEST(Show, FollowsTheBody) {
    BodyJudge judge;
    EXPECT_EQ(judge.Show(), "");
    EXPECT_EQ(dumpOf(judge.Document), "|");
    const auto line = [&](const std::string& text) {
        judge.Append(text);
        judge.Append("\\par\r\n ");
        return judge.Show();
    };
    std::vector<std::string> events;
    const auto dropped = judge.Document.Dropped.connect(
        [&](std::uint64_t count) { events.push_back("-" + std::to_string(count)); });
    const auto changed = judge.Document.Changed.connect([&](const DocumentChange& it) {
        events.push_back(std::to_string(it.First) + ":" + std::to_string(it.OldCount) + ">" +
                         std::to_string(it.NewCount));
    });
    const auto headChanged = judge.Document.HeadChanged.connect([&] { events.emplace_back("head"); });
    for (const std::string& text : {std::string("\\b a"), "\\qr c" + picture, std::string("d")})
        EXPECT_EQ(line(text), "");
    EXPECT_EQ(judge.Show(), "");
    EXPECT_EQ(dumpOf(judge.Document), "[b]a|<right 0 0 0 0 0> c#| d| |");
    EXPECT_EQ(events, (std::vector<std::string>{"0:2>3", "1:2>3", "2:2>3"}));
    events.clear();
    judge.CutFirstLine();
    EXPECT_EQ(line("e"), "");
    EXPECT_EQ(events, (std::vector<std::string>{"-1", "3:2>3"}));
    // Other names and colours change nothing of what was read; another size does.
    events.clear();
    judge.Head.replace(judge.Head.find("Tahoma"), 6, "Courier");
    EXPECT_EQ(judge.Show(), "");
    EXPECT_EQ(events, std::vector<std::string>{"head"});
    events.clear();
    judge.Head.replace(judge.Head.find("fs17"), 4, "fs20");
    EXPECT_EQ(judge.Show(), "");
    EXPECT_EQ(events, (std::vector<std::string>{"1:5>5", "head"}));
    // A body that was cleared or is another begins anew; so does one whose document was changed otherwise.
    judge.Clear();
    EXPECT_EQ(line("x"), "");
    judge.Document.ReadPlain("y");
    EXPECT_EQ(line("z"), "");
    EXPECT_EQ(dumpOf(judge.Document), "x| z| |");
    RichBody other;
    judge.Document.Show(judge.Head, other, "");
    EXPECT_EQ(dumpOf(judge.Document), "");
}

TEST(Show, IsWhatReadingAnewWouldGive) {
    const std::string pieces[] = {
        "\\par\r\n ",
        "\\par\r\n ",
        "\\par\r\n",
        "\\\\par\r\n",
        "\\par",
        "\r\n",
        "\\pa",
        "r\r",
        "\n",
        "a",
        "bc ",
        "\\b x",
        "\\b0",
        "{",
        "}",
        "{\\i y}",
        "\\qc",
        "\\pard",
        "{\\qr z}",
        "{\\*\\x ",
        "\\info ",
        "{\\info ",
        "\\bin3 ",
        "\\bin99 ",
        "\\",
        "\\u945",
        "?",
        "\\'e1",
        "\\line ",
        picture,
        picture + "\\par\r\n",
        picture.substr(0, 60),
        "\\fs40 ",
        "\\cf2\\highlight1 text\\cf0",
        "\xE1",
        "\\plain ",
        "{\\fonttbl ",
        "  ",
    };
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    const auto below = [&](std::size_t end) { return random() % end; };
    const std::string tails[] = {"\r\n\\par }", "\r\n\\par }", "", "\\b\\qj t" + picture + "}",
                                 "t\\par\\par u"};
    for (int round = 0; round < 400; ++round) {
        BodyJudge judge;
        judge.Tail = tails[below(std::size(tails))];
        const std::size_t most = 1 + below(8);
        for (int step = 0; step < 40; ++step) {
            for (std::size_t fragments = below(4); fragments > 0; --fragments) {
                std::string fragment;
                for (std::size_t i = below(most); i > 0; --i) fragment += pieces[below(std::size(pieces))];
                judge.Append(fragment);
            }
            for (std::size_t cuts = below(5); cuts > 2; --cuts) judge.CutFirstLine();
            if (below(12) == 0) judge.CutTo(below(200));
            if (below(50) == 0) judge.Clear();
            if (below(20) == 0) judge.Tail = tails[below(std::size(tails))];
            const std::string difference = judge.Show();
            ASSERT_EQ(difference, "") << "seed " << seed << ", round " << round << ", step " << step;
        }
    }
}

TEST(Show, AFloodOfParagraphEndsCostsOneLineAFewAndTheOthersNothing) {
    RichBody body;
    std::string flood;
    for (int i = 0; i < 5000; ++i) flood += "\\par";
    body.Append(flood + " x");
    body.Append("\\par\r\n ");
    body.Append("next");
    RichDocument document;
    document.Show("{\\rtf1 ", body, "\r\n\\par }");
    EXPECT_EQ(document.EndNumber() - document.FirstNumber(), MaxParagraphsOfFragment + 2);
    EXPECT_TRUE(document.Text().ends_with("\vx\r\n next\r\n"));
}

}  // namespace
}  // namespace talvora::test
