#include "chat/modChanWinManager.h"

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

modChanWinManager::modChanWinManager(ChatSurroundings& around)
    : around_(around), table_(around.ThePlatform), refusal_(around.ThePlatform) {}

modChanWinManager::~modChanWinManager() = default;

frmChanChat* modChanWinManager::Window(const std::string& channel) const {
    return table_.Find([&](const frmChanChat& window) { return EqualText(window.ChannelName, channel); });
}

frmChanChat& modChanWinManager::load() {
    frmChanChat& window = table_.Own(std::make_unique<frmChanChat>(around_, *this));
    window.Form_Load();
    return window;
}

void modChanWinManager::refuse() {
    refusal_.Ask({"Cannot display more than 50 channel windows, due to this version's limitations.", "Error",
                  Buttons::Ok, MessageIcon::Critical});
}

std::int16_t modChanWinManager::RegisterChan(frmChanChat& window) {
    std::int16_t index = -1;
    trapped(around_.Reporter, "RegisterChan", [&](Trap& step) {
        if (!table_.IsFull()) {
            index = table_.Register(window);
        } else {
            step([&] { refuse(); });
        }
        around_.Session.RefreshWindows();
    });
    return index;
}

void modChanWinManager::UnregisterChan(int index) {
    trapped(around_.Reporter, "UnregisterChan", [&](Trap& step) {
        step([&] { table_.Unregister(index); });
        around_.Session.RefreshWindows();
    });
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
