#pragma once
// The plug-in of a private window that encrypts the talk with its peer, by a key that both have agreed on
// elsewhere. It catches what the user types and sends cipher text in a message of its own, and turns incoming
// cipher text back into lines of the window. Each window's slot makes one.
//
// While encryption is on, no plain text leaves, whatever fails.

#include <functional>
#include <string>
#include <string_view>

#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "extensions/ChatPlugin.h"
#include "extensions/modEncryption.h"
#include "platform/Controls.h"

namespace talvora {

// What the plug-ins live on; all of it outlives them.
struct EncryptionSite {
    GlobError& Reporter;
    ComponentSettings& Settings;
    modEncryption& Cipher;
    std::function<std::string()> gNickname;                    // the user's bare nick
    std::function<std::string(const std::string&)> TruncNick;  // a nick without its state
    // Colour codes of the window's lines, foreground, "," and background.
    std::string ReceivedColor = "1,0";
    std::string ActionColor = "6,0";
    std::string OwnColor = "14,0";
};

class plg_Encrypt final : public ChatPlugin {
  public:
    explicit plg_Encrypt(const EncryptionSite& site);

    void Broadcast(std::string& Data) override;

    Property<bool> EncryptOn{false};
    std::string PeerNick;  // as the window gave it last
    TextBox Text1;         // the key, and its only place while the window lives
    Label Label4;          // the peer, without a state
    Label Label1;          // the switch; hidden while there is no key
    Property<bool> KeyShown{false};
    Label ShowKey;  // shows the key, or hides it
    Label Problem;  // why the key box did not take what was typed; empty if it did
    Label Honest{"This keeps a passer-by from reading along, not an expert."};

  private:
    void name(Trap& step, const std::string& nick);
    void encrypt(Trap& step, std::string& data, const std::string& plain);
    void decrypt(Trap& step, const std::string& secret);
    void show(const std::string& text);
    void showUnreadable();
    void Label1_Click();
    void Text1_Change();
    void lockKey(bool locked);

    const EncryptionSite& site_;
    std::string key_;  // the last text of the box that is a key
    Subscriptions on_;
};

}  // namespace talvora
