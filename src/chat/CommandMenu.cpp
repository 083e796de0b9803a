#include "chat/CommandMenu.h"

#include <utility>

namespace talvora {

CommandMenu::CommandMenu(modCommands& commands, const std::vector<std::string>& list, ScriptWindow& window,
                         std::function<Target()> target)
    : commands_(commands), list_(list), window_(window), target_(std::move(target)) {
    fill();
    changed_ = commands_.MenusChanged.connect([this] { fill(); });
}

void CommandMenu::fill() {
    clicks_.clear();
    while (Entries.UBound() >= 0) Entries.Unload(Entries.UBound());
    mnuCmd.Caption = list_.empty() ? "(No commands)" : "Commands";
    for (int index = 0; std::cmp_less(index, list_.size()); ++index) {
        Menu& entry = Entries.Load(index);
        entry.Caption = ScriptNameOf(list_[static_cast<std::size_t>(index)]);
        clicks_ += entry.Click.connect([this, index] { run(index); });
    }
}

void CommandMenu::run(int index) {
    const Target target = target_();
    commands_.RunMenuCommand(list_, static_cast<std::size_t>(index), target.Parameters, target.Nick, window_);
}

}  // namespace talvora
