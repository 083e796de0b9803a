#include <random>

#include "EngineFixture.h"
#include "irc/ModeCodec.h"
#include "irc/ReplyText.h"
#include "platform/Text.h"

namespace talvora::test {
namespace {

TEST(DecodeModes, ReadsLettersBehindASign) {
    struct Case {
        const char* modes;
        std::int32_t old;
        std::int32_t result;
    };
    const Case cases[] = {
        {"+ik-w", 4, 4098},
        {"+o-o", 0, 0},
        {"+l", 0, 8192},
        {"k", 5, 5},
        {"", 7, 7},
        {"+i w", 0, 2},
        {"+i +w", 0, 6},
        {"-o+o", 16, 0},
        {"+O", 0, 32},
        {"+Z-Y", 3, 3},
        {"  +v  ", 0, 64},
        {"+u", 0, 0},
        {"+aiwroOvsmnptkl", 0, 16383},
    };
    for (const Case& c : cases) EXPECT_EQ(DecodeModes(c.modes, c.old), c.result) << c.modes;
}

TEST_F(EngineTest, ModesGoOutAsAdditionsAndThenRemovals) {
    online();
    engine.SendEncodedModes(2, 4, "", "MODE me");
    engine.SendEncodedModes(8192, 0, "", "MODE #x");
    engine.ChangeChanMode("#x", 16, " Nikos ");
    engine.ChangeChanMode("#x", 4096, "key");
    EXPECT_THAT(server.heard(),
                ElementsAre("MODE me +i", "MODE me -w", "MODE #x +u", "MODE #x +o Nikos", "MODE #x +kkey"));
}

TEST_F(EngineTest, TheUserModeChangesOnlyByTheServersEcho) {
    engine.SetUserMode(2);
    EXPECT_EQ(engine.UserMode(), 0);
    online();
    engine.SetUserMode(2);
    EXPECT_EQ(engine.UserMode(), 0);
    EXPECT_THAT(server.heard(), ElementsAre("MODE me +i"));
    raisedBy(":me MODE me :+i");
    EXPECT_EQ(engine.UserMode(), 2);
}

TEST(ReplyText, CannotBeMadeToGrowBeyondItsLimit) {
    ReplyText reply;
    ASSERT_TRUE(reply.assign("{A}{A}"));
    int doublings = 0;
    while (reply.replaceAll("{A}", "{A}{A}")) ++doublings;
    EXPECT_LT(doublings, 24);
    EXPECT_LE(reply.text().size(), ReplyText::Limit);
    const std::string before = reply.text();
    EXPECT_FALSE(reply.appendLine(std::string(ReplyText::Limit, 'x')));
    EXPECT_EQ(reply.text(), before);
}

// Replacing double blanks in the whole text at every piece is what must come out.
TEST(ReplyText, NamesAreCollapsedAsIfTheWholeTextWereReplaced) {
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        ReplyText reply;
        std::string expected;
        for (int piece = 0; piece < 8; ++piece) {
            std::string names;
            for (auto n = random() % 12; n > 0; --n) names += random() % 2 == 0 ? ' ' : 'a';
            ASSERT_TRUE(reply.appendNames(names));
            if (!expected.empty()) expected += ' ';
            expected += names + ' ';
            expected = Trim(Replace(expected, "  ", " "));
            ASSERT_EQ(reply.text(), expected);
        }
    }
}

}  // namespace
}  // namespace talvora::test
