// A plug-in of the chat windows: once the user has typed "!shout", all that he types goes out in capitals;
// "!shout" again ends it. The switch itself is never sent.

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "ChatPlugin.h"

namespace {

constexpr char ProgID[] = "Shout.Shout";
constexpr std::string_view Typed = "MSG|";
constexpr std::string_view Special = "MSG|$";  // an action, say: its mark stays as it is

class Shout final : public talvora::ChatPlugin {
  public:
    void Broadcast(std::string& Data) override {
        if (Data == "MSG|!shout") {
            on_ = !on_;
            Data = Typed;  // a line left without text is not sent
            DataBroadcast(on_ ? "MSG|You are shouting now." : "MSG|You speak calmly again.");
        } else if (on_ && Data.starts_with(Typed) && !Data.starts_with(Special)) {
            std::transform(Data.begin() + Typed.size(), Data.end(), Data.begin() + Typed.size(), capital);
        }
    }

  private:
    static char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

    bool on_ = false;
};

}  // namespace

TALVORA_CHAT_PLUGIN int TalvoraChatPluginVersion() {
    return talvora::ChatPluginVersion;
}

TALVORA_CHAT_PLUGIN const char* TalvoraChatPluginProgIDs() {
    return ProgID;
}

TALVORA_CHAT_PLUGIN talvora::ChatPlugin* TalvoraCreateChatPlugin(const char* wanted) {
    return std::strcmp(wanted, ProgID) == 0 ? std::make_unique<Shout>().release() : nullptr;
}
