#include "chat/ChatClient.h"

#include "common/HostMessageNumbers.h"
#include "simulation/programs/Waiting.h"

namespace talvora::bench {

namespace {

NetworkProfile profileFor(int port) {
    NetworkProfile profile;
    profile.ServerPort = port;
    return profile;
}

}  // namespace

ChatClient::ChatClient(int port) : client_(folder_.path().string(), "Nikos", profileFor(port)) {
    client_.Settings.Save(Section::Settings, "ChanList", "#talk|");
    hearing_ = client_.Database.MessageBroadcasted.connect([this](const HostMessage& message) {
        if (message.MsgID == HostMsg::ChannelText) ++broadcasts_;
    });
    client_.Init();
}

frmChanChat& ChatClient::openWindow() {
    modChanWinManager& channels = client_.Component.Chats().Channels;
    channels.StartChan("#talk");
    frmChanChat* const window = channels.Window("#talk");
    if (window == nullptr) throw programs::Missing("the channel's window");
    return *window;
}

}  // namespace talvora::bench
