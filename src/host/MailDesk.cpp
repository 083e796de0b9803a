#include "host/MailDesk.h"

#include <memory>
#include <utility>

#include "platform/Text.h"

namespace talvora {

MailDesk::MailDesk(const MailSurroundings& around, modNickDecode& nicks, const modFriendsList& friends,
                   const modEmotions& emotions, SingleForm<frmEmoticons>& picker)
    : Viewers(around.ThePlatform, MostWindows),
      Composers(around.ThePlatform, MostWindows),
      Expire(around.ThePlatform, [around] { return std::make_unique<frmExpire>(around.Reporter); }),
      SelectUser(around.ThePlatform,
                 [this, around, &nicks] {
                     return std::make_unique<frmSelectUser>(around.ThePlatform, around.Reporter, nicks,
                                                            static_cast<const MailPeople&>(*this));
                 }),
      Status(around.ThePlatform),
      Manager(around, Status, *this),
      Drafts(around.Reporter, around.ThePlatform.ProgramFiles),
      Recipients(around.Settings, *this),
      Panel(around, Status, Manager, Drafts, *this),
      around_(around),
      services_{Manager, Drafts, Recipients, emotions, picker, Expire, SelectUser},
      friends_(friends) {}

// ---- The session

// Nothing that stands in a file can put a line of its own on the connection.
void MailDesk::TellRobot(const std::string& text) {
    if (form1_ != nullptr) form1_->Out.SendPM("OrreryServ", text, true);
}

void MailDesk::SetMailRefresh(int milliseconds) {
    if (form1_ != nullptr) form1_->Session.tmMailRefresh.Interval = milliseconds;
}

void MailDesk::SetMailInterval(std::int32_t minutes) {
    if (form1_ != nullptr) form1_->SetMailInterval(minutes);
}

void MailDesk::ShowIncoming() {
    Panel.MailFolder = MailPanel::Incoming;
    Panel.RefreshMailList();
}

// ---- The people

std::vector<std::string> MailDesk::Friends() const {
    return friends_.FriendList();
}

std::vector<std::string> MailDesk::OnLine() const {
    return form1_ != nullptr ? form1_->Users.Online()->Raw() : std::vector<std::string>();
}

// ---- The windows

void MailDesk::OpenMail(const std::string& path) {
    View(path.substr(path.find_last_of("\\/") + 1));
}

void MailDesk::View(const std::string& fileName) {
    if (Viewers.IsFull()) return;
    Viewers.Own(std::make_unique<frmViewMail>(around_, windows())).DisplayFile(fileName);
}

void MailDesk::Reply(const std::string& fileName) {
    if (Viewers.IsFull()) return;
    frmViewMail& viewer = Viewers.Own(std::make_unique<frmViewMail>(around_, windows()));
    viewer.DisplayFile(fileName);
    if (!viewer.IsUnloaded()) viewer.pic_Click(frmViewMail::ReplyButton);
}

frmSendMail* MailDesk::newComposer() {
    if (Composers.IsFull()) return nullptr;
    return &Composers.Own(std::make_unique<frmSendMail>(around_, services_));
}

void MailDesk::Write(const std::string& to, const std::string& body, bool isRTF, const std::string& subject) {
    if (frmSendMail* composer = newComposer()) composer->StartSend(to, body, isRTF, subject);
}

void MailDesk::OpenDraft(const std::string& fileName) {
    if (frmSendMail* composer = newComposer()) composer->StartDraft(fileName);
}

void MailDesk::UnloadAll(Trap& step) {
    const auto unload = [&](Form* form) {
        if (form != nullptr) step([&] { form->Unload(); });
    };
    for (frmViewMail* window : Viewers.Forms()) unload(window);
    for (frmSendMail* window : Composers.Forms()) unload(window);
    unload(Expire.Get());
    unload(SelectUser.Get());
    Status.Stop();
    Panel.tmrAges.Enabled = false;
}

}  // namespace talvora
