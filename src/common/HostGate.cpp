#include "common/HostGate.h"

#include <utility>

#include "common/HostArrays.h"
#include "common/HostMessageNumbers.h"

namespace talvora {

void HostGate::Attach(MessageDatabase& db, std::int32_t id) {
    gMsgDB = &db;
    gPluginID = id;
}

void HostGate::Broadcast(std::int32_t msgID, HostValue data, std::int32_t to, const std::string& tag) {
    if (gMsgDB == nullptr) return;
    HostMessage message;
    message.MsgID = msgID;
    message.FromID = gPluginID;
    message.ToID = to;
    message.Tag = tag;
    message.Data = std::move(data);
    gMsgDB->Broadcast(message);
}

void HostGate::NotifyHost(const Notice& notice) {
    const char* const key = notice.Kind == NoticeKind::PrivateText   ? "PopupPM"
                            : notice.Kind == NoticeKind::ChannelText ? "PopupChan"
                                                                     : nullptr;
    if (key != nullptr && settings_.Get(Section::Settings, key, "T") == "F") return;
    Broadcast(HostMsg::Notice,
              ArrayOf(notice.Title, notice.Text, static_cast<std::int32_t>(notice.Kind), notice.Window,
                      notice.Line, notice.Value, notice.First, notice.Second),
              HostAddress::Everybody, "IRC Plugin");
}

}  // namespace talvora
