#pragma once
// The viewer of a mail. It shows an incoming mail and leaves the read mark in its file; what is no mail
// closes it without a word. Any number of viewers; the composition owns them.

#include <string>

#include "common/Trap.h"
#include "mail/MailFile.h"
#include "mail/MailSession.h"
#include "mail/MailWindows.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/rich/RichTextBox.h"

namespace talvora {

class frmViewMail final : public Form {
  public:
    // The pictures of the window.
    static constexpr int UnreadIcon = 1;
    static constexpr int ReadIcon = 2;
    // The indexes of `pic`.
    static constexpr int ReplyButton = 0;
    static constexpr int EraseButton = 1;

    frmViewMail(const MailSurroundings& around, MailWindows& windows);

    TextBox Text1;  // the sender
    TextBox Text2;  // the subject
    RichTextBox RichTextBox1{true};
    Label Label3{"This mail is urgent"};
    Image Image1{0, false};
    CommandButton pic[2];
    CommandButton SaveAs{"Save as..."};
    Property<int> Icon{UnreadIcon};  // whether the mail had been read before

    // `FileName` is a file of the mail folder. A viewer that has nothing to show is unloaded.
    void DisplayFile(const std::string& FileName);
    void pic_Click(int index);

    // The file on show.
    const std::string& Path() const { return path_; }

  private:
    void show(const MailFile::Opened& mail);
    void leaveMark(Trap& step, const std::string& content, const std::string& copy);
    void reply(Trap& step);
    void erase(Trap& step);
    void saveAs();
    void openLink();

    Platform& platform_;
    GlobError& globError_;
    Files& files_;
    MailWindows& windows_;
    std::string path_;
    bool opensLink_ = false;
    Subscriptions on_;
};

}  // namespace talvora
