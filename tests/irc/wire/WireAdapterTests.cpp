// The adapter as a whole: cuts of the stream, the plain profile, encodings, bounds.
#include <gtest/gtest.h>

#include <random>

#include "irc/wire/WireWorld.h"

namespace talvora::test {
namespace {

const std::string story =
    ":S NOTICE * :*** Looking up your hostname\r\n"  // H
    "@t=1 :S 001 Nikolaos :Welcome Nikolaos!~N@h\r\n:Nikolaos!~N@h JOIN #thes\n"
    "\r\n\n:S 353 Nikolaos = #thes :%Maria\r\n:x!y@z PRIVMSG #thes :\xCE\xB1\xCE\xB2\xE2\x82\xAC\xFF\r"
    ":S 366 Nikolaos #thes :End\r\n:x!y@z MODE #thes +vk-o Maria k Eleni\r\n\xE2\x82\r\n:S 404 Nikolaos "
    "#thes :no\r\n"
    ":S 311 Nikolaos M u a::b * :\xC3\xA9\r\n:S 318 Nikolaos M :End\r\nPING x\r\nPING\r\n:x PRIVMSG a :\r\n";

// Pieces of the text, cut by `length`.
template <class Length>
std::string engineReads(const WireProfile& profile, std::string_view text, Length length) {
    WireAdapter adapter(profile);
    adapter.connectionStarted();
    std::string toServer;
    std::string read;
    adapter.fromEngine("NICK Nikos\r\n", 0, toServer, read);
    while (!text.empty()) {
        const auto piece = text.substr(0, length());
        adapter.fromServer(piece, read);
        text.remove_prefix(piece.size());
    }
    return read;
}

TEST(WireAdapter, ReadsTheSameHoweverTheStreamIsCut) {
    for (const auto encoding : {Encoding::CP1253, Encoding::UTF8}) {
        for (const auto* value :
             {"plain", "standard", "plain +names +empty-text", "standard -one-reply-at-a-time"}) {
            const auto profile = dialect(value, encoding);
            const auto whole = engineReads(profile, story, [] { return story.size(); });
            EXPECT_EQ(engineReads(profile, story, [] { return std::size_t{1}; }), whole) << value;
            std::mt19937 random(7);
            for (int i = 0; i < 50; ++i) {
                EXPECT_EQ(engineReads(profile, story, [&] { return random() % 40 + 1; }), whole) << value;
            }
        }
    }
}

TEST(WireAdapter, InThePlainProfilePassesEveryByte) {
    std::string all;
    for (int i = 0; i < 3 * 256; ++i) all += static_cast<char>(i * 7);
    WireAdapter adapter{WireProfile::plain()};
    std::string toEngine;
    std::string toServer;
    for (const char c : all) {
        adapter.fromServer({&c, 1}, toEngine);
        adapter.fromEngine({&c, 1}, 0, toServer, toEngine);
        EXPECT_EQ(toEngine.back(), c);
        EXPECT_EQ(toServer.back(), c);
    }
    EXPECT_EQ(toEngine, all);
    EXPECT_EQ(toServer, all);
}

TEST(WireAdapter, EndsLinesAtCROrLFOrBoth) {
    for (const auto* value : {"standard", "plain +names"}) {
        WireWorld world(value);
        EXPECT_EQ(world.arrives("PING a\nPING :b\rPING :c\r"),
                  WireWorld(value).saysAll({"PING a", "PING :b", "PING :c"}));
        EXPECT_EQ(world.arrives("\nPING :d"), Lines{});
        EXPECT_EQ(world.arrives(std::string(1, '\0') + "\n"), Lines{std::string("PING :d\0", 8)});
    }
    // A real empty line stays one where nothing takes it away.
    EXPECT_EQ(WireWorld("plain +names").arrives("\r\n\r\n"), (Lines{"", ""}));
}

TEST(WireAdapter, ConvertsUTF8InBothDirections) {
    WireWorld world(dialect("plain", Encoding::UTF8));
    const std::vector<std::pair<std::string, std::string>> arriving{
        {"\xCE\xB1\xE2\x82\xAC", "\xE1\x80"},
        {"\xE1\xE2", "\xE1\xE2"},
        {"\xCE", "\xCE"},
        {"\xC3\xA9", "e"},
        {"\xE4\xB8\xAD", "?"},
        {"\xC0\x8A", "\xC0\x8A"},
    };
    for (const auto& [wire, text] : arriving) {
        const auto read = world.says("x :" + wire);
        ASSERT_EQ(read.size(), 1U);
        EXPECT_EQ(read[0], "x :" + text);
    }
    for (int code = 0x80; code < 0x100; ++code) {
        const auto text = "x :" + std::string(1, static_cast<char>(code));
        EXPECT_EQ(world.says(world.sends(text).at(0)), Lines{text});
    }
}

TEST(WireAdapter, BoundsAnUnfinishedLine) {
    for (const auto* value : {"plain", "standard", "plain +names"}) {
        WireWorld world(value);
        world.arrives(std::string(LongestLine, 'x'));
        EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::None) << value;
        EXPECT_EQ(world.arrives("y\r\nPING :a\r\n"), Lines{}) << value;
        EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::LineTooLong) << value;
        EXPECT_EQ(world.says("PING :b"), Lines{});
        world.adapter.connectionStarted();
        EXPECT_EQ(world.says("PING :c"), Lines{"PING :c"}) << value;
        EXPECT_EQ(world.arrives("PING :d\r\n" + std::string(LongestLine + 1, 'x') + "\r\n"), Lines{"PING :d"})
            << value;
        EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::LineTooLong) << value;
    }
}

