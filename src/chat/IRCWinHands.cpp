#include <algorithm>
#include <utility>

#include "chat/IRCWin.h"
#include "chat/Links.h"
#include "platform/Text.h"

namespace talvora {

void IRCWin::RichTextBox1_DblClick() {
    if (opensLink_) return;
    const Alive::Watch self(alive_);
    const std::string text = RichTextBox1.Text();
    const Stretch word = WordAt(text, RichTextBox1.SelStart());
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
    const std::string link = LinkIn(text, word);
    if (!link.empty()) OpenLink(platform_, link);
    if (!self.gone()) RichTextBox1.SetSelLength(0);
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
