#include "Vocabulary.h"
#include "mail/MailRig.h"

namespace talvora::test {
namespace {

std::vector<std::string> taken(MailRig& rig) {
    return std::exchange(rig.told, {});
}

// As if the robot were told apart: its own answers are not wanted.
void says(MailRig& rig, const std::string& line) {
    rig.manager->HandleMailCmd(line);
    rig.robot.says.clear();
}

TEST(MailReception, OneMailAfterTheOtherUntilNothingWaits) {
    MailRig rig;
    rig.robot.waiting = {{17, {" one $", "two$$"}}, {18, {""}}};
    rig.manager->CheckRCVMail();
    rig.talk();
    EXPECT_THAT(taken(rig), ElementsAre("MAIL 0 0", "MAIL OK", "MAIL OK", "MAIL OK", "MAIL OK", "MAIL 0 0",
                                        "MAIL OK", "MAIL OK", "MAIL OK", "MAIL 0 0"));
    EXPECT_EQ(rig.file("i1.qrm"),
              "QRX Brindle Talvora Mail v1.0\r\nFrom: Nikos\r\nReceived Date: 14/03/2026 09:00:01\r\n"
              "Sent Date: 24/11/2026 20:24:28\r\nSubject: Dinner\r\n\r\none \r\ntwo$\r\n\r\n-- EOF --\r\n");
    EXPECT_EQ(rig.file("i1.ml"), "-");
    EXPECT_EQ(rig.status->Label7.Caption.get(), "Finished receiving messages");
    EXPECT_EQ(rig.refreshes, 2);
    EXPECT_FALSE(rig.status->tmrSendTimeout.Enabled);
}

TEST(MailReception, ACutMailGoesOnWhereItWas) {
    MailRig rig;
    says(rig, "START Nikos d 3 17 s");
    says(rig, "DUMP a");
    EXPECT_EQ(rig.stored("IncomingLine"), " 1");
    EXPECT_EQ(rig.stored("IncomingID"), " 17");
    taken(rig);
    rig.manager->CheckRCVMail();
    EXPECT_THAT(taken(rig), IsEmpty()) << "a reception runs";
    rig.time.run(std::chrono::seconds(30));
    EXPECT_EQ(rig.status->Label7.Caption.get(), "Idle");
    says(rig, "DUMP lost");  // no file is open
    EXPECT_THAT(taken(rig), IsEmpty());
    rig.manager->CheckRCVMail();
    EXPECT_THAT(taken(rig), ElementsAre("MAIL  17 1"));
    says(rig, "RESUME");
    says(rig, "DUMP b");
    EXPECT_THAT(taken(rig), ElementsAre("MAIL OK", "MAIL OK"));
    EXPECT_THAT(rig.file("i1.ml"), testing::EndsWith("\r\n\r\na\r\nb\r\n"));
    rig.manager->CancelMailSend();
    says(rig, "NOTEXIST");
    EXPECT_THAT(taken(rig), ElementsAre("MAIL 0 0"));
    EXPECT_EQ(rig.file("i1.ml"), "-");
    EXPECT_EQ(rig.around.files.List(".waste").size(), 1U) << "what the robot deletes can be had back";
    says(rig, "NOTEXIST");
    EXPECT_EQ(rig.around.questions.asked.size(), 2U);
}

TEST(MailReception, TheLine328OverflowsBehindItsWriting) {
    MailRig rig;
    says(rig, "START Nikos d 400 17 s");
    for (int line = 1; line <= 327; ++line) says(rig, "DUMP x");
    EXPECT_THAT(rig.around.questions.asked, IsEmpty());
    taken(rig);
    says(rig, "DUMP last");
    EXPECT_EQ(rig.around.questions.asked.size(), 1U);
    EXPECT_THAT(rig.around.questions.asked[0], testing::HasSubstr("Overflow"));
    EXPECT_THAT(rig.file("i1.ml"), testing::EndsWith("x\r\nlast\r\n"));
    EXPECT_EQ(rig.stored("IncomingLine"), " 327");
    EXPECT_THAT(taken(rig), IsEmpty());
}

TEST(MailReception, WrongVerbsAreAReportAtMost) {
    const std::pair<const char*, int> lines[] = {
        {"", 1},
        {"start a b 1 1 s", 0},
        {"START a b 1 1", 1},
        {"START a b 99999 1 s", 1},
        {"DUMP x", 1},
        {"SENTDONE", 1},
        {"OK", 0},
        {"SENDOK", 0},
        {"SENDERROR", 0},
        {"HELLO", 0},
        {"NOMAIL x", 0},
    };
    for (const auto& [line, reports] : lines) {
        MailRig rig;
        says(rig, line);
        EXPECT_EQ(static_cast<int>(rig.around.questions.asked.size()), reports) << line;
        EXPECT_THAT(taken(rig), IsEmpty()) << line;
    }
}

TEST(MailReception, WhatIsNotOnDiskIsNotAcknowledgedWhateverTheUserAnswers) {
    for (const Answer answer : {Answer::Abort, Answer::Ignore}) {
        MailRig rig;
        rig.around.questions.answerFaults(answer);
        says(rig, "START Nikos d 3 17 s");
        taken(rig);
        rig.around.disk.failAt(0, 28);
        says(rig, "DUMP a");
        EXPECT_THAT(taken(rig), IsEmpty());
        EXPECT_EQ(rig.stored("IncomingLine"), "0");
    }
}

TEST(MailReception, LostSettingsOverwriteNoMail) {
    MailRig rig;
    rig.around.disk.put("Mail/i1.qrm", "first");
    rig.around.disk.put("Mail/iA.qrm", "tenth");
    rig.robot.waiting = {{17, {"a"}}};
    rig.manager->CheckRCVMail();
    rig.talk();
    EXPECT_EQ(rig.file("i1.qrm"), "first");
    EXPECT_NE(rig.file("iB.qrm"), "-");
}

// ---- Sending

void queue(MailRig& rig, const std::string& name, const std::string& content) {
    rig.around.disk.put("Mail/" + name, content);
    rig.manager->SendMail(name);
}

TEST(MailSending, APieceForEachAcknowledgementAndTheFileGoesWhenItIsConfirmed) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 3 A subject\r\na\r\nb\r\nc\r\n\r\n");
    EXPECT_EQ(rig.stored("SendQueue"), "o1.qrm|");
    EXPECT_EQ(rig.refreshMs, 5000);
    rig.talk();
    EXPECT_THAT(taken(rig), ElementsAre("MAIL SENDREQUEST", "MAIL SEND Maria 3 A subject",
                                        "MAIL DUMP Maria a", "MAIL DUMP Maria b", "MAIL SENT Maria c"));
    EXPECT_EQ(rig.file("o1.qrm"), "-");
    EXPECT_EQ(rig.stored("SendQueue"), "");
    EXPECT_EQ(rig.around.files.List(".waste").size(), 1U);
    EXPECT_EQ(rig.status->Label7.Caption.get(), "Message sent. Idle");
}

TEST(MailSending, ASlowRobotIsNotWaitedForOnceAndASilentOneIsGivenUp) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 3 s\r\na\r\nb\r\nc\r\n\r\n");
    says(rig, "SENDOK");
    says(rig, "OK");
    taken(rig);
    rig.time.run(std::chrono::seconds(2));
    EXPECT_THAT(taken(rig), ElementsAre("MAIL DUMP Maria b"));
    rig.time.run(std::chrono::seconds(27));
    EXPECT_THAT(taken(rig), IsEmpty()) << "a line sent by the timer arms nothing";
    EXPECT_EQ(rig.manager->StateOf("o1.qrm"), OutgoingState::Sending);
    rig.time.run(std::chrono::seconds(3));
    EXPECT_THAT(taken(rig), ElementsAre("MAIL SENDCANCEL Maria"));
    EXPECT_EQ(rig.manager->StateOf("o1.qrm"), OutgoingState::Waiting);
    rig.manager->CheckRCVMail();
    EXPECT_THAT(taken(rig), ElementsAre("MAIL SENDREQUEST"));
    EXPECT_EQ(rig.refreshMs, 10000);
}

