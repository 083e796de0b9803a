#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "orrery/CommandLine.h"

namespace talvora {
namespace {

using Words = std::vector<std::string>;

TEST(CommandLine, OptionsTakeTheirValueBehindABlankOrAnEqualsSign) {
    const CommandLine line = CommandLine::Parse(Words{"--headless", "--profile", "net.ini", "--config=/c",
                                                      "--data", "/d=e", "--gate=/g", "--answer", "ignore"});
    EXPECT_TRUE(line.Headless);
    EXPECT_EQ(line.Profile, "net.ini");
    EXPECT_EQ(line.Config, "/c");
    EXPECT_EQ(line.Data, "/d=e");
    EXPECT_EQ(line.Gate, "/g");
    EXPECT_EQ(line.ReportAnswer, Answer::Ignore);
    const CommandLine none = CommandLine::Parse(Words{});
    EXPECT_FALSE(none.Headless || none.Help || none.Version);
    EXPECT_EQ(none.ReportAnswer, Answer::Abort);
}

TEST(CommandLine, SettingsAreTakenInOrderAndMayHoldAnythingBehindTheEqualsSign) {
    const CommandLine line = CommandLine::Parse(Words{
        "--set", "Settings/Nickname=Μαρία", "--set", "PMSettings/TimeStamp_a/b=x=y", "--set=Settings/Pass="});
    EXPECT_THAT(line.Settings,
                testing::ElementsAre(CommandLine::Setting{"Settings", "Nickname", "\xCC\xE1\xF1\xDF\xE1"},
                                     CommandLine::Setting{"PMSettings", "TimeStamp_a/b", "x=y"},
                                     CommandLine::Setting{"Settings", "Pass", ""}));
}

TEST(CommandLine, WrongUsageIsOneLineThatNamesTheWord) {
    const struct {
        Words words;
        std::string named;
    } cases[] = {
        {{"--head"}, "unknown option --head"},
        {{"-h"}, "unknown option -h"},
        {{"--headless=1"}, "--headless takes no value"},
        {{"--headless", "file"}, "\"file\""},
        {{"--gate"}, "--gate needs a value"},
        {{"--gate="}, "--gate needs a value"},
        {{"--gate", ""}, "--gate needs a value"},
        {{"--answer", "retry"}, "\"retry\""},
        {{"--set", "Nickname=Anna"}, "SECTION/KEY=VALUE"},
        {{"--set", "/Nickname=Anna"}, "SECTION/KEY=VALUE"},
        {{"--set", "Settings/=Anna"}, "SECTION/KEY=VALUE"},
        {{"--set", "Settings/Nickname"}, "SECTION/KEY=VALUE"},
        {{"--set", "A=B/C"}, "SECTION/KEY=VALUE"},
        {{"--two\nlines"}, "--two?lines"},
    };
    for (const auto& [words, named] : cases) {
        try {
            CommandLine::Parse(words);
            ADD_FAILURE() << words.front() << " was taken";
        } catch (const UsageError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(named));
        }
    }
}

}  // namespace
}  // namespace talvora
