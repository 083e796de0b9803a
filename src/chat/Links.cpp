#include "chat/Links.h"

#include <algorithm>

#include "platform/Text.h"

namespace talvora {

namespace {

// A link that runs on into the next line holds that line's end; no control character goes to the browser.
std::string withoutControls(std::string text) {
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
    return text;
}

bool isLink(const std::string& text) {
    return UCase(Left(text, 5)) == "HTTP:" || UCase(Left(text, 4)) == "FTP:";
}

}  // namespace

// A blank's position counted from 1 is the control's position right behind that blank: so the word begins
// there, or at 0 if nothing stands in front of it, and the stretch ends behind the next blank, or at the
// text's end.
Stretch WordAt(std::string_view text, std::size_t caret) {
    caret = std::min(caret, text.size());
    const std::size_t next = InStr(text, " ", Compare::Binary, caret + 1);
    return {InStrRev(text.substr(0, caret), " "), next != 0 ? next : text.size()};
}

std::string LinkIn(std::string_view text, const Stretch& word) {
    std::string link = withoutControls(Trim(text.substr(word.Begin, word.End - word.Begin)));
    return isLink(link) ? link : std::string();
}

void OpenLink(Platform& platform, const std::string& link) {
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

}  // namespace talvora
