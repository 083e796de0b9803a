// Friends on a real network: one comes and goes, the other one's program says so.

#include <gtest/gtest.h>

#include "common/HostMessageNumbers.h"
#include "simulation/programs/IrcPeer.h"
#include "simulation/programs/IrcServer.h"
#include "simulation/programs/OrreryProcess.h"
#include "simulation/programs/Screen.h"

namespace talvora::programs {
namespace {

TEST(Friends, ComeAndGo) {
    if (const std::string reason = IrcServer::whyNot(ServerKind::Ngircd); !reason.empty())
        GTEST_SKIP() << reason;
    IrcServer server(ServerKind::Ngircd);
    OrreryOptions options{.nick = "Maria", .channels = "#one|"};
    options.friends = "Nikos\r\nKostas\r\n";
    OrreryProcess maria(server, options);
    maria.gate().expectNumeric(366, {"#one"});
    const auto expectNotice = [&](const std::string& text) {
        maria.gate().expectMessage(
            HostMsg::Notice, [&](const QJsonValue& data) { return textOf(data[1]) == text; }, text);
    };
    {
        OrreryProcess nikos(server, {.nick = "Nikos", .channels = "#one|"});
        nikos.gate().expectNumeric(366, {"#one"});
        maria.gate().send(HostMsg::SayRaw, "WHO *");
        expectNotice("User Nikos has gone online");
        EXPECT_EQ(nikos.terminate(), 0);
        maria.gate().takeLine(hostMessage(HostMsg::UserQuit));
    }
    maria.gate().send(HostMsg::SayRaw, "WHO *");
    expectNotice("User Nikos has gone offline");
    EXPECT_FALSE(maria.gate().saw("User Kostas has"));
    EXPECT_EQ(maria.terminate(), 0);
}

}  // namespace
}  // namespace talvora::programs
