#include "mail/frmViewMail.h"

#include "chat/Links.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

frmViewMail::frmViewMail(const MailSurroundings& around, MailWindows& windows)
    : platform_(around.ThePlatform),
      globError_(around.Reporter),
      files_(around.ThePlatform.ProgramFiles),
      windows_(windows) {
    pic[ReplyButton].Caption = "Reply";
    pic[EraseButton].Caption = "Erase";
    Text1.Locked = true;
    Text2.Locked = true;
    for (const int index : {ReplyButton, EraseButton}) {
        on_ += pic[index].Click.connect([this, index] { pic_Click(index); });
    }
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
