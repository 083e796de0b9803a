#pragma once
// The server's message of the day, shown until the user has had enough of it.

#include <string>

#include "chat/IRCWin.h"
#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "platform/Controls.h"
#include "platform/Form.h"

namespace talvora {

class frmMOTD final : public Form {
  public:
    frmMOTD(Platform& platform, GlobError& reporter, ComponentSettings& settings,
            const modEmotions& emotions);

    IRCWin IRCWin1;
    CheckBox Check1;  // ticked: show it at every log-on

    // Lines end in CR LF.
    void Display(const std::string& text);

  private:
    GlobError& globError_;
    ComponentSettings& settings_;
    Subscriptions on_;
};

}  // namespace talvora
