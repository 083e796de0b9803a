// The adapter as a whole: cuts of the stream, the plain profile, encodings, bounds.
#include <random>

#include "irc/wire/WireWorld.h"

namespace talvora::test {
namespace {

const std::string story =
    ":S NOTICE * :*** Looking up your hostname\r\n"  // H
    "@t=1 :S 001 Nikolaos :Welcome Nikolaos!~N@h\r\n:Nikolaos!~N@h JOIN #thes\n"
    "\r\n\n:S 353 Nikolaos = #thes :%Maria\r\n:x!y@z PRIVMSG #thes :\xCE\xB1\xCE\xB2\xE2\x82\xAC\xFF\r"
    ":S 366 Nikolaos #thes :End\r\n:x!y@z MODE #thes +vk-o Maria k Eleni\r\n\xE2\x82\r\n:S 404 N #thes "
    ":no\r\n"
    ":S 311 Nikolaos M u a::b * :\xC3\xA9\r\n:S 318 Nikolaos M :End\r\nPING x\r\nPING\r\n:x PRIVMSG a :\r\n";

// What the engine reads of the story, cut by `length`.
template <class Length>
std::string engineReads(const WireProfile& profile, Length length) {
    WireWorld world(profile);
    world.sends("NICK Nikos|");
    std::string read;
    for (std::size_t at = 0, size = 0; at < story.size(); at += size) {
        size = length();
        world.adapter.fromServer(std::string_view(story).substr(at, size), read);
    }
    return read;
}

TEST(WireAdapter, ReadsTheSameHoweverTheStreamIsCut) {
    for (const auto* value : {"plain", "standard", "plain +names", "standard -one-reply-at-a-time"}) {
        for (const auto encoding : {Encoding::CP1253, Encoding::UTF8}) {
            const auto profile = dialect(value, encoding);
            const auto whole = engineReads(profile, [] { return story.size(); });
            EXPECT_EQ(engineReads(profile, [] { return std::size_t{1}; }), whole) << value;
            std::mt19937 random(7);
            for (int i = 0; i < 50; ++i)
                EXPECT_EQ(engineReads(profile, [&] { return random() % 40 + 1; }), whole) << value;
        }
    }
}

TEST(WireAdapter, InThePlainProfilePassesEveryByteAtOnce) {
    WireAdapter adapter{WireProfile::plain()};
    std::string all;
    std::string toEngine;
    std::string toServer;
    for (int i = 0; i < 3 * 256; ++i) {
        all += static_cast<char>(i * 7);
        adapter.fromServer({&all.back(), 1}, toEngine);
        adapter.fromEngine({&all.back(), 1}, 0, toServer, toEngine);
        ASSERT_TRUE(toEngine == all && toServer == all) << i;
    }
}

TEST(WireAdapter, EndsLinesAtCROrLFOrBoth) {
    WireWorld world("plain +names");
    EXPECT_EQ(world.says("PING :a\nPING :b\rPING :c\r"), "PING :a|PING :b|PING :c|");
    EXPECT_EQ(world.says("\nPING :d"), "");
    EXPECT_EQ(world.says(std::string(1, '\0') + "\n||"), std::string("PING :d\0|||", 11));
    EXPECT_EQ(world.sends("a\rb\n\rc|"), "a|b||c|");
}

TEST(WireAdapter, ConvertsUTF8InBothDirections) {
    WireWorld world(dialect("plain", Encoding::UTF8));
    EXPECT_EQ(world.says("\xCE\xB1\xE2\x82\xAC|\xCE|\xC3\xA9|\xE4\xB8\xAD|\xC0\x8A|"),
              "\xE1\x80|\xCE|e|?|\xC0\x8A|");
    for (int code = 0x80; code < 0x100; ++code) {
        const auto text = "x :" + std::string(1, static_cast<char>(code)) + "|";
        EXPECT_EQ(world.says(world.sends(text)), text);
    }
}

TEST(WireAdapter, BoundsAnUnfinishedLineOfEitherEnd) {
    const std::string longest(LongestLine, 'x');
    for (const auto* value : {"plain", "standard", "plain +names"}) {
        WireWorld world(value);
        world.says(longest);
        EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::None) << value;
        EXPECT_EQ(world.says("y|PING :a|") + world.says("PING :b|"), "") << value;
        EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::LineTooLong) << value;
        world.adapter.connectionStarted();
        EXPECT_EQ(world.says("PING :d|" + longest + "x|"), "PING :d|") << value;
    }
    EXPECT_EQ(WireWorld("standard -length").sends(longest + longest + "|"), longest + "|");
}

TEST(WireAdapter, SurvivesTheContradictionsOfAHostileServer) {
    WireWorld world("standard +pacing +password-first");
    for (const std::string start : {"", ":S ", ":Nikos!@ ", ":!@ ", ": ", "::", " "})
        for (const std::string word : {"001", "005", "266", "311", "318", "352", "353", "366", "396", "404",
                                       "JOIN", "PART", "KICK", "MODE", "NICK", "NOTICE", ":", ""})
            for (const auto* rest : {"|", " |", " :|", " Nikos|", " Nikos :|", " * :x|", " # :|", " #a +ooo|",
                                     " #a : +o|", " a PREFIX=( CHANMODES=,,,,,|", " :::9|"})
                world.says(world.sends(start + word + rest) + start + word + rest);
    EXPECT_EQ(world.adapter.overflow(), WireAdapter::Overflow::None);
    EXPECT_EQ(world.says(":x!y@z PRIVMSG #a :hello|"), ":x!y@z PRIVMSG #a :hello|");
}

TEST(WireProfile, IsReadFromADialectOrLeftAsItWas) {
    auto profile = dialect(" Standard, +PACING -rejoin", Encoding::UTF8);
    const auto before = profile.Rewrites;
    EXPECT_TRUE(profile.has(Rewrite::Pacing) && !profile.has(Rewrite::Rejoin) && profile.has(Rewrite::Names));
    for (const auto* wrong :
         {"", "+names", "standard names", "standard +", "standard ++names", "plain +name"}) {
        EXPECT_NE(parseDialect(wrong, profile).value_or("").find("one-reply-at-a-time"), std::string::npos);
        EXPECT_EQ(profile.Rewrites, before) << wrong;
    }
    EXPECT_EQ(parseDialect("plain", profile), std::nullopt);
    EXPECT_FALSE(profile.isPlain());  // the encoding stays as it was
}

}  // namespace
}  // namespace talvora::test
