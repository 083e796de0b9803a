#pragma once
// Mail put together: the dialogue with the robot, the main window's mail panel, the viewers and composers.
// The main window comes and goes; this stays for the component's life.

#include "chat/modEmotions.h"
#include "chat/modFriendsList.h"
#include "mail/MailDrafts.h"
#include "mail/MailPanel.h"
#include "mail/MailRecipients.h"
#include "mail/frmExpire.h"
#include "mail/frmSelectUser.h"
#include "mail/frmSendMail.h"
#include "mail/frmViewMail.h"
#include "mail/modMailManager.h"
#include "platform/FormSet.h"
#include "platform/SingleForm.h"
#include "session/Form1.h"

namespace talvora {

class MailDesk final : private MailSession, private MailWindows, private MailPeople, private MailService {
  public:
    MailDesk(const MailSurroundings& around, modNickDecode& nicks, const modFriendsList& friends,
             const modEmotions& emotions, SingleForm<frmEmoticons>& picker);

    // The queue and the counters, at the start.
    void LoadSettings() { Manager.LoadSettings(); }
    // The main window that mail speaks through; null while there is none.
    void Attach(Form1* window) { form1_ = window; }
    void JoinTo(Handovers& to) { to.Mail = static_cast<MailService&>(*this); }
    // Shows a file of the mail folder, whatever path to it the host gives.
    void OpenMail(const std::string& path);
    // Closes all windows, and what was written in them stays as a draft.
    void UnloadAll(Trap& step);

    // So many windows of a kind there are at most.
    static constexpr std::size_t MostWindows = 51;

    FormSet<frmViewMail> Viewers;
    FormSet<frmSendMail> Composers;
    SingleForm<frmExpire> Expire;
    SingleForm<frmSelectUser> SelectUser;
    MailStatus Status;
    modMailManager Manager;
    MailDrafts Drafts;
    MailRecipients Recipients;
    MailPanel Panel;

  private:
    void TellRobot(const std::string& text) override;
    void SetMailRefresh(int milliseconds) override;
    void SetMailInterval(std::int32_t minutes) override;
    void RefreshMailList() override { Panel.RefreshMailList(); }
    void ShowIncoming() override;

    void View(const std::string& fileName) override;
    void Reply(const std::string& fileName) override;
    void Write(const std::string& to, const std::string& body, bool isRTF,
               const std::string& subject) override;
    void OpenDraft(const std::string& fileName) override;
    frmSendMail* newComposer();
    MailWindows& windows() { return *this; }

    std::vector<std::string> Friends() const override;
    std::vector<std::string> OnLine() const override;

    void CheckRCVMail() override { Manager.CheckRCVMail(); }
    void HandleMailCmd(const std::string& text) override { Manager.HandleMailCmd(text); }

    MailSurroundings around_;
    ComposerServices services_;
    const modFriendsList& friends_;
    Form1* form1_ = nullptr;
};

}  // namespace talvora
