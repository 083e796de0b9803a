#include <algorithm>
#include <utility>

#include "chat/IRCWin.h"
#include "platform/Text.h"

namespace talvora {

namespace {

// A stretch of the plain text, by positions of the control, which count from 0.
struct Stretch {
    std::size_t Begin = 0;
    std::size_t End = 0;
};

// The word at the caret with the blank behind it. A blank's position counted from 1 is the control's position
// right behind that blank: so the word begins there, or at 0 if nothing stands in front of it, and the
// stretch ends behind the next blank, or at the text's end. Only blanks separate words.
Stretch wordAt(std::string_view text, std::size_t caret) {
    caret = std::min(caret, text.size());
    const std::size_t next = InStr(text, " ", Compare::Binary, caret + 1);
    return {InStrRev(text.substr(0, caret), " "), next != 0 ? next : text.size()};
}

// A link that runs on into the next line holds that line's end; no control character goes to the browser.
std::string withoutControls(std::string text) {
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
    return text;
}

bool isLink(const std::string& text) {
    return UCase(Left(text, 5)) == "HTTP:" || UCase(Left(text, 4)) == "FTP:";
}

}  // namespace

void IRCWin::RichTextBox1_DblClick() {
    if (opensLink_) return;
    const Alive::Watch self(alive_);
    const std::string text = RichTextBox1.Text();
    const Stretch word = wordAt(text, RichTextBox1.SelStart());
    RichTextBox1.SetSelStart(word.Begin);
    RichTextBox1.SetSelLength(word.End - word.Begin);

    struct Opening {
        const Alive::Watch& self;
        bool& opens;
        ~Opening() {
            if (!self.gone()) opens = false;
        }
    } opening{self, opensLink_};
    opensLink_ = true;
    platform_.TheLoop.Pump();
    if (self.gone()) return;
    const std::string link = withoutControls(Trim(text.substr(word.Begin, word.End - word.Begin)));
    if (isLink(link)) openLink(link);
    if (!self.gone()) RichTextBox1.SetSelLength(0);
}

// The view may be gone behind each question.
void IRCWin::openLink(const std::string& link) {
    Platform& platform = platform_;
    MessageBox question;
    question.Text = link + "\r\nDo you really want to open the folow URL into a new web browser window?";
    question.Title = "Open link";
    question.Choices = Buttons::YesNo;
    question.Icon = MessageIcon::Question;
    if (platform.Asking.Ask(question) != Answer::Yes) return;
    try {
        platform.Screen.Open(link);
    } catch (const RuntimeError&) {
        MessageBox failure;
        failure.Text =
            "Could not start a new instance of your web browser due to invalid shell32.dll version!";
        failure.Title = "Link launcher";
        failure.Icon = MessageIcon::Critical;
        platform.Asking.Ask(failure);
    }
}

// What was selected is on the clipboard the moment the mouse is released, and selected no longer.
void IRCWin::RichTextBox1_MouseUp(MouseButton button) {
    const Alive::Watch self(alive_);
    trapped(globError_, "RichTextBox1_MouseUp", [&](Trap& step) {
        if (RichTextBox1.SelLength() > 0) {
            Clipboard& clipboard = platform_.Screen.TheClipboard();
            step([&] { clipboard.Clear(); });
            if (self.gone()) return;
            const bool rich = button == MouseButton::Right;
            const std::string text = rich ? RichTextBox1.SelRTF() : RichTextBox1.SelText();
            step([&] { clipboard.SetText(text, rich ? ClipboardFormat::RTF : ClipboardFormat::Text); });
            if (self.gone()) return;
            RichTextBox1.SetSelLength(0);
        }
        ReleaseFocus.raise();
    });
}

}  // namespace talvora
