// The cipher held against the vectors of docs/cipher.md, which another program has made, and the plug-in that
// uses it, with two of them talking over their windows' bus.

#include <fstream>
#include <sstream>

#include "Vocabulary.h"
#include "extensions/plg_Encrypt.h"
#include "platform/Text.h"
#include "simulation/FaultOf.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

class CipherTest : public testing::Test, public VirtualMachine {
  protected:
    CipherTest() { around.questions.answerFaults(Answer::Abort); }
    std::string encrypt(const std::string& text, std::string key) { return cipher.DCGEncryptText(text, key); }
    std::string decrypt(const std::string& text, std::string key) { return cipher.DCGDecryptText(text, key); }

    Random random;
    modEncryption cipher{random, time, around.clock};
};

std::string bytesOf(const std::string& digits) {
    std::string bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    return bytes;
}

TEST_F(CipherTest, ReadsAndWritesTheDocumentedVectors) {
    std::ifstream page(TALVORA_DOCS "/cipher.md");
    int vectors = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.find("| `^") == std::string::npos) continue;
        const auto cells = Split(Replace(line, "`", ""), "|");
        const std::string text = bytesOf(Trim(cells.at(1)));
        const std::string key = bytesOf(Trim(cells.at(2)));
        const std::string wire = Trim(cells.at(4));
        EXPECT_EQ(decrypt(wire, key), text) << line;
        cipher.CipherSalt = static_cast<std::uint8_t>(bytesOf(Trim(cells.at(3))).at(0));
        std::string given = key;
        EXPECT_EQ(cipher.DCGEncrypt(text, given), bytesOf(wire.substr(1))) << line;
        EXPECT_TRUE(given != key || cipher.CipherSalt == 1);
        ++vectors;
    }
    EXPECT_EQ(vectors, 8);
}

TEST_F(CipherTest, KeepsToItsLimitsAndMakesTheBestOfBadTexts) {
    std::string key(3, 'k');
    EXPECT_EQ(cipher.DCGEncrypt("not ready", key) + cipher.DCGDecrypt("yet", key), "not readyyet");
    const std::string all = encrypt(std::string(5000, 'a'), std::string(255, 'k'));
    EXPECT_EQ(all.size(), 2 * 5000u + 3);
    EXPECT_EQ(decrypt(all, std::string(255, 'k')), std::string(5000, 'a'));
    EXPECT_EQ(faultOf([&] { encrypt("a", std::string(256, 'k')); }), 3841);
    EXPECT_EQ(faultOf([&] { encrypt("a", ""); }), 5);
    EXPECT_EQ(faultOf([&] { decrypt("^", "k"); }), 5);
    EXPECT_EQ(encrypt("", "").size(), 3u);
    EXPECT_EQ(decrypt("00FF", "k"), "");
    EXPECT_EQ(decrypt("^00ZZ4Z7", "key"), decrypt("^00000407", "key"));
    cipher.CipherSalt = 255;
    EXPECT_EQ(faultOf([&] { cipher.DCGEncrypt("a", key); }), 6);
    EXPECT_FALSE(cipher.CipherBusy);
    EXPECT_EQ(Rol(0x81, 9), 3);
    EXPECT_EQ(Ror(Rol(0x35, 8), 16), 0x35);
    EXPECT_EQ(FillZero("A", 2) + FillZero("ABC", 2) + FillZero("AB", 2), "0AABAB");
    EXPECT_TRUE(HasErrChars("a\rb", false) && !HasErrChars("a\r\nb", true) && HasErrChars("\x1F", true));
}

// What gets in at the thousandth byte garbles, and no more.
TEST_F(CipherTest, ATextInTheMiddleOfAnotherHarmsNothingElse) {
    int inside = 0;
    for (int i = 0; i < 4; ++i) time.Defer([&] { ++inside, encrypt(std::string(1200, 'b'), "other"); });
    const std::string garbled = encrypt(std::string(3000, 'a'), "key");
    EXPECT_EQ(garbled.size(), 6003u);
    EXPECT_EQ(inside, 4);
    EXPECT_EQ(decrypt(encrypt("fine", "key"), "key"), "fine");
}

