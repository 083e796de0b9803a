// Strangers in the place of either side: whatever they send, nothing is written or deleted that the user has
// not allowed, nobody is asked without end, and the next honest transfer works.
#include "transfer/TransferRig.h"

namespace talvora::test {
namespace {

std::string many(const std::string& message, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += framed(message);
    return all;
}

TEST_F(TransferTest, NothingOfAStrangerReachesTheDiskBeforeAccept) {
    const Texts before = b.around.disk.paths();
    for (const char* name : {"old.txt", "..\\x", "new.txt"}) {
        b.around.questions.answerFaults(Answer::Ignore);
        const std::size_t asked = b.around.questions.asked.size();
        b.around.questions.willAnswer(Answer::Ok);
        {
            Stranger stranger(world, b);
            stranger.says(framed("Cx 1") + many(std::string("S3 ") + name, 1000) + many("Dabc", 1000));
            EXPECT_TRUE(stranger.connected());
        }
        world.time.run(100ms);  // the connection is lost, and KillPartial finds nothing that it may take
        EXPECT_EQ(b.around.questions.asked.size() - asked, 2U);
        EXPECT_THAT(b.around.questions.asked[asked], HasSubstr("Number:70"));
    }
    EXPECT_EQ(b.around.disk.paths(), before);
    EXPECT_EQ(received("old.txt"), "old");
    EXPECT_TRUE(goesWell());
}

TEST_F(TransferTest, AFileReceivedEarlierGoesToTheWasteWithTheNextAbort) {
    EXPECT_TRUE(goesWell());
    {
        b.around.questions.willAnswer(Answer::Ok);
        Stranger(world, b).says(framed("Cx 1"));  // and leaves: his word deletes nothing
        world.time.run(100ms);
        EXPECT_NE(received("honest.txt"), "(none)");
    }
    offer("next");
    a.around.questions.willAnswer(Answer::Ok);
    receiver().Command1.Click.raise();
    world.time.run(6s);
    EXPECT_EQ(received("honest.txt"), "(none)");
    EXPECT_EQ(wasted(), 1U);
    EXPECT_EQ(outcomes(b).back(), "Received; it is in the waste basket");
    b.around.disk.put("Received/honest.txt", "had back");
    world.time.run(30s);  // Timer3 goes on, and takes no other file of that name
    EXPECT_EQ(received("honest.txt"), "had back");
}

TEST_F(TransferTest, NamesStayInTheFolderAndAreShownAsTheyAreStored) {
    b.around.disk.makeLink("Received/link.txt", "../System/perflix.lst");
    b.around.disk.put("Received/sub/x", "");
    b.around.disk.put("Received/\xCE\x91.txt", "alpha");  // in capitals
    struct Case {
        std::string name, stored, shown;
    };
    const Case cases[] = {
        {"plain.txt", "plain.txt", ""},
        {"OLD.txt", "old.txt", "It is stored as \"old.txt\"."},
        {"sub\\in.txt", "sub/in.txt", ""},
        {"\xE1.txt", "\xCE\x91.txt", "It is stored as \"\xC1.txt\"."},
        {std::string(255, 'n'), std::string(255, 'n'), ""},
        {"..\\up.txt", "", "can't be stored"},
        {"link.txt", "", "can't be stored"},
        {"a/b", "", "can't be stored"},
        {"C:\\x", "", "can't be stored"},
        {"bell\a.txt", "", "can't be stored"},
        {"gone\\x", "", "can't be stored"},
        {std::string(70'000, 'n'), "", "can't be stored"},
    };
    b.around.questions.answerFaults(Answer::Ignore);
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name.substr(0, 20));
        for (int box = 0; box < 2; ++box) b.around.questions.willAnswer(Answer::Ok);
        Stranger stranger(world, b);
        stranger.says(framed("Cx 2"));
        receiver().Command2.Click.raise();
        stranger.says(framed("S3 " + one.name));
        EXPECT_THAT(receiver().lblStored.Caption.get(), HasSubstr(one.shown));
        EXPECT_LE(receiver().Label2.Caption.get().size(), 258U);
        stranger.says(framed("Dabc"));
        if (!one.stored.empty()) EXPECT_EQ(received(one.stored), "abc");
        stranger.says(framed("X"));
        stranger.socket.Close();
        world.time.run(100ms);
    }
    for (const std::string& path : b.around.disk.paths())
        EXPECT_THAT(path, testing::MatchesRegex("(Received|\\.waste|System|Mail)/.*"));
    EXPECT_THAT(*b.around.disk.content("System/perflix.lst"), testing::StartsWith("DND|"));
    EXPECT_TRUE(goesWell());
}

TEST_F(TransferTest, AnEndlessStreamATrickleAndSilenceEnd) {
    {
        b.around.questions.willAnswer(Answer::Ok);
        Stranger flood(world, b);
        for (int i = 0; i < 40 && flood.connected(); ++i) flood.says(std::string(1 << 20, 'C'));
        EXPECT_FALSE(flood.connected());
        EXPECT_THAT(b.around.questions.asked.back(), HasSubstr("no end"));
    }
    Stranger silent(world, b);
    world.time.run(10s);
    EXPECT_EQ(silent.heard, framed("X"));
    EXPECT_FALSE(silent.connected());
    b.around.questions.willAnswer(Answer::Ok);
    Stranger trickle(world, b);
    trickle.says(framed("Cx 1"));
    for (int i = 0; i < 10 && trickle.connected(); ++i) {
        trickle.says("D");
        world.time.run(10s);
    }
    EXPECT_FALSE(trickle.connected());
    EXPECT_THAT(b.around.questions.asked.back(), HasSubstr("did not respond"));
    EXPECT_EQ(outcomes(b).front(), "Not accepted in time");
    EXPECT_FALSE(receiver().Visible);
    // What the trickle has left is the beginning of the next connection's first message, which is lost.
    Stranger next(world, b);
    next.says(framed("Cy 1"));
    EXPECT_FALSE(receiver().Visible);
    next.socket.Close();
    world.time.run(1s);
    EXPECT_TRUE(goesWell());
}

TEST_F(TransferTest, DelimitersAreLookedForInTheNewestChunk) {
    Stranger stranger(world, b);
    const std::string whole = framed("Cx 1");
    stranger.says(whole.substr(0, 6));
    stranger.says(whole.substr(6));
    EXPECT_FALSE(receiver().Visible) << "two chunks share it";
    stranger.says(framed(""));
    EXPECT_TRUE(receiver().Visible) << "a later chunk has a whole one";
    receiver().Command2.Click.raise();
    stranger.says(framed("S20 cut.txt"));
    stranger.says("Dfirst" + std::string(TransferStream::Delimiter) + framed("second"));  // in the block
    EXPECT_EQ(received("cut.txt"), "first");
    EXPECT_EQ(stranger.heard, framed("W") + framed("G1") + framed("G6"));
    b.around.questions.answerFaults(Answer::Ignore);
    const std::size_t asked = b.around.questions.asked.size();
    for (int i = 0; i < 100; ++i) stranger.says(framed("?") + "D");  // the second message is cut
    EXPECT_EQ(b.around.questions.asked.size(), asked + 1);
}

TEST_F(TransferTest, NumbersBeyondReasonAreFaultsOrDoNothing) {
    b.around.questions.answerFaults(Answer::Abort);
    for (const char* message : {"Cx 99999999999", "Cx", "C", "Cx -5"}) {
        b.around.questions.willAnswer(Answer::Ok);
        Stranger(world, b).says(many(message, 50) + framed("X"));
        world.time.run(1s);
    }
    EXPECT_LE(b.around.questions.asked.size(), 10U);
    b.around.questions = {};
    b.around.questions.answerFaults(Answer::Abort);
    for (const char* size : {"-7", "99999999999", "2147483647", "x"}) {
        for (int box = 0; box < 2; ++box) b.around.questions.willAnswer(Answer::Ok);
        Stranger stranger(world, b);
        stranger.says(framed("Cx 9"));
        receiver().Command2.Click.raise();
        stranger.says(many(std::string("S") + size + " s.txt", 3) + many("Dabc", 20));
        EXPECT_LE(received("s.txt").size(), 60U);
        stranger.says(framed("X"));
        stranger.socket.Close();
        world.time.run(1s);
    }
    EXPECT_TRUE(goesWell());
}

TEST_F(TransferTest, AReceiverMayAskForAnything) {
    ScriptedServer& evil = world.network.server("evil", TransferPort);
    a.around.questions.answerFaults(Answer::Abort);
    a.around.disk.picked["/home/anna/f"] = std::string(3000, 'f');
    offer(Texts{"/home/anna/f"}, "evil");
    EXPECT_EQ(evil.transcript, framed("CAnna 1"));
    evil.sends(many("G1", 1000) + framed("Q") + framed(""));  // before W: one report
    world.time.run(100ms);
    EXPECT_EQ(a.around.questions.asked.size(), 1U);
    evil.sends(framed("W"));
    world.time.run(100ms);
    evil.transcript.clear();
    evil.sends(many("G-3", 100) + many("G0", 100));
    evil.sends(many("G99999999999999", 100));
    evil.sends(framed("G2001"));
    world.time.run(100ms);
    evil.sends(framed("G2000000000"));
    world.time.run(100ms);
    EXPECT_EQ(evil.transcript, framed("D" + std::string(1000, 'f') + std::string(24, ' ')) +
                                   framed("D" + std::string(1024, ' ')));
    EXPECT_LE(a.around.questions.asked.size(), 3U);
    evil.sends(framed("G1"));
    world.time.run(100ms);
    a.around.questions.answerFaults(Answer::Ignore);
    a.around.disk.failAt(0, EIO);
    evil.transcript.clear();
    evil.sends(framed("G1"));
    world.time.run(100ms);
    EXPECT_EQ(evil.transcript, framed("D" + std::string(1024, ' '))) << "nothing of what was sent before";
    a.around.questions.answerFaults(Answer::Abort);
    evil.whenHeard = [&] { evil.transcript.clear(); };
    evil.sends(many("G1", 20'000));
    evil.sends(many("F", 100'000));
    evil.sends(many("A", 1000) + "rest");
    world.time.run(1s);
    EXPECT_EQ(sender(), nullptr);
    EXPECT_TRUE(goesWell());
}

TEST_F(TransferTest, AFullDiskIsReportedAndEndsByTheWatchdogs) {
    offer(std::string(8192, 'x'));
    receiver().Command2.Click.raise();
    b.around.disk.refuseChanges(ENOSPC, 9);
    b.around.questions.willAnswer(Answer::Abort);
    b.around.questions.willAnswer(Answer::Ok);
    a.around.questions.willAnswer(Answer::Ok);
    world.time.run(61s);
    EXPECT_THAT(b.around.questions.asked, Contains(HasSubstr("Number:61")));
    EXPECT_THAT(received(), testing::StartsWith("xxx"));
    EXPECT_THAT(outcomes(b), ElementsAre("The connection was lost")) << "the sender did not wait longer";
    b.around.disk.refuseChanges(0);
    sender()->Unload();
    world.time.run(1s);
    EXPECT_TRUE(goesWell());
}

}  // namespace
}  // namespace talvora::test
