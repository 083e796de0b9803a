#include "chat/modChanWinManager.h"

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

modChanWinManager::modChanWinManager(ChatSurroundings& around)
    : WindowManager(around,
                    "Cannot display more than 50 channel windows, due to this version's limitations.") {}

modChanWinManager::~modChanWinManager() = default;

frmChanChat* modChanWinManager::Window(const std::string& channel) const {
    return table_.Find([&](const frmChanChat& window) { return EqualText(window.ChannelName, channel); });
}

frmChanChat& modChanWinManager::load() {
    return WindowManager::load(std::make_unique<frmChanChat>(around_, *this));
}

std::int16_t modChanWinManager::RegisterChan(frmChanChat& window) {
    return enter("RegisterChan", window);
}

void modChanWinManager::UnregisterChan(int index) {
    leave("UnregisterChan", index);
}

void modChanWinManager::ChanDistribute(const std::string& channel, const std::string& nick,
                                       const std::string& text, const std::string& command) {
    trapped(around_.Reporter, "ChanDistribute", [&](Trap& step) {
        if (frmChanChat* window = Window(channel)) {
            window->PMArrived(nick, text, command);
            return;
        }
        const std::string create = step.value(
            std::string("F"), [&] { return around_.Settings.Get(Section::ChanSettings, "CreateOnPM", "F"); });
        if (create == "F") return;
        if (isRefusing()) return refuse();
        frmChanChat& window = load();
        window.Start(channel, true);
        if (!window.IsUnloaded()) window.PMArrived(nick, text, command);
    });
}

void modChanWinManager::StartChan(const std::string& channel) {
    trapped(around_.Reporter, "StartChan", [&](Trap&) {
        if (frmChanChat* window = Window(channel)) {
            window->Show();
        } else if (isRefusing()) {
            refuse();
        } else {
            load().Start(channel, false);
        }
    });
}

void modChanWinManager::RemoveChan(const std::string& channel) {
    trapped(around_.Reporter, "RemoveChan", [&](Trap&) {
        if (frmChanChat* window = Window(channel)) window->Remove();
        around_.Session.RefreshWindows();
    });
}

void modChanWinManager::ForgetUsers() {
    table_.ForEach([](frmChanChat& window) { window.UserList1.Clear(); });
}

void modChanWinManager::NamesChan(const std::string& channel, const NameList& names) {
    if (frmChanChat* window = Window(channel)) window->NamesRespond(names);
}

void modChanWinManager::JoinChan(const std::string& channel, const std::string& nick) {
    if (frmChanChat* window = Window(channel)) window->UserJoin(nick);
}

void modChanWinManager::PartChan(const std::string& channel, const std::string& nick) {
    if (frmChanChat* window = Window(channel)) window->UserLeft(nick);
}

void modChanWinManager::QuitChan(const std::string& nick) {
    table_.ForEach([&](frmChanChat& window) { window.UserQuit(nick); });
}

void modChanWinManager::RenameChan(const std::string& oldNick, const std::string& newNick) {
    table_.ForEach([&](frmChanChat& window) { window.UserRename(oldNick, newNick); });
}

}  // namespace talvora