// One side of an encrypted talk: what its window would show and send.
struct Side {
    Side(CipherTest&, const EncryptionSite& site) : plugin(site) {
        plugin.ObjectEvent = [this](const ChatPluginEvent& event) {
            const std::string& line = event.Parameters.at(0);
            (line.starts_with("MSG|") ? shown : sent).push_back(line.substr(4));
        };
    }
    std::string offer(std::string line) {
        plugin.Broadcast(line);
        return line;
    }
    void switches() { plugin.Label1.Click.raise(); }
    plg_Encrypt plugin;
    Texts shown, sent;
};

TEST_F(CipherTest, EachKindOfLineHasItsColoursAndNoPlainTextLeaves) {
    const EncryptionSite site{globError, settings, cipher, [] { return "Maria"; },
                              [](const std::string& nick) { return nick.substr(0, nick.find('[')); }};
    Side maria(*this, site);
    Side nikos(*this, site);
    EXPECT_EQ(maria.offer("CON|Nikos[DND]"), "CON|Nikos[DND]");
    nikos.offer("CON|Maria");
    EXPECT_FALSE(maria.plugin.Label1.Visible);
    EXPECT_EQ(maria.offer("MSG|plain"), "MSG|plain");
    for (Side* side : {&maria, &nikos}) side->plugin.Text1.Text = "key";
    maria.switches();
    EXPECT_FALSE(maria.plugin.Text1.Enabled);
    EXPECT_EQ(maria.plugin.Text1.BackColor.get(), Colour{15971759});
    EXPECT_EQ(maria.offer("MSG|a | b") + maria.offer("MSG|$ACTION waves"), "MSG|MSG|");
    ASSERT_EQ(maria.sent.size(), 2u);
    EXPECT_THAT(maria.sent[0], testing::MatchesRegex("\\$PM \\^[0-9A-F]*"));
    EXPECT_EQ(nikos.offer("IRC|" + maria.sent[0]), "IRC|");
    nikos.switches();
    for (const std::string& line : maria.sent) nikos.offer("IRC|" + line);
    EXPECT_EQ(nikos.offer("IRC|open talk"), "IRC|open talk");
    const auto lines = [](const Texts& all) { return Replace(Join(all, "/"), "\x03", "#"); };
    EXPECT_EQ(lines(maria.shown), "[Maria]#14,0 a | b/[Maria]#14,0 $ACTION waves");
    EXPECT_EQ(lines(nikos.shown), "[Maria]#3,0 (Encrypted data)/[Maria]#1,0 a | b/#6,0* Maria waves");
}

// Kept under the nick as it came, and looked for under the bare one.
TEST_F(CipherTest, KeysAreKeptAndARefusedOneLetsNothingOut) {
    const EncryptionSite site{globError, settings, cipher, [] { return "Maria"; },
                              [](const std::string& nick) { return nick.substr(0, nick.find('[')); }};
    Side side(*this, site);
    side.offer("CON|Eva[away]");
    EXPECT_EQ(side.plugin.Label4.Caption.get(), "Eva");
    side.plugin.Text1.Text = std::string(255, 'k');
    side.plugin.Text1.Text = std::string(256, 'k');
    EXPECT_EQ(side.plugin.Text1.Text.get().size(), 255u);
    EXPECT_THAT(side.plugin.Problem.Caption.get(), HasSubstr("255"));
    side.switches();
    EXPECT_EQ(settings.Get(Section::PrivateKeys, "Eva[away]", "-"), std::string(255, 'k'));
    // The peer comes back in another state: no key is found, and encryption is still on.
    side.offer("CON|Eva[away]");
    EXPECT_EQ(side.plugin.Text1.Text.get(), "");
    EXPECT_EQ(side.offer("MSG|secret"), "MSG|");
    EXPECT_THAT(side.sent, IsEmpty());
    EXPECT_EQ(around.questions.asked.size(), 1u);
    settings.Save(Section::PrivateKeys, "Eva", "found");
    side.offer("CON|Eva");
    EXPECT_EQ(side.plugin.Text1.Text.get(), "found");
}

}  // namespace
}  // namespace talvora::test
