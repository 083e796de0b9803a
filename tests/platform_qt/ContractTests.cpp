// What the real platform and the virtual one both promise of the loop, of sockets and of settings.

#include <array>
#include <memory>

#include "platform_qt/SqliteSettings.h"
#include "platform_qt/TemporaryFolder.h"
#include "platform_qt/Worlds.h"
#include "simulation/MemorySettings.h"

namespace talvora::test {
namespace {

template <class World, bool... atOnce>
std::unique_ptr<AnyWorld> make() {
    return std::make_unique<World>(atOnce...);
}

struct EachWorld : testing::TestWithParam<std::unique_ptr<AnyWorld> (*)()> {
    std::unique_ptr<AnyWorld> made = GetParam()();
    AnyWorld& world = *made;
    Loop& loop = world.TheLoop();
    Connection both{world};
    Endpoint& client = both.client;
    Endpoint& server = both.server;
};
constexpr std::array worldNames{"Real", "RealAtOnce", "Virtual"};
INSTANTIATE_TEST_SUITE_P(Platform, EachWorld,
                         testing::Values(make<RealWorld>, (make<RealWorld, true>), make<VirtualWorld>),
                         [](const auto& world) { return worldNames.at(world.index); });

TEST(EachStore, FindsNamesInAnyCaseAndKeepsThemApart) {
    const std::tuple<SettingName, SettingName, bool> cases[] = {
        {{"Talvora", "PMSettings", "TimeStamp_bob"}, {"TALVORA", "pmsettings", "Timestamp_BOB"}, true},
        // "Anna" with an accent on the first letter, and a final sigma.
        {{"T", "ChanKeys", "#\xDC\xED\xED\xE1\xF2"}, {"T", "ChanKeys", "#\xA2\xCD\xCD\xC1\xD3"}, true},
        {{"T", "ChanKeys", "#\xDC\xED\xED\xE1"}, {"T", "ChanKeys", "#\xE1\xED\xED\xE1"}, false},
        {{"T", "ab", "c"}, {"T", "a", "bc"}, false},
        {{"T", "ab", "c"}, {"T", "cd", "c"}, false},
        {{"", "", "Tabc"}, {"T", "ab", "c"}, false},
        {{"T", "a", {"k\0x", 3}}, {"t", "A", {"K\0X", 3}}, true},
        {{"T", "a", {"k\0x", 3}}, {"T", "a", "k"}, false},
    };
    for (const auto& [saved, read, same] : cases) {
        const TemporaryFolder folder;
        SqliteSettings real(folder.path("settings.db"));
        MemorySettings inMemory;
        for (SettingsStore* store : std::initializer_list<SettingsStore*>{&real, &inMemory}) {
            const auto get = [store](const SettingName& name) {
                return store->GetSetting(name.app, name.section, name.key, "none");
            };
            store->SaveSetting(saved.app, saved.section, saved.key, "value");
            EXPECT_EQ(get(read), same ? "value" : "none") << read.key;
            store->SaveSetting(read.app, read.section, read.key, "other");
            EXPECT_EQ(get(saved), same ? "other" : "value") << read.key;
        }
    }
}

TEST_P(EachWorld, FiresInTheOrderOfDueTimesAndEqualOnesInThatOfArming) {
    std::string order;
    WakeUp late([&] { order += 'c'; }), equal([&] { order += 'b'; }), early([&] { order += 'a'; });
    loop.Defer([&] {
        late.arm(loop, 30);
        early.arm(loop, 20);
        equal.arm(loop, 20);
        loop.Defer([&] { order += '2'; });
        order += '1';
    });
    world.until([&] { return order.find('c') != std::string::npos; });
    EXPECT_EQ(order.substr(0, 5), "12abc");
}

TEST_P(EachWorld, SocketsTalkBothWaysAndConnectAgainAfterAClose) {
    EXPECT_EQ(client.socket.State(), SocketState::Connected);
    EXPECT_THROW(client.socket.Connect(), RuntimeError);
    EXPECT_EQ(server.socket.RemoteHost, "127.0.0.1");
    EXPECT_EQ(server.socket.RemotePort, client.socket.BoundPort());
    client.operation([&] { client.socket.SendData(std::string("a\0\xff", 3)); });
    server.untilSaw("Data");
    EXPECT_EQ(server.data, std::string("a\0\xff", 3));
    server.socket.SendData("back");
    client.untilSaw("Data");
    EXPECT_EQ(client.data, "back");
    client.socket.Close();
    EXPECT_THROW(client.socket.SendData("x"), RuntimeError);
    Endpoint next(world);
    both.door.then = [&](const std::string&) { next.socket.Accept(both.door.socket); };
    client.connectTo("127.0.0.1", both.door.socket.BoundPort());
    client.untilSaw("Data;Connect");
    EXPECT_EQ(client.log, "Connect;Data;Connect;");
}

TEST_P(EachWorld, SocketsTellTheEndOnlyWhenEverythingWasTaken) {
    for (const std::string& sent : {std::string("last words"), patterned(900'000)}) {
        Connection one(world);
        one.client.taking = false;
        one.server.socket.SendData(sent);
        one.server.socket.Close();
        one.client.untilSaw("Data");
        world.settle();
        EXPECT_EQ(one.client.log, "Connect;Data;");
        one.client.operation([&] { one.client.socket.GetData(one.client.data); });
        one.client.taking = true;
        one.client.untilSaw("Close");
        EXPECT_EQ(one.client.log, "Connect;Data;Close;");
        EXPECT_TRUE(one.client.data == sent);
    }
}

TEST_P(EachWorld, SocketsDeliverWhatWasSentBeforeAClose) {
    client.taking = false;
    server.socket.SendData(patterned(4'000'000));  // unread bytes must not turn the end into a reset
    client.untilSaw("Data");
    const std::string sent = patterned(3'000'000) + "QUIT";
    client.socket.SendData(sent);
    client.socket.Close();
    client.socket.Close();
    server.untilSaw("Close");
    EXPECT_TRUE(server.data == sent);
    EXPECT_FALSE(server.saw("Error"));
    EXPECT_EQ(client.log, "Connect;Data;");
}

TEST_P(EachWorld, SocketsMayBeClosedOrDestroyedInAnyEvent) {
    for (const std::string event :
         {"Connect", "Data", "Close", "Error", "!Connect", "!Data", "!Close", "!Error"}) {
        const bool destroy = event[0] == '!';
        const std::string when = event.substr(destroy ? 1 : 0);
        Endpoint door(world), accepted(world);
        door.then = [&](const std::string&) {
            accepted.socket.Accept(door.socket);
            accepted.socket.SendData("hello");
            if (when == "Close") accepted.socket.Close();
        };
        door.listen();
        const int port = door.socket.BoundPort();
        if (when == "Error") door.socket.Close();
        auto caller = std::make_unique<Endpoint>(world);
        bool ended = false;
        caller->then = [&](const std::string& now) {
            EXPECT_FALSE(ended) << now << " behind the end";
            if (!now.starts_with(when)) return;
            ended = true;
            destroy ? caller.reset() : caller->socket.Close();
        };
        caller->connectTo("127.0.0.1", port);
        world.until([&] { return ended; });
        world.settle();
    }
}

}  // namespace
}  // namespace talvora::test
