#include <array>
#include <cmath>
#include <unordered_map>

#include "Vocabulary.h"
#include "platform/Text.h"
#include "simulation/FaultOf.h"

namespace talvora::test {

using std::string;
using std::string_view;
using Number = std::pair<string_view, double>;

TEST(Case, FollowsThePageAndNotTheLocale) {
    const std::array<string_view, 4> cases[] = {
        {"", "", "", ""},
        {"[afk]o'neil_x", "[AFK]O'NEIL_X", "[afk]o'neil_x", "[Afk]o'neil_x"},
        {"maria DEL #mar", "MARIA DEL #MAR", "maria del #mar", "Maria Del #Mar"},
        {"\xDC\xDD\xDE\xDF\xFC\xFD\xFE", "\xA2\xB8\xB9\xBA\xBC\xBE\xBF", "\xDC\xDD\xDE\xDF\xFC\xFD\xFE",
         "\xA2\xDD\xDE\xDF\xFC\xFD\xFE"},
        {"\xED\xDF\xEA\xEF\xF2", "\xCD\xBA\xCA\xCF\xD3", "\xED\xDF\xEA\xEF\xF2", "\xCD\xDF\xEA\xEF\xF2"},
        {"\xD3\xC1\xD3 \xDA\xDB", "\xD3\xC1\xD3 \xDA\xDB", "\xF3\xE1\xF3 \xFA\xFB", "\xD3\xE1\xF3 \xDA\xFB"},
        {"\xC0\xE0 \xB5m \x83x", "\xC0\xE0 \xB5M \x83X", "\xC0\xE0 \xB5m \x83x", "\xC0\xE0 \xB5m \x83x"},
        {"a\tb\xA0k\xD2\xF2", "A\tB\xA0K\xD2\xD3", "a\tb\xA0k\xD2\xF2", "A\tB\xA0k\xD2\xF2"},
    };
    for (const auto& [text, upper, lower, proper] : cases) {
        EXPECT_THAT((std::array{UCase(text), LCase(text), ProperCase(text)}),
                    ElementsAre(upper, lower, proper));
        EXPECT_TRUE(EqualText(text, upper));
        EXPECT_EQ(CompareText(upper, text), 0);
        const std::unordered_map<string, int, TextHash, TextEqual> table = {{string(text), 1}, {"Other", 2}};
        EXPECT_EQ(table.find(upper)->second, 1);
    }
    EXPECT_LT(CompareText("Anna", "bert"), 0);
    EXPECT_GT(CompareText("annab", "ANNA"), 0);
    EXPECT_FALSE(EqualText("\xDC", "\xE1"));
}

TEST(Searching, CountsFromOne) {
    using Row = std::tuple<string_view, string_view, std::size_t, std::size_t, std::size_t, std::size_t>;
    for (const auto& [text, what, start, exact, asText, last] :
         {Row("one@Two@", "two@", 1, 0, 5, 0), Row("aXbX", "X", 3, 4, 4, 4), Row("abc", "", 2, 2, 2, 3),
          Row("", "", 1, 0, 0, 0), Row("abc", "c", 4, 0, 0, 3), Row("\xF3", "\xD3", 1, 0, 1, 0),
          Row("ab", "abc", 1, 0, 0, 0)}) {
        EXPECT_EQ(InStr(text, what, Compare::Binary, start), exact) << text;
        EXPECT_EQ(InStr(text, what, Compare::Text, start), asText) << text;
        EXPECT_EQ(InStrRev(text, what), last) << text;
    }
    EXPECT_EQ(InStrRev("aXbxc", "X", Compare::Text), 4U);
    EXPECT_EQ(faultOf([] { InStr("a", "a", Compare::Binary, 0); }), 5);
}

TEST(Replace, GoesOnBehindTheNewText) {
    EXPECT_EQ(Replace("a--b--", "--", "---"), "a---b---");
    EXPECT_EQ(Replace("    ", "  ", " "), "  ");
    EXPECT_EQ(Replace("aaa", "aa", ""), "a");
    EXPECT_EQ(Replace("Text text", "text", "x"), "Text x");
    EXPECT_EQ(Replace("Text t\xD3 TEXT", "TEXT", "x", Compare::Text), "x t\xD3 x");
    EXPECT_EQ(Replace("same", "", "x") + Replace("", "a", "x"), "same");
}

TEST(Split, CutsAtEachSeparatorUpToTheLimit) {
    const std::tuple<string_view, string_view, int, std::vector<string>> cases[] = {
        {"", " ", -1, {}},
        {" a  b ", " ", -1, {"", "a", "", "b", ""}},
        {"a b c", " ", 2, {"a", "b c"}},
        {"a b c", " ", 1, {"a b c"}},
        {"a b c", " ", 0, {}},
        {"a|b|", "|", 6, {"a", "b", ""}},
        {"a: b: c", ": ", 2, {"a", "b: c"}},
        {"a\r\nb\r\n", "\r\n", -1, {"a", "b", ""}},
        {"abc", "", -1, {"abc"}},
        {{"a\0b", 3}, {"\0", 1}, -1, {"a", "b"}}};
    std::vector<string_view> again = {"left", "over", "from", "the", "last", "line"};
    for (const auto& [text, separator, limit, pieces] : cases) {
        EXPECT_EQ(Split(text, separator, limit), pieces) << text;
        splitInto(again, text, separator, limit);
        EXPECT_EQ(std::vector<string>(again.begin(), again.end()), pieces) << text;
        EXPECT_EQ(Join(pieces, separator), limit == 0 ? "" : text);
    }
    EXPECT_THAT(Split("1x2X3", "X", -1, Compare::Text), ElementsAre("1", "2", "3"));
    EXPECT_EQ(faultOf([] { Split("a", " ", -2); }), 5);
    EXPECT_EQ(elementOf(Split("a b"), 1), "b");
    EXPECT_EQ(faultOf([] { elementOf(Split("a b"), 2); }), 9);
}

TEST(Cutting, IsCheckedAndTrimsBlanksOnly) {
    EXPECT_EQ(Trim("  \ta b\xA0 ") + Trim("   "), "\ta b\xA0");
    EXPECT_EQ(LTrim("  a ") + RTrim("  b "), "a   b");
    EXPECT_EQ(Left("abc", 2) + Left("abc", 9) + Left("abc", 0), "ababc");
    EXPECT_EQ(Right("abc", 2) + Right("abc", 9) + Right("abc", 0), "bcabc");
    EXPECT_EQ(Mid("abc", 2) + Mid("abc", 4) + Mid("abc", 99, 1) + Mid("abc", 1, 2) + Mid("abc", 3, 9),
              "bcabc");
    EXPECT_EQ(Chr(0) + Chr(Asc("\xFF!")), string("\0\xFF", 2));
    const std::function<void()> wrong[] = {
        [] { Left("a", -1); },   [] { Right("a", -1); }, [] { Mid("a", 0); }, [] { Mid("a", INT64_MIN); },
        [] { Mid("a", 1, -1); }, [] { Asc(""); },        [] { Chr(256); },    [] { Chr(-1); }};
    for (const auto& call : wrong) EXPECT_EQ(faultOf(call), 5);
}

TEST(Numbers, AreReadFromTheBeginningOfAText) {
    for (const auto& [text, value] :
         {Number("001", 1), Number("1e3", 1000), Number(" 12", 12), Number("12 ", 12), Number("+.5", 0.5),
          Number("5.", 5), Number("2d-2", 0.02), Number("0000.0005", 0.0005), Number("\t7", 7),
          Number("&HFF", 255), Number("&hfFFF", -1), Number("&HFFFF&", 65535), Number("&O17", 15),
          Number("&HFFFFFFFF", -1), Number("1e-999999999999", 0), Number("0e999", 0),
          Number("9007199254740993", 9007199254740992), Number("123456789012345678", 123456789012345680.0)}) {
        EXPECT_EQ(Val(text), value) << text;
        EXPECT_TRUE(IsNumeric(text)) << text;
        EXPECT_EQ(CDbl(text), value) << text;
    }
    for (const auto& [text, value] :
         {Number("", 0), Number("abc", 0), Number("1 6 15th", 1615), Number("- 7", -7),
          Number("-5.25x", -5.25), Number(".", 0), Number("-", 0), Number("1.2.3", 1.2), Number("1e", 1),
          Number("e3", 0), Number("1,5", 1), Number("&H1Z", 1), Number("&HZZ", 0), Number("&H", 0),
          Number("\xB2", 0), Number("12%", 12), Number("0x10", 0), Number("inf", 0)}) {
        EXPECT_EQ(Val(text), value) << text;
        EXPECT_FALSE(IsNumeric(text)) << text;
        EXPECT_EQ(faultOf([bad = text] { CDbl(bad); }), 13) << text;
    }
    EXPECT_EQ(Val('1' + string(200, '0')), 1e200);
    EXPECT_EQ(Val("0." + string(100000, '0') + '1'), 0);
    EXPECT_EQ(Val("1" + string(2000, '7') + "e-2000"), 1.7777777777777777);
    for (const string& large : {string("1e309"), string(100000, '9'), string("&H100000000")})
        EXPECT_EQ(faultOf([&] { Val(large); }), 6);
}

TEST(Numbers, AreWrittenWithASignOrABlank) {
    for (const auto& [text, value] :
         {Number(" 0", 0), Number(" 0", -0.0), Number(" 12", 12), Number("-12.5", -12.5), Number(" .5", 0.5),
          Number("-.25", -0.25), Number(" .3", 0.1 + 0.2), Number(" 123456789012345", 123456789012345),
          Number(" 1E+15", 1e15), Number(" 1E-05", 0.00001), Number(" .666666666666667", 2.0 / 3)})
        EXPECT_EQ(Str(value), text);
    EXPECT_EQ(CStr(-0.25) + CStr(12) + CStr(0.5), "-0.25120.5");
    EXPECT_EQ(CStr(0.1F) + Str(0.1F) + CStr(1e7F), "0.1 .11E+07");
    EXPECT_EQ(Str(0) + Str(7) + Str(-7) + CStr(INT64_MIN), " 0 7-7-9223372036854775808");
    EXPECT_EQ(Hex(0) + ' ' + Hex(0x1A) + ' ' + Hex(65535) + ' ' + Hex(-1), "0 1A FFFF FFFFFFFF");
    for (const auto& [text, value] :
         {Number("0.00", 0), Number("1.13", 1152.0 / 1024), Number("1.01", 1.005), Number("-1.13", -1.125),
          Number("0.00", -0.004), Number("0.01", 0.005), Number("1000.00", 999.995),
          Number("0.00", 0.0000001), Number("10000000000000000.00", 1e16)})
        EXPECT_EQ(FormatTwoDecimals(value), text) << value;
}

TEST(Numbers, RoundHalfToEvenAndOverflow) {
    using Row = std::pair<double, int>;
    for (const auto& [value, rounded] :
         {Row(0.5, 0), Row(1.5, 2), Row(2.5, 2), Row(-0.5, 0), Row(-1.5, -2), Row(-2.5, -2),
          Row(0.49999999999999994, 0), Row(32767.4999, 32767), Row(-32768.5, -32768)}) {
        EXPECT_EQ(CInt(value), rounded);
        EXPECT_EQ(CLng(value), rounded);
    }
    EXPECT_EQ(CByte("254.5"), 254);
    EXPECT_EQ(CLng(2147483647.4), 2147483647);
    const std::function<void()> tooLarge[] = {
        [] { CInt(328 * 100); },    [] { CInt(32767.5); }, [] { CInt(-32768.6); },     [] { CInt("40000"); },
        [] { CLng(2147483647.5); }, [] { CLng(1e300); },   [] { CLng(INT64_MAX); },    [] { CByte(-1); },
        [] { CByte(255.5); },       [] { CLng("1e400"); }, [] { CLng(std::nan("")); }, [] { CByte(256U); }};
    for (const auto& call : tooLarge) EXPECT_EQ(faultOf(call), 6);
    for (const char* text : {"", "x", "1x", "1 2"}) EXPECT_EQ(faultOf([&] { CInt(text); }), 13) << text;
}

TEST(Dates, AreWrittenAndReadBack) {
    const DateTime evening{2026, 11, 24, 20, 24, 28};
    EXPECT_EQ(GeneralDate(evening) + ' ' + ShortTime(evening), "24/11/2026 20:24:28 20:24");
    EXPECT_EQ(LongTime({2000, 1, 1, 1, 2, 3}), "01:02:03");
    for (const char* text : {"24/11/2026 20:24:28", "  24-11-26  8:24:28 pm ", "2026-11-24 20:24:28",
                             "11/24/2026 8:24:28 \xEC\xEC"})
        EXPECT_EQ(CDate(text), evening) << text;
    EXPECT_EQ(CDate("1.2.1999"), (DateTime{1999, 2, 1, 0, 0, 0}));
    EXPECT_EQ(CDate("29/2/2000 12:05 am"), (DateTime{2000, 2, 29, 0, 5, 0}));
    for (const char* text :
         {"", "x", "24/11", "24/11-2026", "29/2/2001", "31/4/2000", "0/1/2000", "1/1/99999", "1/1/2000 24:00",
          "1/1/2000 1:60", "1/1/2000 1", "1/1/2000 13:00 pm", "1/1/2000 1:02x", "1/1/2000_1:02", "-1/1/2000"})
        EXPECT_EQ(faultOf([&] { CDate(text); }), 13) << text;
}

TEST(Dates, DifferByTheHoursThatTheClockCrossed) {
    using Row = std::tuple<const char*, const char*, int>;
    for (const auto& [from, to, hours] :
         {Row("1/1/2000 10:59", "1/1/2000 11:00", 1), Row("1/1/2000 11:00", "1/1/2000 11:59", 0),
          Row("31/12/1999 23:59", "1/1/2000 0:00", 1), Row("1/3/2000", "28/2/2000", -48),
          Row("1/1/2000 11:00", "1/1/2000 10:59:59", -1), Row("1/1/2001", "1/1/2000", -366 * 24),
          Row("1/1/1900", "1/1/1901", 365 * 24), Row("1/1/2000", "1/1/2400", 146097 * 24)})
        EXPECT_EQ(DateDiffHours(CDate(from), CDate(to)), hours) << from;
}

}  // namespace talvora::test
