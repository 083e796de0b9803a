#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <unordered_map>

#include "platform/Text.h"

namespace talvora {
namespace {

using std::string;
using std::string_view;
using testing::ElementsAre;

// The number of the fault that `call` raises, 0 for none.
int faultOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& fault) {
        return fault.Number;
    }
    return 0;
}

TEST(Case, FollowsThePageAndNotTheLocale) {
    const struct {
        string_view text, upper, lower, proper;
    } cases[] = {
        {"", "", "", ""},
        {"#greek", "#GREEK", "#greek", "#Greek"},
        {"maria DEL mar", "MARIA DEL MAR", "maria del mar", "Maria Del Mar"},
        {"[afk]o'neil_x", "[AFK]O'NEIL_X", "[afk]o'neil_x", "[Afk]o'neil_x"},
        {"\xDC\xDD\xDE\xDF\xFC\xFD\xFE", "\xA2\xB8\xB9\xBA\xBC\xBE\xBF", "\xDC\xDD\xDE\xDF\xFC\xFD\xFE",
         "\xA2\xDD\xDE\xDF\xFC\xFD\xFE"},
        {"\xED\xDF\xEA\xEF\xF2", "\xCD\xBA\xCA\xCF\xD3", "\xED\xDF\xEA\xEF\xF2", "\xCD\xDF\xEA\xEF\xF2"},
        {"\xD3\xC1\xD3 \xDA\xDB", "\xD3\xC1\xD3 \xDA\xDB", "\xF3\xE1\xF3 \xFA\xFB", "\xD3\xE1\xF3 \xDA\xFB"},
        {"\xC0\xE0 \xB5m \x83x", "\xC0\xE0 \xB5M \x83X", "\xC0\xE0 \xB5m \x83x", "\xC0\xE0 \xB5m \x83x"},
        {"a\tb\xA0"
         "c\xD2\xF2",
         "A\tB\xA0"
         "C\xD2\xD3",
         "a\tb\xA0"
         "c\xD2\xF2",
         "A\tB\xA0"
         "c\xD2\xF2"},
    };
    for (const auto& [text, upper, lower, proper] : cases) {
        EXPECT_EQ(UCase(text), upper);
        EXPECT_EQ(LCase(text), lower);
        EXPECT_EQ(ProperCase(text), proper);
        EXPECT_TRUE(EqualText(text, upper));
        EXPECT_EQ(CompareText(upper, text), 0);
        EXPECT_EQ(TextHash()(text), TextHash()(upper));
    }
    EXPECT_LT(CompareText("Anna", "bert"), 0);
    EXPECT_GT(CompareText("annab", "ANNA"), 0);
    EXPECT_FALSE(EqualText("\xDC", "\xE1"));
}

TEST(Case, TableAsTextIsFoundWithoutACopyOfTheKey) {
    std::unordered_map<string, int, TextHash, TextEqual> table = {{"Mail\xFE", 1}, {"Other", 2}};
    EXPECT_EQ(table.find(string_view("MAIL\xBF"))->second, 1);
    EXPECT_EQ(table.find(string_view("Mail")), table.end());
}

TEST(Searching, CountsFromOne) {
    const struct {
        string_view text, what;
        std::size_t start, exact, asText, last;
    } cases[] = {{"one@Two@", "two@", 1, 0, 5, 0}, {"aXbX", "X", 3, 4, 4, 4},
                 {"abc", "", 2, 2, 2, 3},          {"", "", 1, 0, 0, 0},
                 {"abc", "c", 4, 0, 0, 3},         {"\xF3", "\xD3", 1, 0, 1, 0},
                 {"ab", "abc", 1, 0, 0, 0}};
    for (const auto& [text, what, start, exact, asText, last] : cases) {
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
    EXPECT_EQ(Replace("same", "", "x"), "same");
    EXPECT_EQ(Replace("", "a", "x"), "");
}

TEST(Split, CutsAtEachSeparatorUpToTheLimit) {
    const struct {
        string_view text, separator;
        int limit;
        std::vector<string> pieces;
    } cases[] = {{"", " ", -1, {}},
                 {"a", " ", -1, {"a"}},
                 {" a  b ", " ", -1, {"", "a", "", "b", ""}},
                 {"a b c", " ", 2, {"a", "b c"}},
                 {"a b c", " ", 1, {"a b c"}},
                 {"a b c", " ", 0, {}},
                 {"a|b|", "|", 6, {"a", "b", ""}},
                 {"a: b: c", ": ", 2, {"a", "b: c"}},
                 {"a\r\nb\r\n", "\r\n", -1, {"a", "b", ""}},
                 {"abc", "", -1, {"abc"}}};
    std::vector<string> again = {"left", "over", "from", "the", "last", "line"};
    std::vector<string_view> views = {"left"};
    for (const auto& [text, separator, limit, pieces] : cases) {
        EXPECT_EQ(Split(text, separator, limit), pieces) << text;
        splitInto(again, text, separator, limit);
        EXPECT_EQ(again, pieces) << text;
        splitInto(views, text, separator, limit);
        EXPECT_EQ(std::vector<string>(views.begin(), views.end()), pieces) << text;
        if (limit == -1) {
            EXPECT_EQ(Join(pieces, separator), text);
        }
    }
    EXPECT_THAT(Split("1x2X3", "X", -1, Compare::Text), ElementsAre("1", "2", "3"));
    EXPECT_THAT(Split(string_view("a\0b", 3), string_view("\0", 1)), ElementsAre("a", "b"));
    EXPECT_EQ(faultOf([] { Split("a", " ", -2); }), 5);
    EXPECT_EQ(elementOf(Split("a b"), 1), "b");
    EXPECT_EQ(faultOf([] { elementOf(Split("a b"), 2); }), 9);
}

TEST(Cutting, IsCheckedAndTrimsBlanksOnly) {
    EXPECT_EQ(Trim("  \ta b\xA0 "), "\ta b\xA0");
    EXPECT_EQ(LTrim("  a "), "a ");
    EXPECT_EQ(RTrim("  a "), "  a");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Left("abc", 2) + Left("abc", 9) + Left("abc", 0), "ababc");
    EXPECT_EQ(Right("abc", 2) + Right("abc", 9) + Right("abc", 0), "bcabc");
    EXPECT_EQ(Mid("abc", 2) + Mid("abc", 4) + Mid("abc", 99, 1) + Mid("abc", 1, 2) + Mid("abc", 3, 9),
              "bcabc");
    EXPECT_EQ(Asc("\xFF!"), 255);
    EXPECT_EQ(Chr(0) + Chr(255), string("\0\xFF", 2));
    const std::function<void()> wrong[] = {
        [] { Left("a", -1); },   [] { Right("a", -1); }, [] { Mid("a", 0); }, [] { Mid("a", INT64_MIN); },
        [] { Mid("a", 1, -1); }, [] { Asc(""); },        [] { Chr(256); },    [] { Chr(-1); }};
    for (const auto& call : wrong) EXPECT_EQ(faultOf(call), 5);
}

