#pragma once
// The picker of users: friends, and whoever is on line. It goes as soon as the user works elsewhere.

#include <string>

#include "chat/UserList.h"
#include "common/Trap.h"
#include "mail/MailSession.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Timer.h"

namespace talvora {

// A form that asks for users.
class UserChooser {
  public:
    UserChooser() = default;
    UserChooser(const UserChooser&) = delete;
    UserChooser& operator=(const UserChooser&) = delete;
    virtual ~UserChooser() { ChooserEnded.raise(); }

    virtual void UserClick(const std::string& Nick) = 0;

    // The form is no more; nothing of it may be called.
    Event<> ChooserEnded;
};

class frmSelectUser final : public Form {
  public:
    frmSelectUser(Platform& platform, GlobError& globError, modNickDecode& nicks, const MailPeople& people);

    Label Label1{"Theese users are currently connected:"};
    UserList UserList1;
    CommandButton Command1{"Add", false};
    CommandButton Command2{"Cancel"};
    Timer Timer1;  // looks whether the user has gone elsewhere

    void Display(UserChooser& Owner);

  private:
    void fill(Trap& step);
    void choose();
    void Timer1_Timer();

    Platform& platform_;
    GlobError& globError_;
    const MailPeople& people_;
    UserChooser* owner_ = nullptr;
    bool wasInFront_ = false;
    Subscription ownerEnds_;
    Subscriptions on_;
};

}  // namespace talvora
