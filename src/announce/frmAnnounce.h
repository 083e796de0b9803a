#pragma once
// The form for posting an announcement. The limits of a category are checked as the system wants them, odd as
// they are; beside that the form says before the post what the category allows and what is left of the line.

#include <functional>
#include <string>

#include "announce/PostRoom.h"
#include "announce/modAnnounceManager.h"
#include "platform/Controls.h"
#include "platform/Form.h"

namespace talvora {

class frmAnnounce final : public Form {
  public:
    // `nick` is the user's bare nick.
    frmAnnounce(Platform& platform, GlobError& globError, modAnnounceManager& manager, PostRoom room,
                std::function<std::string()> nick);

    ComboBox Combo1;  // the category
    TextBox Text2;    // the lifetime in hours
    TextBox Text1;    // the text
    CommandButton Command1{"Post"};
    CommandButton Command2{"Cancel"};
    Label Allowed;  // how long an announcement of the category may last
    Label Room;     // how much of one line is left

    bool Refused = false;  // by the last CheckMax

    void CheckMax();

  private:
    void check(Trap& step);
    void refuse(Trap& step, const char* why, const char* hours);
    void Command1_Click();
    void showAllowed();
    void showRoom();
    std::string onOneLine() const;

    Platform& platform_;
    GlobError& globError_;
    modAnnounceManager& manager_;
    PostRoom room_;
    std::function<std::string()> nick_;
    Subscriptions on_;
};

}  // namespace talvora
