#include "chat/modWinManager.h"

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

modWinManager::modWinManager(ChatSurroundings& around)
    : WindowManager(
          around, "Cannot display more than 50 personal chat windows, due to this version's limitations.") {}

modWinManager::~modWinManager() = default;

frmPM* modWinManager::Window(const std::string& nick) const {
    return table_.Find([&](const frmPM& window) { return EqualText(window.UserName, nick); });
}

frmPM& modWinManager::load() {
    return WindowManager::load(std::make_unique<frmPM>(around_, *this));
}

std::int16_t modWinManager::RegisterPM(frmPM& window) {
    return enter("RegisterPM", window);
}

void modWinManager::UnregisterPM(int index) {
    leave("UnregisterPM", index);
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
