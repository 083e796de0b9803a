// The real robot on a real IRC server, as its users' programs meet it.

#include <gmock/gmock.h>

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpSocket>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "simulation/programs/MailUser.h"
#include "simulation/programs/Network.h"

namespace talvora::programs {

namespace {

class RobotOnTheNetwork : public testing::Test {
  protected:
    void SetUp() override {
        if (const auto reason = Network::whyNot(); !reason.empty()) GTEST_SKIP() << reason;
    }
};

// Two real programs ask what is new, as they do each few minutes by themselves.
TEST_F(RobotOnTheNetwork, APostReachesTwoRealUsersAndIsOnTheirDisks) {
    Network network;
    OrreryProcess& maria = network.user({.nick = "Maria"});
    OrreryProcess& nikos = network.user({.nick = "Nikos"});
    for (OrreryProcess* user : {&maria, &nikos}) user->gate().expectNumeric(366, {"#orrery"});
    const auto says = [](OrreryProcess& user, const std::string& text) {
        user.gate().send(HostMsg::SayRaw, QString::fromStdString("PRIVMSG OrreryServ :\1" + text + "\1"));
    };
    says(maria, "ANN POST 24 0 First");
    says(maria, "ANN POST 48 5 Συνάντηση[#n]στις εννέα");
    for (OrreryProcess* user : {&maria, &nikos}) {
        const std::filesystem::path list = user->folder() / "data/Mail/Announcements.lst";
        std::string kept;
        for (const Deadline deadline(Patience); !kept.ends_with('\r') && !deadline.passed();) {
            says(*user, "ANN HAS 1");
            user->process().idle(50);
            std::getline(std::ifstream(list), kept);
        }
        EXPECT_THAT(kept, testing::AllOf(testing::StartsWith("2 Maria 48 "),
                                         testing::HasSubstr(" 5 \xD3\xF5\xED\xDC\xED\xF4\xE7\xF3\xE7[#n]")));
        user->gate().takeLine("Συνάντηση[#n]στις εννέα\",3,");
    }
    const std::string plugins = nikos.folder() / "data/System/plugin.lst";
    std::string listed;
    std::getline(std::ifstream(plugins), listed);
    EXPECT_EQ(listed, "<SYS>.plg_Encrypt T F 0 0 Encryption\r") << "what a new user has";
}

TEST_F(RobotOnTheNetwork, IsThereForRealUsersAndSaysGoodbye) {
    Network network;
    OrreryProcess& nikos = network.user({.encoding = "utf-8"});
    nikos.gate().expectNumeric(366, {"#orrery"});
    nikos.gate().send(HostMsg::SayRaw, "PRIVMSG OrreryServ :\1MAIL 0 0\1");
    nikos.gate().send(HostMsg::SayRaw, "NAMES #orrery");
    nikos.gate().takeLine("OrreryServ");
    EXPECT_FALSE(nikos.gate().saw("[401,"));
    const auto anna = network.peer("Anna");
    anna->special("OrreryServ", "INFO IP Nikos[DND]");
    anna->expect({":OrreryServ!", " PRIVMSG Anna :\1IP 127.0.0.1 Nikos[DND]\1"});
    QTcpSocket asking;
    asking.connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(network.addressPort()));
    ASSERT_TRUE(asking.waitForReadyRead(static_cast<int>(Patience.count())));
    EXPECT_EQ(asking.readAll().toStdString(), "127.0.0.1");

    network.robot().signal(SIGTERM);
    EXPECT_EQ(network.robot().waitExit(), 0) << network.robot().output();
    nikos.gate().expectMessage(
        HostMsg::UserQuit, [](const QJsonValue& data) { return textOf(data[0]) == "OrreryServ"; },
        "the robot's end");
    EXPECT_NE(network.robot().output().find("orreryserv.session: logged on"), std::string::npos)
        << network.robot().output();
}

Process robot(const std::vector<std::string>& words) {
    Program program;
    program.arguments = {builtProgram("orreryserv")};
    program.arguments.insert(program.arguments.end(), words.begin(), words.end());
    return Process(program);
}

struct Start {
    const char* name;
    std::string config;
    int status;
    const char* said;
};

TEST(RobotProgram, ChecksItsConfiguration) {
    const std::string good = robotConfig(6667, 37183, "robot.db");
    const Start starts[] = {
        {"good", good, 0,
         "orreryserv.ini: all is well\nOrreryServ logs on to 127.0.0.1:6667 and joins #orrery."},
        {"no secret is shown", good + "[robot]\nPassword=open sesame\n", 0, "all is well"},
        {"number", good + "[mail]\nPiecesPerMail=328\n", 2, "orreryserv.ini:17: "},
        {"no store", "[store]\nDatabase=\n", 2, "orreryserv.ini:2: "},
    };
    for (const auto& [name, config, status, said] : starts) {
        SCOPED_TRACE(name);
        Folder folder;
        Process checked = robot({"--check-config", "--config", folder.write("orreryserv.ini", config)});
        EXPECT_EQ(checked.waitExit(), status);
        EXPECT_NE(checked.output().find(said), std::string::npos) << checked.output();
        EXPECT_EQ(checked.output().find("sesame"), std::string::npos) << checked.output();
    }
    Process missing = robot({"--config", "no/such/file"});
    EXPECT_EQ(missing.waitExit(), 2) << missing.output();
    Process wrong = robot({"--no-such-option"});
    EXPECT_EQ(wrong.waitExit(), 2) << wrong.output();
}

TEST(RobotProgram, SharesItsStoreWithNobody) {
    Folder folder;
    const FreePort nobody, addresses;
    const std::string config =
        folder.write("orreryserv.ini", robotConfig(nobody.number(), addresses.number(), folder / "robot.db"));
    Process first = robot({"--config", config});
    first.expectOutput("started");
    Process second = robot({"--config", config});
    EXPECT_EQ(second.waitExit(), 1);
    EXPECT_NE(second.output().find("another robot"), std::string::npos) << second.output();
    first.signal(SIGINT);
    EXPECT_EQ(first.waitExit(), 0) << first.output();
}

}  // namespace

}  // namespace talvora::programs
