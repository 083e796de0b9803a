#include "chat/ChatClient.h"

#include <filesystem>

#include "common/HostMessageNumbers.h"
#include "simulation/programs/Waiting.h"

namespace talvora::bench {

namespace {

constexpr std::int32_t pluginID = 1;

NetworkProfile profileFor(int port) {
    NetworkProfile profile;
    profile.ServerPort = port;
    return profile;
}

// The program's folder as it is installed, with the real tables.
std::string furnished(const programs::Folder& folder) {
    std::filesystem::copy(TALVORA_SOURCE_DIR "/data/System", folder.path() / "System");
    return folder.path().string();
}

}  // namespace

ChatClient::ChatClient(int port)
    : settings_(folder_ / "settings.db"),
      disk_(furnished(folder_)),
      profile_(profileFor(port)),
      component_(HostServices{platform_.platform(), profile_}) {
    ComponentSettings settings(settings_);
    settings.Save(Section::Settings, "Nickname", "Nikos");
    settings.Save(Section::Settings, "ChanList", "#talk|");
    hearing_ = database_.MessageBroadcasted.connect([this](const HostMessage& message) {
        if (message.MsgID == HostMsg::ChannelText) ++broadcasts_;
    });
    component_.Init(database_, pluginID);
}

void ChatClient::start() {
    HostMessage message;
    message.MsgID = HostMsg::Start;
    message.FromID = HostAddress::Host;
    message.ToID = pluginID;
    database_.Broadcast(message);
}

frmChanChat& ChatClient::openWindow() {
    modChanWinManager& channels = component_.Chats().Channels;
    channels.StartChan("#talk");
    frmChanChat* const window = channels.Window("#talk");
    if (window == nullptr) throw programs::Missing("the channel's window");
    return *window;
}

}  // namespace talvora::bench