TEST(Numbers, AreReadFromTheBeginningOfAText) {
    const struct {
        string_view text;
        double value;
        bool numeric;
    } cases[] = {
        {"", 0, false},
        {"abc", 0, false},
        {"001", 1, true},
        {"1e3", 1000, true},
        {" 12", 12, true},
        {"12 ", 12, true},
        {"1 6 15th", 1615, false},
        {"-5.25x", -5.25, false},
        {"+.5", 0.5, true},
        {"5.", 5, true},
        {".", 0, false},
        {"-", 0, false},
        {"1.2.3", 1.2, false},
        {"1e", 1, false},
        {"2d-2", 0.02, true},
        {"- 7", -7, false},
        {"e3", 0, false},
        {"0000.0005", 0.0005, true},
        {"1,5", 1, false},
        {"\t7", 7, true},
        {"&HFF", 255, true},
        {"&hfFFF", -1, true},
        {"&HFFFF&", 65535, true},
        {"&O17", 15, true},
        {"&H1Z", 1, false},
        {"&HZZ", 0, false},
        {"&HFFFFFFFF", -1, true},
        {"&H", 0, false},
        {"1e-999999999999", 0, true},
        {"0e999", 0, true},
        {"9007199254740993", 9007199254740992, true},
        {"\xB2", 0, false},
        {"12%", 12, false},
        {"0x10", 0, false},
        {"inf", 0, false},
        {"123456789012345678", 123456789012345680.0, true},
    };
    for (const auto& [text, value, numeric] : cases) {
        EXPECT_EQ(Val(text), value) << text;
        EXPECT_EQ(IsNumeric(text), numeric) << text;
        if (numeric) {
            EXPECT_EQ(CDbl(text), value) << text;
        } else {
            EXPECT_EQ(faultOf([bad = text] { CDbl(bad); }), 13) << text;
        }
    }
    EXPECT_EQ(Val('1' + string(200, '0')), 1e200);
    EXPECT_EQ(Val("0." + string(100000, '0') + '1'), 0);
    EXPECT_EQ(Val("1" + string(2000, '7') + "e-2000"), 1.7777777777777777);
    for (const string& large : {string("1e309"), string(100000, '9'), string("&H100000000")})
        EXPECT_EQ(faultOf([&] { Val(large); }), 6);
}

TEST(Numbers, AreWrittenWithASignOrABlank) {
    const struct {
        double value;
        const char *plain, *withBlank;
    } cases[] = {{0, "0", " 0"},
                 {-0.0, "0", " 0"},
                 {12, "12", " 12"},
                 {-12.5, "-12.5", "-12.5"},
                 {0.5, "0.5", " .5"},
                 {-0.25, "-0.25", "-.25"},
                 {0.1 + 0.2, "0.3", " .3"},
                 {123456789012345, "123456789012345", " 123456789012345"},
                 {1e15, "1E+15", " 1E+15"},
                 {0.00001, "1E-05", " 1E-05"},
                 {2.0 / 3, "0.666666666666667", " .666666666666667"}};
    for (const auto& [value, plain, withBlank] : cases) {
        EXPECT_EQ(CStr(value), plain);
        EXPECT_EQ(Str(value), withBlank);
    }
    EXPECT_EQ(CStr(0.1F) + Str(0.1F) + CStr(1e7F), "0.1 .11E+07");
    EXPECT_EQ(Str(0) + Str(7) + Str(-7) + CStr(INT64_MIN), " 0 7-7-9223372036854775808");
    EXPECT_EQ(Hex(0) + ' ' + Hex(0x1A) + ' ' + Hex(65535) + ' ' + Hex(-1), "0 1A FFFF FFFFFFFF");
}

