#include "mail/frmViewMail.h"

#include <cstring>
#include <optional>

#include "chat/Links.h"
#include "platform/CodePage1253.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::size_t LongestName = 60;

// The subject, as far as a file can be called so.
std::string fileNameOf(const std::string& subject) {
    std::string name;
    for (const char letter : subject.substr(0, LongestName)) {
        const bool fits =
            static_cast<unsigned char>(letter) >= 32 && std::strchr("\\/:*?\"<>|.", letter) == nullptr;
        name += fits ? letter : '_';
    }
    name = Trim(name);
    return toUtf8(name.empty() ? "Message" : name);
}

}  // namespace

frmViewMail::frmViewMail(const MailSurroundings& around, MailWindows& windows)
    : platform_(around.ThePlatform),
      globError_(around.Reporter),
      files_(around.ThePlatform.ProgramFiles),
      windows_(windows) {
    pic[ReplyButton].Caption = "Reply";
    pic[EraseButton].Caption = "Erase";
    Label3.FontBold = true;
    Text1.Locked = true;
    Text2.Locked = true;
    for (const int index : {ReplyButton, EraseButton}) {
        on_ += pic[index].Click.connect([this, index] { pic_Click(index); });
    }
    on_ += SaveAs.Click.connect([this] { saveAs(); });
    on_ += RichTextBox1.DblClick.connect([this] { openLink(); });
}

void frmViewMail::DisplayFile(const std::string& FileName) {
    bool shown = false;
    trapped(globError_, "DisplayFile", [&](Trap& step) {
        path_ = MailFile::PathOf(FileName);
        std::string content;
        std::optional<MailFile::Opened> mail;
        if (!step([&] { content = files_.ReadWhole(path_); })) return;
        if (!step([&] { mail = MailFile::Open(content); }) || !mail) return;
        step([&] { show(*mail); });
        shown = true;
        leaveMark(step, content, mail->Copy);
    });
    if (!shown) Unload();
}

void frmViewMail::show(const MailFile::Opened& mail) {
    Text1.Text = mail.Head.From;
    Text2.Text = mail.Head.Subject;
    Label3.Visible = mail.Head.Urgent;
    Image1.Visible = mail.Head.Urgent;
    if (mail.IsRTF) {
        RichTextBox1.SetTextRTF(mail.Text);
    } else {
        RichTextBox1.SetText(mail.Text);
    }
    Icon = mail.Head.Read ? ReadIcon : UnreadIcon;
    // The date of reception stands under the word "sent", and is to.
    Caption = "Message from " + Text1.Text.get() + ", sent at " + Replace(mail.Head.Received, "_", " ");
    Show();
}

// Beside the mail and then in its place, so that a crash leaves it with the mark or without.
void frmViewMail::leaveMark(Trap& step, const std::string& content, const std::string& copy) {
    if (copy == content) return;
    const std::string path = path_;
    const std::string beside = path + ".tmp";
    step([&] {
        File file = files_.Open(beside, FileMode::Output);
        file.Write(copy);
        file.Close();
        files_.Replace(beside, path);
    });
}

void frmViewMail::pic_Click(int index) {
    trapped(globError_, "pic_Click", [&](Trap& step) {
        if (index == ReplyButton) {
            reply(step);
        } else {
            erase(step);
        }
    });
}

// A subject that answers already is answered once more; an RTF mail is quoted as its plain text.
void frmViewMail::reply(Trap& step) {
    std::string to;
    if (!step([&] { to = elementOf(Split(Text1.Text.get(), ";"), 0); })) return;
    const std::string quoted = Replace(RichTextBox1.Text(), "\r\n", "\r\n> ");
    const std::string body = "\r\n\r\nOriginal " + Caption.get() + "\r\n> " + quoted;
    step([&] { windows_.Write(to, body, false, "RE: " + Text2.Text.get()); });
    Unload();
}

// The list is not drawn anew here.
void frmViewMail::erase(Trap& step) {
    MessageBox question;
    question.Text = "Do you really want to erase this message?";
    question.Title = "Erase";
    question.Choices = Buttons::YesNo;
    question.Icon = MessageIcon::Exclamation;
    const std::string path = path_;
    if (platform_.Asking.Ask(question) != Answer::Yes) return;
    step([&] { files_.Kill(path); });
    Unload();
}

// As plain text in the encoding that the machine's other programs expect, or as RTF whatever the name says
// else.
void frmViewMail::saveAs() {
    trapped(globError_, "SaveAs_Click", [&](Trap& step) {
        const SaveFileBox box{"Save message",
                              {{"Rich text", "*.rtf"}, {"Plain text", "*.txt"}},
                              fileNameOf(Text2.Text) + ".rtf"};
        const std::string rtf = RichTextBox1.TextRTF();
        const std::string text = toUtf8(RichTextBox1.Text());
        const std::optional<std::string> path = platform_.Asking.Ask(box);
        if (!path) return;
        const bool plain = EqualText(Right(*path, 4), ".txt");
        Files& files = files_;
        step([&] {
            File file = files.CreatePicked(*path);
            file.Write(plain ? text : rtf);
            file.Close();
        });
    });
}

// One question at a time, however often the text is clicked.
void frmViewMail::openLink() {
    if (opensLink_) return;
    const std::string text = RichTextBox1.Text();
    const std::string link = LinkIn(text, WordAt(text, RichTextBox1.SelStart()));
    if (link.empty()) return;
    opensLink_ = true;
    OpenLink(platform_, link);
    opensLink_ = false;
}

}  // namespace talvora
