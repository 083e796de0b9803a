#pragma once
// The user's script commands in the menu of a chat window, which owns it: one entry a script, made anew when
// the scripts have changed.

#include <functional>
#include <string>
#include <vector>

#include "extensions/modCommands.h"
#include "platform/Controls.h"

namespace talvora {

class CommandMenu {
  public:
    // Whom a command is for.
    struct Target {
        std::string Nick;
        std::string Parameters;  // words parted by a blank, `%1` and so on of the script
    };

    // `list` is one of the lists of `commands`.
    CommandMenu(modCommands& commands, const std::vector<std::string>& list, ScriptWindow& window,
                std::function<Target()> target);

    Menu mnuCmd;                 // holds the entries; without one it says so
    ControlArray<Menu> Entries;  // in the list's order

  private:
    void fill();
    void run(int index);

    modCommands& commands_;
    const std::vector<std::string>& list_;
    ScriptWindow& window_;
    std::function<Target()> target_;
    Subscriptions clicks_;
    Subscription changed_;
};

}  // namespace talvora