TEST(MailSending, AnEndTooEarlyCancelsTwiceAndSaysIdle) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 3 s\r\na\r\n");
    says(rig, "SENDOK");
    says(rig, "OK");
    taken(rig);
    says(rig, "OK");
    EXPECT_THAT(taken(rig), ElementsAre("MAIL SENDCANCEL Maria", "MAIL SENDCANCEL Maria"));
    EXPECT_EQ(rig.status->Label7.Caption.get(), "Idle");
}

TEST(MailSending, AnAcknowledgementBehindTheLastPieceReadsOn) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 1 s\r\na\r\n\r\n");
    says(rig, "SENDOK");
    says(rig, "OK");
    EXPECT_FALSE(rig.status->tmrSendFlood.Enabled);
    EXPECT_EQ(rig.manager->StateOf("o1.qrm"), OutgoingState::Confirming);
    taken(rig);
    says(rig, "OK");
    EXPECT_THAT(taken(rig), ElementsAre("MAIL DUMP Maria "));
}

TEST(MailSending, AMailWrittenMeanwhileCutsTheOneUnderWayAndBothGoLater) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 2 s\r\na\r\nb\r\n\r\n");
    says(rig, "SENDOK");
    queue(rig, "o2.qrm", "Anna 1 s\r\nx\r\n\r\n");
    rig.robot.says.clear();
    taken(rig);
    says(rig, "OK");
    EXPECT_THAT(taken(rig), IsEmpty());
    rig.time.run(std::chrono::seconds(30));
    EXPECT_EQ(rig.around.questions.asked.size(), 1U) << "the number -1 can't be closed";
    EXPECT_THAT(taken(rig), ElementsAre("MAIL SENDCANCEL Maria"));
    for (int i = 0; i < 2; ++i) {
        rig.manager->CheckRCVMail();
        rig.talk();
    }
    EXPECT_THAT(rig.robot.taken, ElementsAre("Maria 2 s/Maria a/Maria b", "Anna 1 s/Anna x"));
}

TEST(MailSending, TheQueueKeepsDeletedNamesUntilTheRobotGrants) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 1 s\r\na\r\n\r\n");
    queue(rig, "o2.qrm", "Anna 1 s\r\nx\r\n\r\n");
    rig.around.files.Kill("Mail\\o1.qrm");
    EXPECT_EQ(rig.manager->gSendQueue, "o1.qrm|o2.qrm|");
    says(rig, "SENDOK");
    EXPECT_EQ(rig.manager->gSendQueue, "o2.qrm|");
    EXPECT_EQ(rig.stored("SendQueue"), "o1.qrm|o2.qrm|");
    says(rig, "SENDERROR");
    EXPECT_EQ(rig.status->Label7.Caption.get(), "Message transmittion error");
    EXPECT_EQ(rig.manager->StateOf("o2.qrm"), OutgoingState::Refused);
}

TEST(MailSending, ABusyRobotIsAskedForMailMeanwhile) {
    MailRig rig;
    queue(rig, "o1.qrm", "Maria 1 s\r\na\r\n\r\n");
    taken(rig);
    says(rig, "SENDWAIAT");
    EXPECT_THAT(taken(rig), ElementsAre("MAIL 0 0"));
    EXPECT_EQ(rig.status->Label7.Caption.get(), "Message server busy. Checking messages");
}

}  // namespace
}  // namespace talvora::test
