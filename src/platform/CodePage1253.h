#pragma once
// Code page 1253, the component's text, to and from UTF-8 and Unicode. Conversion happens only at the edges:
// keyboard and screen, the gate, file names, and the wire where a profile asks for it. Plain functions, no
// state.
//
// All 256 bytes have a character that converts back to the same byte: the page's undefined bytes are the C1
// controls of the same number, and U+F8F9, U+F8FA and U+F8FB stand for AA, D2 and FF.
// From UTF-8, a character without a place becomes the nearest text (base letter, one-accent Greek, plain
// quotes) or "?"; the nearest text is never longer than the UTF-8 form and never holds a blank, a control
// character or one of "!@:,|". A combining accent joins the Greek letter before it; other marks and
// characters without a width leave no trace. A byte that begins no valid sequence (overlong, surrogate, above
// U+10FFFF and cut-off ones included) is read as code page 1253, that is, it stays. Nothing here fails.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace talvora {

// The character of a byte; all are below U+10000.
char16_t codePointOf(unsigned char byte) noexcept;
// The byte of a character that has exactly one; none otherwise.
std::optional<unsigned char> byteOf(char32_t codePoint) noexcept;

bool isAscii(std::string_view text) noexcept;

std::string toUtf8(std::string_view cp1253);
std::string fromUtf8(std::string_view utf8);

// The same, appended. The text must not lie in `to`.
void appendUtf8(std::string& to, std::string_view cp1253);
void appendFromUtf8(std::string& to, std::string_view utf8);
// Appends one character or its nearest text; "?" for what is no character.
void appendCodePoint(std::string& to, char32_t codePoint);

}  // namespace talvora
