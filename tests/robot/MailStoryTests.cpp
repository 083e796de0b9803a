// Mail between whole clients and the real robot, in one process: what is written arrives, and once, wherever
// the line or a program of the three breaks off. Each kind of mail goes over real programs (e2e/MailTests).

#include "Vocabulary.h"
#include "mail/MailFile.h"
#include "platform/Text.h"
#include "platform_qt/TemporaryFolder.h"
#include "simulation/robot/RobotInWorld.h"

namespace talvora::test {
namespace {

class MailNetwork {
  public:
    MailNetwork() {
        robot.config.Store.Database = folder_.path("robot.db");
        robot.start();
    }
    Client& comes(const std::string& nick) {
        Client& client = world.client(nick);
        client.around.disk.put("Mail/.keep", "");
        relay.serve(client);
        client.host.send(HostMsg::Start);
        world.time.run(6s);
        return client;
    }
    static void writes(Client& client, const std::string& to, const std::string& subject,
                       const std::string& text) {
        MailDesk& mails = client.component->Mails();
        mails.Panel.mnuNew.Click.raise();
        frmSendMail& form = *mails.Composers.Forms().back();
        form.Text1.Text = to;
        form.Text2.Text = subject;
        form.RichTextBox1.userTypes(text);
        form.Toolbar1.userPresses(form.Toolbar1.Buttons(ComposerButton::Send));
    }
    // The whole mails of a user, as a reader sees them.
    static std::vector<std::string> mailsOf(Client& client) {
        std::vector<std::string> found;
        for (const std::string& name : client.around.files.List("Mail", "i*.qrm")) {
            const auto mail = MailFile::Open(client.around.disk.content("Mail/" + name).value());
            found.push_back(mail->Head.From + ": " + mail->Head.Subject + " [" + mail->Text);
        }
        return found;
    }
    static std::vector<std::string> waiting(Client& client) {
        return client.around.files.List("Mail", "o*.qrm");
    }

    World world;
    Relay relay;
    RobotInWorld robot{world, relay};

  private:
    TemporaryFolder folder_;
};

// What breaks off at a line of the dialogue; the line itself is lost.
struct Break {
    const char* name;
    void (*happens)(MailNetwork& network, Client& maria, Client& nikos);
};
const Break breaks[] = {
    {"Maria's line is cut", [](auto&, auto& maria, auto&) { maria.server.closes(); }},
    {"Nikos's line is cut", [](auto&, auto&, auto& nikos) { nikos.server.closes(); }},
    {"the robot's line is cut", [](auto& network, auto&, auto&) { network.robot.server.closes(); }},
    {"Maria is killed", [](auto&, auto& maria, auto&) { maria.crashAndStart(); }},
    {"Nikos is killed", [](auto&, auto&, auto& nikos) { nikos.crashAndStart(); }},
    {"the robot is killed", [](auto& network, auto&, auto&) { network.robot.start(); }},
};

// A mail there and one back. Gives whether there was such a line.
bool breaksAt(int step, const Break& how) {
    MailNetwork network;
    Client& maria = network.comes("Maria");
    Client& nikos = network.comes("Nikos");
    bool struck = false;
    network.relay.loses = [&, lines = 0](const std::string& line) mutable {
        if (line.find(":\1MAIL ") != line.npos && lines++ == step) struck = true;
        return struck;
    };
    const std::string twoPieces(MailFile::PieceSize + 1, 'x');
    network.writes(maria, "Nikos", "One", twoPieces);
    network.writes(nikos, "Maria", "Two", "second");
    for (int second = 0; second < 180 && !struck; ++second) network.world.time.run(1s);
    if (!struck) return false;
    how.happens(network, maria, nikos);
    struck = false;
    network.relay.loses = nullptr;
    const auto arrived = [&] {
        return !network.mailsOf(maria).empty() && !network.mailsOf(nikos).empty() &&
               network.waiting(maria).empty() && network.waiting(nikos).empty();
    };
    for (int second = 0; second < 240 && !arrived(); ++second) network.world.time.run(1s);
    network.world.time.run(65s);  // whoever would get something twice gets it when he asks again
    EXPECT_THAT(network.waiting(maria), IsEmpty());
    EXPECT_THAT(network.mailsOf(nikos), ElementsAre("Maria: One [" + twoPieces));
    EXPECT_THAT(network.mailsOf(maria), ElementsAre("Nikos: Two [second"));
    for (Client* user : {&maria, &nikos}) EXPECT_THAT(user->around.questions.asked, IsEmpty());
    return true;
}

TEST(MailStory, NothingIsLostAndNothingComesTwiceWhereverItBreaksOff) {
    for (const Break& how : breaks) {
        int step = 0;
        for (bool there = true; there && !testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE(how.name + (" at line " + CStr(step)));
            there = breaksAt(step, how);
        }
        EXPECT_GT(step, 28) << "the dialogue has more lines";
    }
}

}  // namespace
}  // namespace talvora::test
