#include "chat/ChatFixture.h"
#include "platform/Text.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

// Clicks twice where `word` begins, or so many characters behind.
void clickTwice(IRCWin& view, const std::string& word, std::size_t behind = 0) {
    view.RichTextBox1.SetSelStart(view.RichTextBox1.Text().find(word) + behind);
    view.RichTextBox1.DblClick.raise();
}

TEST_F(ChatTest, ADoubleClickOpensALink) {
    view.AddRTF("Http://a.gr two x,http://no.gr http://b.gr/?b ftp://c.gr\\par\r\nnext line ftp:z");
    // Where, how many characters behind, and the link if it is one.
    const auto cases = Split(
        "Http;0;Http://a.gr\nHttp;7;Http://a.gr\ntwo;0;\nx,http;5;\nhttp://b;0;http://b.gr/?b\n?b "
        ";2;http://b.gr/?b\n"
        "c.gr;0;ftp://c.grnext\nftp:z;5;ftp:z",
        "\n");
    std::vector<std::string> opened;
    for (const std::string& each : cases) {
        const auto fields = Split(each, ";");
        if (!fields.at(2).empty()) {
            opened.push_back(fields[2]);
            around.questions.willAnswer(Answer::Yes);
        }
        clickTwice(view, fields[0], std::stoul(fields[1]));
        EXPECT_EQ(view.RichTextBox1.SelLength(), 0U);
    }
    EXPECT_EQ(around.screen.opened, opened);
    EXPECT_EQ(asked.at(0),
              "Open link\nHttp://a.gr\r\nDo you really want to open the folow URL into a new web "
              "browser window?");
    around.questions.willAnswer(Answer::No);
    clickTwice(view, "Http");
    EXPECT_EQ(around.screen.opened, opened);
    around.screen.hasBrowser = false;
    around.questions.willAnswer(Answer::Yes);
    around.questions.willAnswer(Answer::Ok);
    clickTwice(view, "Http");
    EXPECT_EQ(asked.back(),
              "Link launcher\nCould not start a new instance of your web browser due to invalid "
              "shell32.dll version!");
}

TEST_F(ChatTest, TheWordIsSelectedWhileEventsRunAndQuestionsDoNotStack) {
    view.AddIRCLine("see http://a.gr now", 3, 2);
    std::string selected;
    time.Defer([&] { selected = view.RichTextBox1.SelText(); });
    around.questions.willAnswer(Answer::No, [&] { clickTwice(view, "http"); });
    clickTwice(view, "http");
    EXPECT_EQ(selected, "http://a.gr ");
    EXPECT_EQ(asked.size(), 1U);
    around.questions.willAnswer(Answer::No, [&] { window.reset(); });
    clickTwice(view, "http");
}

TEST_F(ChatTest, AMouseUpCopiesWhatIsSelected) {
    view.AddIRCLine("one \2two\2 three", 3, 2);
    int released = 0;
    const Subscription on = view.ReleaseFocus.connect([&] { ++released; });
    const Clipboard& clipboard = around.screen.clipboard;
    for (const MouseButton button : {MouseButton::Left, MouseButton::Right}) {
        view.RichTextBox1.SetSelStart(4);
        view.RichTextBox1.SetSelLength(3);
        view.RichTextBox1.MouseUp.raise(button);
        EXPECT_EQ(view.RichTextBox1.SelLength(), 0U);
        EXPECT_EQ(clipboard.GetText().value_or(""), button == MouseButton::Left ? "two" : "");
    }
    view.RichTextBox1.MouseUp.raise(MouseButton::Left);
    EXPECT_THAT(clipboard.GetText(ClipboardFormat::RTF).value_or(""), HasSubstr("two"));
    EXPECT_EQ(released, 3);
    view.AddRTF(std::string(32'768, 'x'));
    view.RichTextBox1.SetSelStart(32'768);
    EXPECT_EQ(faultOf([&] { view.SelStart(); }), 6) << "the position has 16 bits";
}

}  // namespace
}  // namespace talvora::test
