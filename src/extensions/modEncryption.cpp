#include "extensions/modEncryption.h"

#include <algorithm>
#include <bit>

#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int InvalidKey = 3841;
constexpr int BytesBetweenEvents = 1000;

std::uint8_t byteOf(char character) {
    return static_cast<std::uint8_t>(character);
}

int digitOf(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    return -1;
}

// Two digits as a number; what is none ends it, as it does for Val.
std::uint8_t byteFrom(std::string_view digits) {
    int value = 0;
    for (const char character : digits) {
        const int digit = digitOf(character);
        if (digit < 0) break;
        value = value * 16 + digit;
    }
    return static_cast<std::uint8_t>(value);
}

}  // namespace

// The masks for one byte after the other, from the seeded generator.
class modEncryption::Stream {
  public:
    Stream(modEncryption& cipher, const std::string& key) : cipher_(cipher), key_(key) {
        cipher_.CipherBusy = true;
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { cipher_.CipherBusy = false; }

    std::uint8_t encrypted(std::uint8_t plain) {
        draw();
        const auto mixed = static_cast<std::uint8_t>(Ror(plain, rotation_) ^ mask_);
        letEventsRun();
        return Ror(mixed, mask_);
    }
    std::uint8_t decrypted(std::uint8_t secret) {
        draw();
        const auto mixed = static_cast<std::uint8_t>(Rol(secret, mask_) ^ mask_);
        letEventsRun();
        return Rol(mixed, rotation_);
    }

  private:
    std::uint8_t drawn() { return static_cast<std::uint8_t>(cipher_.random_.Rnd() * 255.0F); }

    void draw() {
        if (key_.empty()) throw RuntimeError(Fault::InvalidProcedureCall);
        rotation_ = drawn();
        const std::uint8_t turn = drawn();
        const std::uint8_t noise = drawn();
        mask_ = Rol(byteOf(key_[at_]), turn) ^ noise;
        at_ = at_ + 1 == key_.size() ? 0 : at_ + 1;
    }
    void letEventsRun() {
        if (++rounds_ <= BytesBetweenEvents) return;
        rounds_ = 0;
        cipher_.loop_.Yield();
    }

    modEncryption& cipher_;
    const std::string& key_;
    std::size_t at_ = 0;
    int rounds_ = 0;
    std::uint8_t rotation_ = 0;
    std::uint8_t mask_ = 0;
};

void modEncryption::begin(const std::string& key, const char* source) {
    if (key.size() > LongestKey) {
        throw RuntimeError(InvalidKey, "Invalid key. Please use a key lengh between 1 and 255", source);
    }
    loop_.Yield();
}

// Each step is in single precision, as everybody's is.
void modEncryption::seed(std::string& key, std::uint8_t salt) {
    for (char& character : key) character = static_cast<char>(byteOf(character) ^ salt);
    random_.Randomize(random_.Rnd(-1));
    for (const char character : key) {
        const float drawn = -random_.Rnd() * static_cast<float>(byteOf(character));
        random_.Randomize(random_.Rnd(drawn));
    }
}

std::string modEncryption::DCGEncrypt(std::string_view Text, std::string& Key) {
    if (!CipherReady) return std::string(Text);
    Stream stream(*this, Key);
    begin(Key, "DCG Encryptor");
    std::string secret(1, static_cast<char>(CipherSalt));
    seed(Key, CipherSalt);
    CipherSalt = CByte(CipherSalt + 1);
    for (const char character : Text) secret += static_cast<char>(stream.encrypted(byteOf(character)));
    return secret;
}

std::string modEncryption::DCGDecrypt(std::string_view Text, std::string& Key) {
    if (!CipherReady) return std::string(Text);
    Stream stream(*this, Key);
    begin(Key, "DCG Decryptor");
    seed(Key, static_cast<std::uint8_t>(Asc(Text)));
    std::string plain;
    for (const char character : Text.substr(1))
        plain += static_cast<char>(stream.decrypted(byteOf(character)));
    return plain;
}

std::string modEncryption::DCGEncryptText(std::string_view Text, std::string& Key) {
    CipherReady = true;
    random_.RandomizeByClock(clock_.SecondsSinceMidnight());
    CipherSalt = static_cast<std::uint8_t>(random_.Rnd() * 255.0F);
    constexpr char digits[] = "0123456789ABCDEF";
    std::string wire = "^";
    for (const char character : DCGEncrypt(Text, Key)) {
        wire += digits[byteOf(character) >> 4];
        wire += digits[byteOf(character) & 15];
    }
    return wire;
}

std::string modEncryption::DCGDecryptText(std::string_view Text, std::string& Key) {
    CipherReady = true;
    if (!Text.starts_with('^')) return {};
    std::string secret;
    for (std::size_t at = 1; at < Text.size(); at += 2)
        secret += static_cast<char>(byteFrom(Text.substr(at, 2)));
    return DCGDecrypt(secret, Key);
}

std::uint8_t Ror(std::uint8_t Value, std::uint8_t Count) {
    return std::rotr(Value, Count & 7);
}

std::uint8_t Rol(std::uint8_t Value, std::uint8_t Count) {
    return std::rotl(Value, Count & 7);
}

bool HasErrChars(std::string_view Text, bool AllowLineBreaks) {
    return std::any_of(Text.begin(), Text.end(), [&](char character) {
        const bool lineBreak = character == '\r' || character == '\n';
        return byteOf(character) >= 1 && byteOf(character) <= 31 && !(lineBreak && AllowLineBreaks);
    });
}

std::string FillZero(std::string_view Text, std::uint8_t Width) {
    if (Text.size() > Width) return std::string(Text.substr(0, Width));
    return std::string(Width - Text.size(), '0').append(Text);
}

}  // namespace talvora