TEST(WireAdapter, CutsAnEndlessLineOfTheEngine) {
    WireWorld world("standard -length");
    std::string toServer;
    std::string toEngine;
    for (int i = 0; i < 20; ++i)
        world.adapter.fromEngine(std::string(LongestLine / 10, 'x'), 0, toServer, toEngine);
    EXPECT_EQ(toServer, "");
    EXPECT_EQ(world.sends("y"), Lines{std::string(LongestLine, 'x')});
    EXPECT_EQ(world.sends("a\rb\n\rc"), (Lines{"a", "b", "", "c"}));
}

// Contradictions of a hostile server cost nothing.
TEST(WireAdapter, SurvivesContradictions) {
    WireWorld world("standard +pacing +password-first");
    for (const auto* line : {":S 001",
                             "001 ",
                             ":S 001 :",
                             ":S 001 * :x",
                             ":S 396",
                             ":S 005",
                             ":S 005 a PREFIX=( CHANMODES=,,,,,",
                             ":S 353",
                             ":S 366",
                             ":S 352",
                             ":S 315",
                             ":S 311",
                             ":S 318",
                             ":S 318 :",
                             ":S 404",
                             ":S 404 :",
                             ":!@ JOIN :",
                             ": JOIN",
                             ":Nikos KICK",
                             ":Nikos KICK :",
                             ":Nikos PART",
                             ":Nikos MODE",
                             ":Nikos MODE # :",
                             ":Nikos MODE #a +ooo",
                             ":x MODE #a : +o",
                             ":Nikos!@ NICK",
                             ":Nikos!@ NICK :",
                             "::",
                             ": :",
                             "  ",
                             " :",
                             ":a  b",
                             "266",
                             "266 :",
                             "266 :::9"}) {
        world.says(line);
        world.sends(line);
    }
    EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::None);
    EXPECT_EQ(world.says(":x!y@z PRIVMSG #a :hello"), Lines{":x!y@z PRIVMSG #a :hello"});
}

TEST(WireProfile, IsReadFromADialect) {
    WireProfile profile;
    profile.Encoding = Encoding::UTF8;
    EXPECT_EQ(parseDialect(" Standard, +PACING -rejoin", profile), std::nullopt);
    EXPECT_TRUE(profile.has(Rewrite::Pacing) && !profile.has(Rewrite::Rejoin) && profile.has(Rewrite::Names));
    EXPECT_FALSE(profile.has(Rewrite::PasswordFirst));
    EXPECT_EQ(profile.Encoding, Encoding::UTF8);
    for (const auto* wrong :
         {"", "+names", "standard names", "standard +", "standard ++names", "plain +name", "x"}) {
        const auto before = profile.Rewrites;
        const auto complaint = parseDialect(wrong, profile);
        ASSERT_TRUE(complaint.has_value()) << wrong;
        EXPECT_NE(complaint->find("one-reply-at-a-time"), std::string::npos);
        EXPECT_EQ(profile.Rewrites, before);
    }
    EXPECT_TRUE(dialect("plain").isPlain());
    EXPECT_FALSE(dialect("plain", Encoding::UTF8).isPlain());
}

}  // namespace
}  // namespace talvora::test
