#include "simulation/files/WholeClient.h"

#include <filesystem>

#include "common/HostMessageNumbers.h"

namespace talvora {

namespace {

constexpr std::int32_t pluginID = 1;

std::string dataFolder(const std::string& folder) {
    const std::filesystem::path data = std::filesystem::path(folder) / "data";
    std::filesystem::create_directories(data / "Received");
    if (!std::filesystem::exists(data / "System"))
        std::filesystem::copy(TALVORA_SOURCE_DIR "/data/System", data / "System");
    return data.string();
}

}  // namespace

WholeClient::WholeClient(const std::string& folder, const std::string& nick, const NetworkProfile& profile)
    : store_(folder + "/settings.db"),
      disk_(dataFolder(folder)),
      profile_(profile),
      Component(HostServices{platform_.platform(), profile_}) {
    Settings.Save(Section::Settings, "Nickname", nick);
}

void WholeClient::Init() {
    Component.Init(Database, pluginID);
}

void WholeClient::Start() {
    HostMessage message;
    message.MsgID = HostMsg::Start;
    message.FromID = HostAddress::Host;
    message.ToID = pluginID;
    Database.Broadcast(message);
}

}  // namespace talvora
