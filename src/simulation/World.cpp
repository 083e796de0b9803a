#include "simulation/World.h"

#include <map>

#include "common/HostMessageNumbers.h"
#include "simulation/EventLog.h"

namespace talvora::test {

namespace {

// The names by which messages are written down.
const std::map<std::int32_t, const char*> names = {
    {HostMsg::Start, "Start"},
    {HostMsg::Started, "Started"},
    {HostMsg::ShowWindow, "ShowWindow"},
    {HostMsg::GatherPages, "GatherPages"},
    {HostMsg::SettingsPage, "SettingsPage"},
    {HostMsg::ApplySettings, "ApplySettings"},
    {HostMsg::Terminate, "Terminate"},
    {HostMsg::Notice, "Notice"},
    {HostMsg::OpenMail, "OpenMail"},
    {HostMsg::GatherAbout, "GatherAbout"},
    {HostMsg::About, "About"},
    {HostMsg::SystemVerb, "SystemVerb"},
    {HostMsg::SaySystemVerb, "SaySystemVerb"},
    {HostMsg::SayVerb, "SayVerb"},
    {HostMsg::Verb, "Verb"},
    {HostMsg::ChannelText, "ChannelText"},
    {HostMsg::SayPrivate, "SayPrivate"},
    {HostMsg::PrivateText, "PrivateText"},
    {HostMsg::UserJoined, "UserJoined"},
    {HostMsg::UserParted, "UserParted"},
    {HostMsg::UserQuit, "UserQuit"},
    {HostMsg::UserRenamed, "UserRenamed"},
    {HostMsg::ServerNumeric, "ServerNumeric"},
    {HostMsg::ServerWord, "ServerWord"},
    {HostMsg::SayRaw, "SayRaw"},
};

std::string nameOf(std::int32_t number) {
    const auto found = names.find(number);
    return found == names.end() ? std::to_string(number) : found->second;
}

std::string textOf(const HostValue& value) {
    if (value.isNull()) return "null";
    const HostArray* array = value.asArray();
    if (array == nullptr) return shown(value.text());
    std::string text;
    for (const HostValue& element : *array) text += (text.empty() ? "" : ", ") + textOf(element);
    return text;
}

}  // namespace

void RecordingHost::Broadcast(const HostMessage& message) {
    if (message.MsgID != HostMsg::ServerNumeric && message.MsgID != HostMsg::ServerWord) {
        heard_.push_back(nameOf(message.MsgID) + "(" + textOf(message.Data) + ")");
    }
    MessageBroadcasted.raise(message);
}

void RecordingHost::send(std::int32_t msgID, HostValue data, std::int32_t to) {
    HostMessage message;
    message.MsgID = msgID;
    message.FromID = HostAddress::Host;
    message.ToID = to;
    message.Data = std::move(data);
    MessageBroadcasted.raise(message);
}

Client::Client(VirtualTime& time, VirtualNetwork& network, const std::string& name,
               const std::string& serverHost)
    : around(time, network), server(network.server(serverHost, 6667)), nick(name) {
    profile.ServerHost = serverHost;
    profile.ServerPort = 6667;
    profile.SysChannel = "#system";
    profile.SysChanKey = "syskey";
    profile.Wire = WireProfile::plain();
    profile.ReceiveAddress = "address-of-" + nick;
    around.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\n\r\naway|Away|4\r\n");
    around.disk.put("System/emoticons.dat", "(sun):=:{\\i sun}\r\n");
    around.disk.put("System/plugin.lst", "\r\n");
    around.settings.SaveSetting("Talvora", "Settings", "Nickname", nick);
    component = std::make_unique<Connect>(HostServices{around.platform, profile});
    component->Init(host, 1);
}

void Client::crashAndStart() {
    server.closes();
    around.disk.dieAtWrite(0);
    component.reset();
    around.disk.restart(MemoryDisk::Survived::Everything);
    component = std::make_unique<Connect>(HostServices{around.platform, profile});
    component->Init(host, 1);
    host.send(HostMsg::Start);
}

Client& World::client(const std::string& nick) {
    auto& client = clients_[nick];
    client = std::make_unique<Client>(time, network, nick, "irc-" + nick + ".test");
    return *client;
}

Client& World::loggedIn(const std::string& nick) {
    Client& started = client(nick);
    started.host.send(HostMsg::Start);
    time.settle();
    started.server.says(":srv 001 " + nick + " :Welcome");
    time.run(std::chrono::seconds(4));
    started.server.heard();
    started.host.take();
    return started;
}

}  // namespace talvora::test
