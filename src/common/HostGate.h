#pragma once
// The component's way to the host: broadcasts under its own identifier.

#include <cstdint>
#include <string>

#include "common/ComponentSettings.h"
#include "common/HostMessages.h"

namespace talvora {

// What a notice to the host is about.
enum class NoticeKind : std::uint8_t { FriendGone = 0, PrivateText = 1, ChannelText = 2, Other = 3 };

struct Notice {
    std::string Title;
    std::string Text;
    NoticeKind Kind = NoticeKind::Other;
    HostValue Window;  // what the host may hand back to open the window
    std::string Line;
    HostValue Value;
    bool First = false;
    bool Second = false;
};

class HostGate {
  public:
    explicit HostGate(ComponentSettings& settings) : settings_(settings) {}

    // Until then, and without listeners, broadcasts go nowhere.
    void Attach(MessageDatabase& db, std::int32_t id);
    std::int32_t PluginID() const { return gPluginID; }

    void Broadcast(std::int32_t msgID, HostValue data, std::int32_t to = HostAddress::Everybody,
                   const std::string& tag = "IRC");
    // Message 9, unless the user switched off notices of this kind.
    void NotifyHost(const Notice& notice);

  private:
    ComponentSettings& settings_;
    MessageDatabase* gMsgDB = nullptr;
    std::int32_t gPluginID = 0;
};

}  // namespace talvora
