#include "chat/modWinManager.h"

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

modWinManager::modWinManager(ChatSurroundings& around)
    : around_(around), table_(around.ThePlatform), refusal_(around.ThePlatform) {}

modWinManager::~modWinManager() = default;

frmPM* modWinManager::Window(const std::string& nick) const {
    return table_.Find([&](const frmPM& window) { return EqualText(window.UserName, nick); });
}

frmPM& modWinManager::load() {
    frmPM& window = table_.Own(std::make_unique<frmPM>(around_, *this));
    window.Form_Load();
    return window;
}

void modWinManager::refuse() {
    refusal_.Ask(
        {"Cannot display more than 50 personal chat windows, due to this version's "
         "limitations.",
         "Error", Buttons::Ok, MessageIcon::Critical});
}

std::int16_t modWinManager::RegisterPM(frmPM& window) {
    std::int16_t index = -1;
    trapped(around_.Reporter, "RegisterPM", [&](Trap& step) {
        if (!table_.IsFull()) {
            index = table_.Register(window);
        } else {
            step([&] { refuse(); });
        }
        around_.Session.RefreshWindows();
    });
    return index;
}

void modWinManager::UnregisterPM(int index) {
    trapped(around_.Reporter, "UnregisterPM", [&](Trap& step) {
        step([&] { table_.Unregister(index); });
        around_.Session.RefreshWindows();
    });
}

void modWinManager::PMDistribute(const std::string& nick, const std::string& text,
                                 const std::string& command) {
    trapped(around_.Reporter, "PMDistribute", [&](Trap& step) {
        if (frmPM* window = Window(nick)) {
            window->PMArrived(text, command);
            step([&] { around_.ThePlatform.Screen.Beep(); });
            return;
        }
        if (isRefusing()) return refuse();
        frmPM& window = load();
        window.Start(nick);
        if (!window.IsUnloaded()) window.PMArrived(text, command);
    });
}

void modWinManager::StartPM(const std::string& nick) {
    trapped(around_.Reporter, "StartPM", [&](Trap&) {
        if (frmPM* window = Window(nick)) {
            window->Show();
        } else if (isRefusing()) {
            refuse();
        } else {
            load().Start(nick);
        }
    });
}

void modWinManager::RenamePM(const std::string& oldNick, const std::string& newNick) {
    trapped(around_.Reporter, "RenamePM", [&](Trap& step) {
        if (frmPM* window = Window(oldNick)) {
            window->Rename(newNick);
            step([&] { around_.ThePlatform.Screen.Beep(); });
        } else {
            around_.Session.RefreshWindows();
        }
    });
}

void modWinManager::QuitPM(const std::string& nick) {
    if (frmPM* window = Window(nick)) window->UserQuit();
}

void modWinManager::EnterPM(const std::string& nick) {
    frmPM* window = Window(nick);
    if (window != nullptr && window->UserGone) window->UserEnter();
}

}  // namespace talvora
