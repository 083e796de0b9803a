// A secret talk on a real server. A host without a screen has nobody to switch encryption on, so two whole
// components live in this process, each on sockets of its own, and the test works their windows.

#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>

#include "extensions/plg_Encrypt.h"
#include "host/Connect.h"
#include "platform/CodePage1253.h"
#include "platform_qt/QtLoop.h"
#include "platform_qt/QtSockets.h"
#include "simulation/VirtualPlatform.h"
#include "simulation/programs/IrcServer.h"

namespace talvora::programs {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

void until(const std::function<bool()>& holds, const std::string& what) {
    const Deadline deadline(Patience);
    QTimer wakes;
    wakes.start(20);
    while (!holds()) {
        if (deadline.passed()) throw Missing(what);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

// The server's lines of words, as they came.
struct WireTap final : MessageDatabase {
    void Broadcast(const HostMessage& message) override {
        if (message.MsgID == HostMsg::ServerWord) lines += message.Data.at(2).text() + "\n";
    }
    std::string lines;
};

struct Talker {
    Talker(int port, const std::string& nick, Encoding encoding) {
        around.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\n");
        around.disk.put("System/emoticons.dat", "(sun):=:{\\i sun}\r\n");
        around.disk.put("System/plugin.lst", "<SYS>.plg_Encrypt T F 0 0 Encryption\r\n");
        around.settings.SaveSetting("Talvora", "Settings", "Nickname", nick);
        profile.ServerPort = port;
        profile.Wire.Encoding = encoding;
        component = std::make_unique<Connect>(HostServices{platform, profile});
        component->Init(wire, 1);
        HostMessage start;
        start.MsgID = HostMsg::Start;
        wire.MessageBroadcasted.raise(start);
        until([&] { return component->MainWindow()->Session.Label8.Caption.get().ends_with("Running"); },
              nick + " is not on line");
    }
    frmPM& talksTo(const std::string& peer, const std::string& key) {
        component->Chats().Privates.StartPM(peer);
        frmPM& window = *component->Chats().Privates.Window(peer);
        auto& plugin = dynamic_cast<plg_Encrypt&>(*window.Slots.plugins(0).Client());
        plugin.Text1.Text = key;
        plugin.Label1.Click.raise();
        return window;
    }

    test::VirtualTime still;
    test::VirtualNetwork nowhere{still};
    test::VirtualPlatform around{still, nowhere};
    QtLoop loop;
    QtNetwork network{loop};
    Platform platform{loop,         network,         around.clock, around.questions,
                      around.files, around.settings, around.screen};
    NetworkProfile profile;
    WireTap wire;
    std::unique_ptr<Connect> component;
};

void types(frmPM& window, const std::string& text, int key) {
    window.Text1.Text = text;
    window.Text1.userPresses(key);
}

void expectShown(const frmPM& window, const std::string& text) {
    until([&] { return window.IRCWin1.RichTextBox1.Text().find(text) != std::string::npos; },
          toUtf8(text) + " is not in:\n" + toUtf8(window.IRCWin1.RichTextBox1.Text()));
}

TEST(Secrets, OfTwoUsersCrossARealServerAsDigits) {
    if (const auto reason = IrcServer::whyNot(ServerKind::Ngircd); !reason.empty()) GTEST_SKIP() << reason;
    IrcServer server(ServerKind::Ngircd);
    Talker maria(server.port(), "Maria", Encoding::UTF8);
    Talker nikos(server.port(), "Nikos", Encoding::CP1253);
    frmPM& hers = maria.talksTo("Nikos", "\xEA\xEB\xE5\xE9\xE4\xDF");
    frmPM& his = nikos.talksTo("Maria", "\xEA\xEB\xE5\xE9\xE4\xDF");
    const std::string greek = "\xEA\xE1\xEB\xE7\xEC\xDD\xF1\xE1";

    types(hers, greek + " Nik", Key::Return);
    expectShown(his, "[Maria] " + greek + " Nik");
    types(his, greek, Key::LineFeed);
    expectShown(hers, "* Nikos " + greek);
    // What is beyond one line of the wire is lost, and nothing else with it.
    types(hers, std::string(400, 'x'), Key::Return);
    types(hers, "and on", Key::Return);
    expectShown(his, "[Maria] and on");
    for (const Talker* talker : {&maria, &nikos}) {
        EXPECT_THAT(talker->wire.lines,
                    AllOf(HasSubstr("\1PM ^"), Not(HasSubstr(greek)), Not(HasSubstr(toUtf8(greek))),
                          Not(HasSubstr("ACTION")), Not(HasSubstr("Nik ")), Not(HasSubstr("and on"))));
    }
}

}  // namespace

}  // namespace talvora::programs
