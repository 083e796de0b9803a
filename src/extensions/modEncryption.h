#pragma once
// The system's own cipher for short texts, DCG: a key of up to 255 characters seeds the random generator, and
// each text has a salt of one byte. It keeps a passer-by out, not an expert, and has no check: a wrong key
// gives garbage. docs/cipher.md has test vectors. The composition owns one a component, over the component's
// generator.
//
// Every operation that takes a key overwrites it: a caller passes a copy. Other events run meanwhile, at the
// start and every thousand bytes; a text that is ciphered by one of them garbles the outer one. Faults: 3841
// for a longer key, 5 for an empty one or a cipher text without a salt.

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Loop.h"
#include "platform/Random.h"

namespace talvora {

class modEncryption {
  public:
    static constexpr std::size_t LongestKey = 255;

    modEncryption(Random& random, Loop& loop, const Clock& clock)
        : random_(random), loop_(loop), clock_(clock) {}

    // To and from "^" and two hexadecimal digits a byte. A text that does not begin with "^" is empty; a byte
    // ends before a digit that is none.
    std::string DCGEncryptText(std::string_view Text, std::string& Key);
    std::string DCGDecryptText(std::string_view Text, std::string& Key);
    // The same in bytes, the salt first. Until the first call of one of the two above they give back `Text`.
    std::string DCGEncrypt(std::string_view Text, std::string& Key);
    std::string DCGDecrypt(std::string_view Text, std::string& Key);

    std::uint8_t CipherSalt = 0;  // of the text that is encrypted next
    bool CipherReady = false;
    bool CipherBusy = false;  // nothing asks for it

  private:
    class Stream;
    void begin(const std::string& key, const char* source);
    void seed(std::string& key, std::uint8_t salt);

    Random& random_;
    Loop& loop_;
    const Clock& clock_;
};

// A byte rotated; a count of 8 leaves it as it is.
std::uint8_t Ror(std::uint8_t Value, std::uint8_t Count);
std::uint8_t Rol(std::uint8_t Value, std::uint8_t Count);
// Whether the text holds a control character from 1 to 31; CR and LF may be allowed.
bool HasErrChars(std::string_view Text, bool AllowLineBreaks);
// Exactly `Width` long: "0" in front, or the end cut off.
std::string FillZero(std::string_view Text, std::uint8_t Width);

}  // namespace talvora