TEST(Numbers, RoundHalfToEvenAndOverflow) {
    const struct {
        double value;
        int rounded;
    } cases[] = {{0.5, 0},
                 {1.5, 2},
                 {2.5, 2},
                 {-0.5, 0},
                 {-1.5, -2},
                 {-2.5, -2},
                 {0.49999999999999994, 0},
                 {32767.4999, 32767},
                 {-32768.5, -32768}};
    for (const auto& [value, rounded] : cases) {
        EXPECT_EQ(CInt(value), rounded);
        EXPECT_EQ(CLng(value), rounded);
        EXPECT_EQ(CLng(CStr(value)), CLng(Val(CStr(value))));
    }
    EXPECT_EQ(CByte("254.5"), 254);
    EXPECT_EQ(CLng(2147483647.4), 2147483647);
    EXPECT_EQ(CInt(327 * 100), 32700);
    const std::function<void()> tooLarge[] = {
        [] { CInt(328 * 100); },    [] { CInt(32767.5); }, [] { CInt(-32768.6); },     [] { CInt("40000"); },
        [] { CLng(2147483647.5); }, [] { CLng(1e300); },   [] { CLng(INT64_MAX); },    [] { CByte(-1); },
        [] { CByte(255.5); },       [] { CLng("1e400"); }, [] { CLng(std::nan("")); }, [] { CByte(256U); }};
    for (const auto& call : tooLarge) EXPECT_EQ(faultOf(call), 6);
    for (const char* text : {"", "x", "1x", "1 2"}) EXPECT_EQ(faultOf([&] { CInt(text); }), 13) << text;
}

TEST(Numbers, ShowTwoDecimals) {
    const struct {
        double value;
        const char* text;
    } cases[] = {{0, "0.00"},
                 {1025.0 / 1024, "1.00"},
                 {1152.0 / 1024, "1.13"},
                 {1.005, "1.01"},
                 {-1.125, "-1.13"},
                 {0.004, "0.00"},
                 {-0.004, "0.00"},
                 {0.005, "0.01"},
                 {999.995, "1000.00"},
                 {0.0000001, "0.00"},
                 {1e16, "10000000000000000.00"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(FormatTwoDecimals(value), text) << value;
}

TEST(Dates, AreWrittenAndReadBack) {
    const DateTime evening{2026, 11, 24, 20, 24, 28};
    EXPECT_EQ(GeneralDate(evening), "24/11/2026 20:24:28");
    EXPECT_EQ(ShortTime(evening), "20:24");
    EXPECT_EQ(LongTime({2000, 1, 1, 1, 2, 3}), "01:02:03");
    const struct {
        const char* text;
        DateTime moment;
    } cases[] = {{"24/11/2026 20:24:28", evening},    {"  24-11-26  8:24:28 pm ", evening},
                 {"2026-11-24 20:24:28", evening},    {"11/24/2026 8:24:28 \xEC\xEC", evening},
                 {"1.2.1999", {1999, 2, 1, 0, 0, 0}}, {"29/2/2000 12:05 am", {2000, 2, 29, 0, 5, 0}}};
    for (const auto& [text, moment] : cases) EXPECT_EQ(CDate(text), moment) << text;
    for (const char* text :
         {"", "x", "24/11", "24/11-2026", "29/2/2001", "31/4/2000", "0/1/2000", "1/1/99999", "1/1/2000 24:00",
          "1/1/2000 1:60", "1/1/2000 1", "1/1/2000 13:00 pm", "1/1/2000 1:02x", "1/1/2000_1:02", "-1/1/2000"})
        EXPECT_EQ(faultOf([&] { CDate(text); }), 13) << text;
}

TEST(Dates, DifferByTheHoursThatTheClockCrossed) {
    const struct {
        const char *from, *to;
        int hours;
    } cases[] = {{"1/1/2000 10:59", "1/1/2000 11:00", 1},     {"1/1/2000 11:00", "1/1/2000 11:59", 0},
                 {"31/12/1999 23:59", "1/1/2000 0:00", 1},    {"1/3/2000", "28/2/2000", -48},
                 {"1/1/2000 11:00", "1/1/2000 10:59:59", -1}, {"1/1/2001", "1/1/2000", -366 * 24},
                 {"1/1/1900", "1/1/1901", 365 * 24},          {"1/1/2000", "1/1/2400", 146097 * 24}};
    for (const auto& [from, to, hours] : cases)
        EXPECT_EQ(DateDiffHours(CDate(from), CDate(to)), hours) << from;
}

}  // namespace
}  // namespace talvora
