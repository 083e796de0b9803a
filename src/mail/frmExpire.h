#pragma once
// The dialog that says after which time the robot is to erase a mail that was not received.

#include <cstdint>
#include <string>

#include "common/Trap.h"
#include "platform/Controls.h"
#include "platform/Form.h"

namespace talvora {

class frmExpire final : public Form {
  public:
    explicit frmExpire(GlobError& globError);

    CheckBox Check1;
    Label Label1{"Erase mail if not received in :"};
    TextBox Text1;   // how many
    ComboBox List1;  // hours, days, weeks, months of 30 days
    CommandButton Command1{"Close"};

    // Modal to the form that asked.
    void Display(std::int32_t hours);
    // The result, 0 for none; told by Closed.
    std::int32_t Hours = 0;
    Event<> Closed;

  private:
    void Command1_Click();

    GlobError& globError_;
    Subscriptions on_;
};

}  // namespace talvora
