#include "extensions/plg_Encrypt.h"

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view CipherMark = "$PM ";
constexpr std::string_view ActionMark = "$ACTION ";
constexpr char ColorCode = '\x03';

constexpr int SlotHeight = 2400;        // twips
constexpr Colour OpenKey = 0xF9F2EA;    // behind a key that can be typed
constexpr Colour LockedKey = 0xF3B5AF;  // behind the key in use

std::string colored(const std::string& color, std::string_view text) {
    return std::string(1, ColorCode).append(color).append(" ").append(text);
}

}  // namespace

plg_Encrypt::plg_Encrypt(const EncryptionSite& site) : site_(site) {
    Height = SlotHeight;
    Label1.Caption = "Enable Encryption";
    ShowKey.Caption = "Show key";
    on_ += Label1.Click.connect([this] { Label1_Click(); });
    on_ += Text1.Text.Changed.connect([this](const std::string&) { Text1_Change(); });
    on_ += ShowKey.Click.connect([this] {
        KeyShown = !KeyShown;
        ShowKey.Caption = KeyShown ? "Hide key" : "Show key";
    });
    lockKey(false);
    Text1_Change();
}

void plg_Encrypt::Broadcast(std::string& Data) {
    trapped(site_.Reporter, "plg_Encrypt.Broadcast", [&](Trap& step) {
        const auto bar = Data.find('|');
        const std::string kind = Data.substr(0, bar);
        const std::string rest = bar == std::string::npos ? std::string() : Data.substr(bar + 1);
        if (kind == "CON") {
            name(step, rest);
        } else if (kind == "USR") {
            PeerNick = rest;
        } else if (kind == "MSG" && EncryptOn) {
            encrypt(step, Data, rest);
        } else if (kind == "IRC" && rest.starts_with(CipherMark)) {
            Data = "IRC|";  // nobody reads cipher text
            decrypt(step, rest.substr(CipherMark.size()));
        }
    });
}

// The key is kept under the nick as it came and looked for under the bare one: with a state these are two.
void plg_Encrypt::name(Trap& step, const std::string& nick) {
    PeerNick = nick;
    const std::string bare = site_.TruncNick(nick);
    const auto key =
        step.value(std::string(), [&] { return site_.Settings.Get(Section::PrivateKeys, bare, ""); });
    Text1.Text = "";
    Text1.Text = key;
    Label4.Caption = bare;
    lockKey(false);
    Text1_Change();
}

// Out of the window's hands first: a line that could not be encrypted is not sent.
void plg_Encrypt::encrypt(Trap& step, std::string& data, const std::string& plain) {
    data = "MSG|";
    std::string key = Text1.Text;
    std::string secret;
    if (!step([&] { secret = site_.Cipher.DCGEncryptText(plain, key); })) return;
    show("[" + site_.gNickname() + "]" + colored(site_.OwnColor, plain));
    DataBroadcast("IRC|" + std::string(CipherMark) + secret);
}

void plg_Encrypt::decrypt(Trap& step, const std::string& secret) {
    if (!EncryptOn) return showUnreadable();
    std::string key = Text1.Text;
    std::string plain;
    if (!step([&] { plain = site_.Cipher.DCGDecryptText(secret, key); })) return;
    // A wrong key, most likely.
    if (HasErrChars(plain, false)) return showUnreadable();
    if (plain.starts_with(ActionMark)) {
        show(std::string(1, ColorCode) + site_.ActionColor + "* " + PeerNick + " " +
             plain.substr(ActionMark.size()));
    } else {
        show("[" + PeerNick + "]" + colored(site_.ReceivedColor, plain));
    }
}

void plg_Encrypt::show(const std::string& text) {
    DataBroadcast("MSG|" + text);
}

void plg_Encrypt::showUnreadable() {
    show("[" + PeerNick + "]" + std::string(1, ColorCode) + "3,0 (Encrypted data)");
}

// ---- The slot's controls

void plg_Encrypt::Label1_Click() {
    trapped(site_.Reporter, "plg_Encrypt.Label1_Click", [&](Trap& step) {
        EncryptOn = !EncryptOn;
        Label1.Caption = EncryptOn ? "Disable Encryption" : "Enable Encryption";
        lockKey(EncryptOn);
        step([&] { site_.Settings.Save(Section::PrivateKeys, PeerNick, Text1.Text.get()); });
    });
}

void plg_Encrypt::lockKey(bool locked) {
    Text1.Enabled = !locked;
    Text1.BackColor = locked ? LockedKey : OpenKey;
}

// Without a key there is nothing to switch on.
void plg_Encrypt::Text1_Change() {
    const std::string& typed = Text1.Text;
    if (typed.size() > modEncryption::LongestKey) {
        Text1.Text = key_;
        Problem.Caption = "A key has at most 255 characters.";
        return;
    }
    key_ = typed;
    Problem.Caption = "";
    Label1.Visible = !typed.empty();
}

}  // namespace talvora
