// The host with its windows, on a screen with a window manager.

#include <gtest/gtest.h>

#include "common/HostMessageNumbers.h"
#include "simulation/programs/IrcServer.h"
#include "simulation/programs/OrreryProcess.h"
#include "simulation/programs/Screen.h"

namespace talvora::programs {

namespace {

class Windows : public testing::Test {
  protected:
    void SetUp() override {
        for (const std::string& reason : {Screen::whyNot(), IrcServer::whyNot(ServerKind::Ngircd)}) {
            if (!reason.empty()) GTEST_SKIP() << reason;
        }
    }
};

// Maria has windows.
struct MariaAndNikos {
    MariaAndNikos() {
        for (OrreryProcess* user : {&nikos, &maria}) user->gate().expectNumeric(366, {"#one"});
    }
    // She goes, and nothing has failed.
    void mariaLeaves() {
        EXPECT_EQ(maria.terminate(), 0) << maria.process().output();
        EXPECT_EQ(maria.process().output().find("Description: "), std::string::npos)
            << maria.process().output();
    }

    IrcServer server{ServerKind::Ngircd};
    Screen screen;
    OrreryProcess nikos{server, {.nick = "Nikos", .channels = "#one|"}};
    OrreryProcess maria{
        server,
        {.nick = "Maria",
         .channels = "#one|",
         .settings = {"ChanSettings/CreateOnPM=T", "Settings/RealName=Work.Here", "Settings/ShowMOTD=0"},
         .screen = screen.environment()}};
};

TEST_F(Windows, TwoUsersTalkOverThem) {
    MariaAndNikos users;
    auto& [server, screen, nikos, maria] = users;
    maria.gate().send(HostMsg::ShowWindow, 1);
    const std::string main = screen.expectWindow("Talvora");

    // What comes by itself shows, and leaves the keyboard where it is.
    screen.activate(main);
    nikos.gate().send(HostMsg::SayPrivate, QJsonArray{"Maria", "are you there?"});
    const std::string chat = screen.expectWindow("Chat - Nikos");
    EXPECT_EQ(screen.activeTitle(), "Talvora");
    screen.activate(chat);
    screen.type("yes <b> & no");
    screen.press("Return");
    nikos.gate().expectMessage(HostMsg::PrivateText, QJsonArray{"Maria", "yes <b> & no"});

    nikos.gate().send(HostMsg::SayRaw, "PRIVMSG #one :and here?");
    screen.activate(screen.expectWindow("Channel - #One"));
    screen.type("here too");
    screen.press("ctrl+Return");
    nikos.gate().takeLine("ACTION here too");

    // A second start shows the first one's window.
    Program second = orreryProgram(maria.folder(), maria.folder() / "network.ini");
    std::erase(second.arguments, "--headless");
    for (const std::string& variable : screen.environment()) second.environment.push_back(variable);
    Process again(second);
    EXPECT_EQ(again.waitExit(), 0);
    again.expectOutput("already running");
    screen.expectActive("Talvora");
    users.mariaLeaves();
}

TEST_F(Windows, HaveABarInTheCornerThatLeavesTheKeyboardWhereItIs) {
    MariaAndNikos users;
    auto& [server, screen, nikos, maria] = users;
    const std::string bar = "Talvora windows";
    screen.movePointer(400, 500);
    nikos.gate().send(HostMsg::SayPrivate, QJsonArray{"Maria", "are you there?"});
    const std::string chat = screen.expectWindow("Chat - Nikos");
    screen.expectPlace(bar, "960,-48 320x77");  // what nobody has read hangs into the screen
    screen.activate(chat);
    screen.expectNoWindow(bar);

    nikos.gate().send(HostMsg::SayRaw, "PRIVMSG #one :and here?");
    screen.expectPlace(bar, "960,-76 320x105");
    screen.movePointer(1270, 0);
    screen.expectPlace(bar, "960,0 320x105");  // two headings, the chat and the channel
    screen.type("still here");
    screen.press("Return");
    nikos.gate().expectMessage(HostMsg::PrivateText, QJsonArray{"Maria", "still here"});
    EXPECT_EQ(screen.activeTitle(), "Chat - Nikos");
    screen.movePointer(1100, 90);
    screen.click();
    screen.expectActive("Channel - #One");
    screen.movePointer(400, 500);
    screen.expectNoWindow(bar);

    screen.press("ctrl+b");
    screen.expectActive(bar);
    screen.press("Escape");
    screen.expectNoWindow(bar);
    screen.expectActive("Channel - #One");
    users.mariaLeaves();
}

TEST_F(Windows, AskThreeThingsAtTheFirstStart) {
    IrcServer server(ServerKind::Ngircd);
    const Screen screen;
    const Folder folder;
    Program program = orreryProgram(folder, folder.write("network.ini", profileText(server.port(), {})));
    std::erase(program.arguments, "--headless");
    for (const std::string& variable : screen.environment()) program.environment.push_back(variable);
    Process orrery(program);
    screen.activate(screen.expectWindow("Welcome.*"));
    screen.type("Maria");
    screen.press("Tab");
    screen.type("Work.Here");
    screen.press("Return");
    screen.expectWindow("Talvora");
    GateReader gate(folder / "gate");
    gate.send(HostMsg::SayRaw, "WHOIS Maria");
    gate.takeLine("UL:Work.Here");
    orrery.signal(SIGTERM);
    EXPECT_EQ(orrery.waitExit(), 0);
}

TEST(WithoutAScreen, TheHostSaysSo) {
    const Folder folder;
    Program program = orreryProgram(folder, folder.write("network.ini", profileText(1, {})));
    std::erase(program.arguments, "--headless");
    for (const char* variable : {"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="}) {
        program.environment.emplace_back(variable);
    }
    Process orrery(program);
    EXPECT_EQ(orrery.waitExit(), 2);
    orrery.expectOutput("no screen");
}

}  // namespace
}  // namespace talvora::programs
