#include "support/World.h"

#include "support/EventLog.h"

namespace talvora::test {

namespace {

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
    if (message.MsgID != 1012 && message.MsgID != 1013) {
        heard_.push_back(std::to_string(message.MsgID) + "(" + textOf(message.Data) + ")");
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
    around.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\n\r\naway|Away|4\r\n");
    around.disk.put("System/emoticons.dat", "(sun):=:{\\i sun}\r\n");
    around.disk.put("System/plugin.lst", "\r\n");
    around.settings.SaveSetting("Talvora", "Settings", "Nickname", nick);
    component = std::make_unique<Connect>(HostServices{around.platform, profile});
    component->Init(host, 1);
}

Client& World::client(const std::string& nick) {
    auto& client = clients_[nick];
    client = std::make_unique<Client>(time, network, nick, "irc-" + nick + ".test");
    return *client;
}

Client& World::loggedIn(const std::string& nick) {
    Client& started = client(nick);
    started.host.send(1);
    time.settle();
    started.server.says(":srv 001 " + nick + " :Welcome");
    time.run(std::chrono::seconds(4));
    started.server.heard();
    started.host.take();
    return started;
}

}  // namespace talvora::test
