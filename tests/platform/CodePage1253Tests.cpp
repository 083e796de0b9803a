#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/CodePage1253.h"

namespace talvora {

TEST(CodePage1253, EveryByteComesBackFromItsCharacter) {
    for (unsigned i = 0; i < 256; ++i) {
        const auto byte = static_cast<unsigned char>(i);
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(byteOf(codePointOf(byte)), byte);
        EXPECT_EQ(fromUtf8(toUtf8(text)), text) << i;
        EXPECT_EQ(isAscii(text), i < 0x80);
    }
    EXPECT_EQ(codePointOf(0xDC), 0x3AC);
    EXPECT_EQ(codePointOf(0xFF), 0xF8FB);
    EXPECT_EQ(byteOf(0x80), std::nullopt);
    EXPECT_EQ(toUtf8("\x80 \x96 \x93\xBF\xF1\xE1\x94"), "€ – “Ώρα”");
}

TEST(CodePage1253, WhatHasNoPlaceBecomesTheNearestText) {
    const std::pair<const char*, std::string_view> cases[] = {
        {"a long plain beginning, then €5 – “Ώρα”",
         "a long plain beginning, then \x80\x35 \x96 \x93\xBF\xF1\xE1\x94"},
        {"ÉßøžŵæﬁĲ№", "EssozwaefiIJNo"},
        {"ἀἄὰᾶᾳᾅῒῢἈἌᾺΰϊ", "\xE1\xDC\xDC\xDC\xE1\xDC\xC0\xE0\xC1\xA2\xA2\xE0\xFA"},
        {"ϑϕϲΩµʼ‛‟−‐", "\xE8\xF6\xF3\xD9\xB5\x92\x91\x93--"},
        {"Ｎｉｋ＿９｛𝓝𝕚𝐤Ⓞⓢ🇬🇷日😀", "Nik_9{NikOsGR??"},
        {"a\u2003k\u2028", "a\xA0k\xA0"},  // blanks of other widths don't cut a word in two
        {"！＠：，｜¡", "??????"},         // nor do other forms of separators
        {"e\u0301u\u0308", "eu"},          // combining marks leave no trace ...
        {"α\u0301ι\u0308\u0301Ω\u0342υ\u0308", "\xDC\xC0\xBF\xFB"},  // ... but on Greek vowels
        {"\u0301\uFEFFx\u200D\uFE0F", "x"},
    };
    for (const auto& [utf8, page] : cases) EXPECT_EQ(fromUtf8(utf8), page) << utf8;
    std::string text = "<";
    for (const char32_t point : {0x3AC, 0x110000, 0xD800}) appendCodePoint(text, point);
    EXPECT_EQ(text, "<\xDC??");
}

TEST(CodePage1253, BytesThatAreNotUtf8Stay) {
    for (const std::string_view bytes : {"\xE1\xE2\xE3", "\xC3", "\xCE ", "\xE2\x82", "\xE2\x82 x",
                                         "\xC0\xAF",                      // overlong "/"
                                         "\xE0\x80\xAF",                  // the same in three bytes
                                         "\xF0\x82\x82\xAC",              // overlong euro sign
                                         "\xED\xA0\x80", "\xED\xBF\xBF",  // surrogates
                                         "\xF4\x90\x80\x80",              // above the last character
                                         "\xF8\x88\x80\x80\x80", "\xFF\xFE", "\xF0\x9F\x98"})
        EXPECT_EQ(fromUtf8(bytes), bytes);
    EXPECT_EQ(fromUtf8("\xE2\x82€\xCEά\xF0"), "\xE2\x82\x80\xCE\xDC\xF0");
}

TEST(CodePage1253, ConvertingAgainChangesNothingWhateverCameIn) {
    std::mt19937 random(1253);
    constexpr std::string_view alphabet =
        "ab :\xCE\xAC\xCC\x81\xE2\x80\x83\xF0\x9F\x98\xC3\xED\xA0\xFF\xBF\xE1\xBC";
    for (int round = 0; round < 20000; ++round) {
        std::string bytes(random() % 40, ' ');
        for (char& c : bytes)
            c = round % 2 == 0 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
        EXPECT_EQ(fromUtf8(toUtf8(bytes)), bytes);
        const std::string page = fromUtf8(bytes);
        EXPECT_LE(page.size(), bytes.size());
        EXPECT_EQ(fromUtf8(toUtf8(page)), page);
        for (const char separator : {' ', ':', '\r', '\n', '!', '@', ',', '|'})
            EXPECT_EQ(std::count(page.begin(), page.end(), separator),
                      std::count(bytes.begin(), bytes.end(), separator));
    }
}

}  // namespace talvora
