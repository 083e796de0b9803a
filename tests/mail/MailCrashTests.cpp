// The program is killed, or the power lost, at every change of disk and store: what was confirmed is there
// after the next start, and that start goes on by itself.

#include <gmock/gmock.h>

#include <cerrno>

#include "mail/MailDrafts.h"
#include "mail/MailFile.h"
#include "mail/MailRig.h"
#include "mail/frmViewMail.h"

namespace talvora::test {
namespace {

using Survived = MemoryDisk::Survived;

class NoWindows final : public MailWindows {
    void View(const std::string&) override {}
    void Reply(const std::string&) override {}
    void Write(const std::string&, const std::string&, bool, const std::string&) override {}
    void OpenDraft(const std::string&) override {}
};

// Has the program die in `story` in each way, until it comes to its end alive; `afterwards` it runs again.
template <class Story, class Afterwards>
void atEveryChange(const Story& story, const Afterwards& afterwards) {
    for (const Survived survived : {Survived::Flushed, Survived::Everything}) {
        for (const bool atSave : {false, true}) {
            for (int n = 0;; ++n) {
                SCOPED_TRACE((atSave ? "save " : "disk change ") + std::to_string(n) +
                             (survived == Survived::Flushed ? ", power lost" : ", killed"));
                MailRig rig;
                const auto arm = [&] {
                    if (atSave) {
                        rig.settings.savesToDeath = n;
                    } else {
                        rig.around.disk.dieAtWrite(n);
                    }
                };
                story(rig, arm);
                const bool died = rig.died();
                rig.crashAndStart(survived);
                afterwards(rig, survived);
                if (!died || testing::Test::HasFailure()) break;
                ASSERT_LT(n, 200);
            }
        }
    }
}

void goOn(MailRig& rig) {
    for (int minute = 0; minute < 4; ++minute) {
        rig.manager->CheckRCVMail();
        rig.talk();
        rig.time.run(std::chrono::seconds(60));
    }
}

void goOnWithoutAReport(MailRig& rig) {
    const std::size_t reports = rig.around.questions.asked.size();
    goOn(rig);
    EXPECT_EQ(rig.around.questions.asked.size(), reports);
}

std::vector<std::string> bodies(MailRig& rig) {
    std::vector<std::string> found;
    for (const std::string& name : rig.around.files.List("Mail", "i*.qrm")) {
        const auto mail = MailFile::Open(rig.file(name));
        found.push_back(mail ? mail->Text : "no mail");
    }
    return found;
}

TEST(MailCrash, AReceptionLosesNothingAndDoublesOneLineAtMost) {
    atEveryChange(
        [](MailRig& rig, const auto& arm) {
            // One that the robot has no more stands before them.
            for (const char* said : {"START Nikos d 3 16 s", "DUMP a"}) rig.manager->HandleMailCmd(said);
            rig.manager->CancelMailSend();
            rig.robot.waiting = {{17, {"one,", "two,", "three,"}}, {18, {"four"}}};
            arm();
            rig.manager->CheckRCVMail();
            rig.talk();
        },
        [](MailRig& rig, Survived) {
            goOnWithoutAReport(rig);
            EXPECT_TRUE(rig.robot.waiting.empty());
            EXPECT_THAT(bodies(rig),
                        testing::ElementsAre(testing::AnyOf("one,two,three,", "one,one,two,three,",
                                                            "one,two,two,three,", "one,two,three,three,"),
                                             testing::AnyOf("four", "fourfour")));
            EXPECT_EQ(rig.stored("IncomingID"), "0");
        });
}

TEST(MailCrash, ASendingComesToItsEndOnce) {
    atEveryChange(
        [](MailRig& rig, const auto& arm) {
            for (const char* name : {"o1.qrm", "o2.qrm"}) {
                rig.around.disk.put(std::string("Mail/") + name,
                                    std::string(name) + " 2 s\r\na\r\nb\r\n\r\n");
                rig.manager->SendMail(name);
            }
            rig.robot.says.clear();
            arm();
            for (int mail = 0; mail < 2; ++mail) {
                rig.manager->CheckRCVMail();
                rig.talk();
            }
        },
        [](MailRig& rig, Survived survived) {
            goOnWithoutAReport(rig);
            EXPECT_THAT(rig.robot.taken,
                        testing::ElementsAre("o1.qrm 2 s/o1.qrm a/o1.qrm b", "o2.qrm 2 s/o2.qrm a/o2.qrm b"));
            EXPECT_EQ(rig.manager->gSendQueue, "")
                << "the stored one keeps deleted names until it is saved next";
            // Lost power may bring a deleted file back; it is in no queue.
            EXPECT_TRUE(survived == Survived::Flushed || rig.around.files.List("Mail", "o*.qrm").empty());
        });
}

// A full or a read-only disk, from any change on and for some minutes, or settings that nobody can save.
TEST(MailDisk, ThatTakesNothingIsAReportAndNoLoss) {
    for (const int trouble : {ENOSPC, EROFS, 0}) {
        for (int change = 0, reached = true; reached != 0; ++change) {
            SCOPED_TRACE(CStr(trouble) + " from change " + CStr(change));
            MailRig rig;
            rig.robot.waiting = {{17, {"one,", "two,"}}, {18, {"three"}}};
            rig.around.disk.put("Mail/o1.qrm", "Anna 2 s\r\na\r\nb\r\n\r\n");
            rig.manager->SendMail("o1.qrm");
            rig.robot.says.clear();
            if (trouble != 0) rig.around.disk.refuseChanges(trouble, change);
            if (trouble == 0) rig.settings.savesToRefusal = change + 1;
            goOn(rig);
            reached = rig.around.disk.refuses() || rig.settings.refuses ? 1 : 0;
            EXPECT_EQ(rig.around.questions.asked.empty(), reached == 0);
            rig.around.disk.refuseChanges(0);
            rig.settings.refuses = false;
            rig.settings.savesToRefusal = -1;
            for (int minutes = 0; minutes < 12; minutes += 4) goOn(rig);
            EXPECT_TRUE(rig.robot.waiting.empty());
            EXPECT_THAT(bodies(rig),
                        testing::ElementsAre(testing::AnyOf("one,two,", "one,one,two,", "one,two,two,"),
                                             testing::AnyOf("three", "threethree")));
            EXPECT_THAT(rig.robot.taken, testing::ElementsAre("Anna 2 s/Anna a/Anna b"));
            ASSERT_LT(change, 100);
        }
    }
}

TEST(MailCrash, TheReadMarkIsThereOrNotAndTheMailIsWhole) {
    const std::string mail =
        MailFile::IncomingHead("N", "r", "s", "x") + "text\r\n" + std::string(MailFile::Tail);
    atEveryChange(
        [&](MailRig& rig, const auto& arm) {
            rig.around.disk.put("Mail/i1.qrm", mail);
            NoWindows windows;
            arm();
            frmViewMail viewer(rig.surroundings, windows);
            viewer.DisplayFile("i1.qrm");
            EXPECT_EQ(viewer.Text1.Text.get(), "N");
        },
        [&](MailRig& rig, Survived) {
            EXPECT_THAT(rig.file("i1.qrm"), testing::AnyOf(mail, MailFile::Open(mail)->Copy));
        });
}

TEST(MailCrash, ADraftIsTheOldOrTheNewOne) {
    atEveryChange(
        [](MailRig& rig, const auto& arm) {
            MailDrafts drafts(rig.reporter, rig.around.files);
            std::string name;
            drafts.Save(name, {.To = "Maria", .Subject = "old", .RTF = "{\\rtf1 a}"});
            EXPECT_EQ(name, "d1.dft");
            arm();
            drafts.Save(name, {.To = "Maria", .Subject = "new", .RTF = "{\\rtf1\r\nb}"});
        },
        [](MailRig& rig, Survived) {
            MailDraft draft;
            EXPECT_TRUE(MailDrafts(rig.reporter, rig.around.files).Load("d1.dft", draft));
            EXPECT_EQ(draft.RTF, draft.Subject == "old" ? "{\\rtf1 a}" : "{\\rtf1\r\nb}");
        });
}

}  // namespace
}  // namespace talvora::test
