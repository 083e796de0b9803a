// Mail between real programs: a messenger sends what a composer has left in its folder, the robot keeps it,
// and another messenger finds it when it comes.

#include "e2e/EachServer.h"
#include "e2e/MailFolder.h"
#include "platform/CodePage1253.h"
#include "simulation/programs/Network.h"

namespace talvora::programs {

namespace {

using MailFile::Letter;
using MailFile::OutgoingFile;

// A mail waits for the next look at the queue, five seconds behind the one before it.
constexpr Milliseconds untilTheQueueIsEmpty{60000};

void waitForMails(OrreryProcess& user, char kind, std::size_t count) {
    const Deadline deadline(untilTheQueueIsEmpty);
    while (mailsOf(user, kind).size() != count) {
        if (deadline.passed() || user.process().ended()) {
            throw Missing("there are " + std::to_string(mailsOf(user, kind).size()) + " mails " + kind +
                          ". The program wrote:\n" + user.process().output());
        }
        user.process().idle(20);
    }
}

// As a reader sees it.
std::string shown(const std::filesystem::path& path) {
    const MailFile::Opened mail = opened(path);
    return mail.Head.From + (mail.Head.Urgent ? "! " : ": ") + mail.Head.Subject +
           (mail.IsRTF ? " {" : " [") + mail.Text;
}

class Mails : public EachServer {};
INSTANTIATE_TEST_SUITE_P(With, Mails, testing::Values(ServerKind::Ngircd, ServerKind::Inspircd), paramName);

TEST_P(Mails, OfEveryKindReachOneWhoWasAwayAsTheyWereWritten) {
    Network network({.settings = "[mail]\nPiecesPerMail=327\n", .server = GetParam()});
    std::string longText;
    for (int i = 0; longText.size() < 327 * MailFile::PieceSize - 10; ++i)
        longText += std::to_string(i) + ",";
    longText.resize(327 * MailFile::PieceSize - 1, '.');
    const std::string greek = fromUtf8("Καλημέρα σε όλους");
    const std::string rich = "{\\rtf1\\ansicpg1253 {\\b Sun} (sun) :-) \\'e1}";
    std::vector<std::string> toFive;
    for (const char* nick : {"Nikos", "Eleni", "Petros", "Sofia", "Giorgos"}) {
        toFive.push_back(OutgoingFile({.To = nick, .Subject = "To all", .Text = "Come\r\nat eight"}));
    }
    OrreryProcess& anna = network.user({.nick = "Anna", .mails = toFive});
    OrreryProcess& maria = network.user(
        {.nick = "Maria[DND]",
         .mails = {
             OutgoingFile({.To = "Nikos", .Subject = greek, .Text = greek, .Urgent = true}),
             OutgoingFile({.To = "nikos", .Subject = "Rich", .Text = rich, .IsRTF = true}),
             OutgoingFile({.To = "Nikos", .Subject = "Soon gone: hurry", .Text = "x", .ExpireHours = 2}),
             OutgoingFile({.To = "Nikos", .Subject = "Long", .Text = longText})}});
    waitForMails(anna, 'o', 0);
    waitForMails(maria, 'o', 0);

    OrreryProcess& nikos = network.user({.nick = "Nikos"});
    waitForMails(nikos, 'i', 5);
    std::vector<std::string> found;
    for (const auto& path : mailsOf(nikos, 'i')) found.push_back(shown(path));
    std::vector<std::string> wanted = {"Anna: To all [Come\r\nat eight", "Maria! " + greek + " [" + greek,
                                       "Maria: Rich {" + rich, "Maria: Soon gone [x",
                                       "Maria: Long [" + longText};
    std::ranges::sort(found);
    std::ranges::sort(wanted);
    EXPECT_EQ(found, wanted);
    for (const char* nick : {"Eleni", "Petros", "Sofia", "Giorgos"}) {
        const auto peer = network.peer(nick);
        peer->special("OrreryServ", "MAIL 0 0");
        peer->expect({"MAIL START Anna ", " 1 ", " To all"});
    }
    for (OrreryProcess* user : {&anna, &maria, &nikos}) EXPECT_EQ(user->terminate(), 0);
}

}  // namespace

}  // namespace talvora::programs
