#pragma once
// The composer of a mail. Each recipient gets a file of his own in the queue. What is written is kept as a
// draft meanwhile, so that neither closing the window nor a crash loses it. Any number of composers; the
// composition owns them.

#include <cstdint>
#include <string>
#include <vector>

#include "chat/frmEmoticons.h"
#include "common/Trap.h"
#include "mail/MailDrafts.h"
#include "mail/MailRecipients.h"
#include "mail/MailSession.h"
#include "mail/frmExpire.h"
#include "mail/frmSelectUser.h"
#include "mail/modMailManager.h"
#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/SingleForm.h"
#include "platform/Timer.h"
#include "platform/rich/RichTextBox.h"

namespace talvora {

// The indexes of Toolbar1; 2, 6, 8 and 12 are separators.
namespace ComposerButton {
inline constexpr int Send = 1;
inline constexpr int Bold = 3;
inline constexpr int Italic = 4;
inline constexpr int Underline = 5;
inline constexpr int Font = 7;
inline constexpr int Priority = 9;
inline constexpr int RTF = 10;
inline constexpr int Expiration = 11;
inline constexpr int Emoticons = 13;
}  // namespace ComposerButton

// What all composers share.
struct ComposerServices {
    modMailManager& Manager;
    MailDrafts& Drafts;
    MailRecipients& Recipients;
    const modEmotions& Emotions;
    SingleForm<frmEmoticons>& Picker;
    SingleForm<frmExpire>& Expire;
    SingleForm<frmSelectUser>& SelectUser;
};

class frmSendMail final : public Form, public EmotionTarget, public UserChooser {
  public:
    frmSendMail(const MailSurroundings& around, const ComposerServices& services);

    TextBox Text1;  // recipients, parted by ";"
    TextBox Text2;  // subject
    RichTextBox RichTextBox1;
    Toolbar Toolbar1;
    Image Image1;       // beside "Send To:", "Browse user..."
    Label lblEstimate;  // how many lines the mail will be, and about how long it takes
    Menu mnuDiscard;    // closes without a draft
    // Names that the recipient under the caret may be completed to.
    Property<std::vector<std::string>> Suggestions;

    std::int32_t ExpireHours = 0;  // 0 for none

    void StartSend(const std::string& To, const std::string& Body, bool IsRTF, const std::string& Subject);
    // False, and the form is unloaded, if there is no such draft.
    bool StartDraft(const std::string& fileName);
    void UserClick(const std::string& Nick) override;
    void Emotion(const std::string& Code) override;
    // Writes one mail and queues it. False if it could not be written.
    bool Generate(const std::string& Nick);
    // Takes a suggestion in place of what is typed of the last recipient.
    void Complete(const std::string& name);

    // Text for lblEstimate.
    static std::string EstimateText(std::size_t pieces);
    // The robots take no longer mails.
    static constexpr std::size_t MostPieces = 327;

    Timer tmrDraft;     // what was written is soon on disk
    Timer tmrEstimate;  // and soon counted

  protected:
    void Form_Unload() override;

  private:
    void makeToolbar();
    void connectHands();
    void Toolbar1_ButtonClick(ToolbarButton& button);
    void RichTextBox1_SelChange();
    void RichTextBox1_Change();
    void send();
    std::vector<std::string> recipients() const;
    void tell(const std::string& text, const std::string& title, MessageIcon icon);
    void chooseFont(Trap& step);
    FontChoice fontOfSelection() const;
    void takeFont(const FontChoice& font);
    void askExpiry();
    void takeExpiry(frmExpire& dialog);
    void touched();
    void saveDraft();
    void dropDraft();
    bool isEmpty() const;
    void suggest();
    std::string mailText();
    void estimate();
    bool pressed(int index) { return Toolbar1.Buttons(index).Value; }

    Platform& platform_;
    GlobError& globError_;
    Files& files_;
    ComposerServices services_;
    bool filling_ = false;  // by code: nothing that the user has written
    bool unsaved_ = false;
    std::string draft_;  // its file; empty while there is none
    Subscriptions expire_;
    Subscriptions on_;
};

}  // namespace talvora
