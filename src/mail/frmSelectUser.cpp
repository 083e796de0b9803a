#include "mail/frmSelectUser.h"

#include "chat/modNickDecode.h"
#include "platform/Text.h"

namespace talvora {

frmSelectUser::frmSelectUser(Platform& platform, GlobError& globError, modNickDecode& nicks,
                             const MailPeople& people)
    : UserList1(platform, globError, nicks),
      Timer1(platform, Ending, 1),
      platform_(platform),
      globError_(globError),
      people_(people) {
    Caption = "Select user";
    on_ += UserList1.Click.connect([this](const std::string&) { Command1.Enabled = true; });
    on_ += UserList1.DblClick.connect([this](const std::string&) { choose(); });
    on_ += Command1.Click.connect([this] { choose(); });
    on_ += Command2.Click.connect([this] { Unload(); });
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    on_ += platform_.Screen.ForegroundChanged.connect([this] {
        if (Timer1.Enabled) Timer1.Wake();
    });
}

void frmSelectUser::Display(UserChooser& Owner) {
    trapped(globError_, "Display", [&](Trap& step) {
        owner_ = &Owner;
        ownerEnds_ = Owner.ChooserEnded.connect([this] { owner_ = nullptr; });
        fill(step);
        Show();
        Timer1.Enabled = true;
    });
}

// A friend who is on line stands twice: the names differ.
void frmSelectUser::fill(Trap& step) {
    UserList1.Clear();
    for (const std::string& nick : people_.Friends()) UserList1.Add(nick + "[Offline]", "@F");
    for (const std::string& entry : people_.OnLine()) {
        const std::string nick = Trim(entry);
        if (nick.empty()) continue;
        if (step.test([&] { return UserList1.GetUser(nick) == 0; })) UserList1.Add(nick, "@U");
    }
}

void frmSelectUser::choose() {
    trapped(globError_, "Command1_Click", [&](Trap& step) {
        const std::string nick = TruncNick(UserList1.SelectedNick);
        if (owner_ != nullptr) step([&] { owner_->UserClick(nick); });
        Unload();
    });
}

// A desktop takes its time to bring a window to the front, and nothing is in front meanwhile.
void frmSelectUser::Timer1_Timer() {
    Timer1.Rest();
    const Form* front = platform_.Screen.ForegroundWindow();
    wasInFront_ = wasInFront_ || front == this;
    if (front == this || (front == nullptr && !wasInFront_)) return;
    Unload();
}

}  // namespace talvora
