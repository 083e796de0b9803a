// A plug-in for the tests: what others say counts as typed by the user for the plug-ins behind it, and "say "
// with a text makes the window send that text. So a host without a screen shows what plug-ins make of a line.

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "ChatPlugin.h"

namespace {

constexpr char ProgID[] = "Test.Microphone";
constexpr std::string_view Arrived = "IRC|";
constexpr std::string_view Order = "IRC|say ";

class Microphone final : public talvora::ChatPlugin {
  public:
    void Broadcast(std::string& Data) override {
        if (Data.starts_with(Order)) {
            DataBroadcast("IRC|" + Data.substr(Order.size()));
            Data.clear();
        } else if (Data.starts_with(Arrived)) {
            Data.replace(0, Arrived.size(), "MSG|");
        }
    }
};

}  // namespace

TALVORA_CHAT_PLUGIN int TalvoraChatPluginVersion() {
    return talvora::ChatPluginVersion;
}

TALVORA_CHAT_PLUGIN const char* TalvoraChatPluginProgIDs() {
    return ProgID;
}

TALVORA_CHAT_PLUGIN talvora::ChatPlugin* TalvoraCreateChatPlugin(const char* wanted) {
    return std::strcmp(wanted, ProgID) == 0 ? std::make_unique<Microphone>().release() : nullptr;
}
