#pragma once
// What a chat window lives on. All of it outlives the window.

#include <string>

#include "chat/ChatColors.h"
#include "chat/ChatWindows.h"
#include "chat/FileOffers.h"
#include "chat/frmEmoticons.h"
#include "chat/modEmotions.h"
#include "chat/modNickDecode.h"
#include "common/ComponentSettings.h"
#include "common/GlobError.h"
#include "common/HostGate.h"
#include "extensions/PluginFactories.h"
#include "extensions/modCommands.h"
#include "extensions/modPluginManager.h"
#include "platform/Platform.h"
#include "platform/SingleForm.h"

namespace talvora {

// The session as the chat windows see it.
class ChatSession {
  public:
    virtual ~ChatSession() = default;
    // The one gate for text from the windows; `to` is a nick or a channel.
    virtual void SendPM(const std::string& to, const std::string& text, bool special) = 0;
    virtual void SendIRC(const std::string& line) = 0;
    // The nick that the user carries on the network now.
    virtual std::string Nickname() const = 0;
    // Redraws the list of open windows.
    virtual void RefreshWindows() = 0;
    // Opens the window of the user's scripts.
    virtual void ShowScripts() = 0;
};

struct ChatSurroundings {
    Platform& ThePlatform;
    GlobError& Reporter;
    ComponentSettings& Settings;
    HostGate& Gate;
    modEmotions& Emotions;
    modNickDecode& Nicks;
    PluginFactories& Factories;
    const modPluginManager& Plugins;
    modCommands& Commands;
    const ChatColors& Colors;
    ChatSession& Session;
    // The picker that all windows share.
    SingleForm<frmEmoticons>& Picker;
    // The private windows, for a channel window that opens one.
    PrivateWindows* Privates = nullptr;
    // The transfer of files; without it the windows offer none.
    FileOffers* Files = nullptr;
    // "Hide inactive windows" of the main window.
    bool gHideInactive = true;
};

}  // namespace talvora
