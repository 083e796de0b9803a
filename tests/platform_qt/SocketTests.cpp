#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <sys/socket.h>

#include <memory>
#include <vector>

#include "RealWorld.h"
#include "platform_qt/Descriptor.h"
#include "support/VirtualTime.h"

namespace talvora::test {

namespace {

using namespace std::chrono_literals;

std::string patterned(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 2654435761U >> 24);
    return bytes;
}

// A peer of the system's own sockets, which does what no Winsock does.
struct RawPeer {
    explicit RawPeer(int backlog = 8) : door(::socket(AF_INET, SOCK_STREAM, 0)) {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::bind(door.get(), name(), sizeof address);
        socklen_t size = sizeof address;
        ::getsockname(door.get(), name(), &size);
        ::listen(door.get(), backlog);
    }
    sockaddr* name() { return reinterpret_cast<sockaddr*>(&address); }
    int port() const { return ntohs(address.sin_port); }
    void accept() { link.reset(::accept(door.get(), nullptr, nullptr)); }
    void reset() {
        const linger now{1, 0};
        ::setsockopt(link.get(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
        link.reset();
    }
    // A connection that nobody accepts.
    Descriptor knock() {
        Descriptor knocking(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
        ::connect(knocking.get(), name(), sizeof address);
        return knocking;
    }
    sockaddr_in address{};
    Descriptor door, link;
};

}  // namespace

TEST(Sockets, TalkBothWaysAndTellTheirPorts) {
    RealWorld world;
    Connection both(world);
    EXPECT_EQ(both.client.socket.State(), SocketState::Connected);
    EXPECT_EQ(both.server.socket.RemoteHost, "127.0.0.1");
    EXPECT_EQ(both.server.socket.RemotePort, both.client.socket.BoundPort());
    both.client.operation([&] { both.client.socket.SendData(std::string("a\0\xff", 3)); });
    both.server.untilSaw("Data");
    EXPECT_EQ(both.server.data, std::string("a\0\xff", 3));
    both.server.socket.SendData("back");
    both.client.untilSaw("Data");
    EXPECT_EQ(both.client.log, "Connect;Data;");
    EXPECT_EQ(both.client.data, "back");
}

TEST(Sockets, FailuresToConnectCarryTheirNumbers) {
    RealWorld world;
    int closedPort = 0;
    {
        Endpoint door(world);
        door.listen();
        closedPort = door.socket.BoundPort();
    }
    const struct {
        std::string host;
        int port;
        int number;
    } cases[] = {{"127.0.0.1", closedPort, SocketErrors::ConnectionRefused},
                 {"..", 6667, SocketErrors::HostNotFound},
                 {"", 6667, SocketErrors::HostNotFound},
                 {"127.0.0.1", 70000, SocketErrors::Other},
                 {"127.0.0.1", -1, SocketErrors::Other}};
    for (const auto& one : cases) {
        Endpoint client(world);
        client.connectTo(one.host, one.port);
        client.untilSaw("Error");
        EXPECT_EQ(client.log, "Error " + std::to_string(one.number) + ";") << one.host << one.port;
        EXPECT_FALSE(client.description.empty());
        client.socket.Close();
    }
}

TEST(Sockets, GiveUpAnAttemptAfterThirtySeconds) {
    RawPeer peer(0);
    std::vector<Descriptor> fillers;
    for (int i = 0; i < 4; ++i) fillers.push_back(peer.knock());
    VirtualTime time;
    QtNetwork network(time);
    Guard guard;
    Winsock client(guard, network.CreateSocket({}));
    int number = 0;
    const auto on = client.Error.connect([&](int error, const std::string&) { number = error; });
    client.RemoteHost = "127.0.0.1";
    client.RemotePort = peer.port();
    client.Connect();
    QCoreApplication::processEvents();
    time.run(29s);
    EXPECT_EQ(number, 0);
    time.run(2s);
    EXPECT_EQ(number, SocketErrors::TimedOut);
}

TEST(Sockets, TellTheEndOnlyWhenEverythingWasTaken) {
    RealWorld world;
    Connection both(world);
    both.client.taking = false;
    const std::string sent = patterned(900'000);
    both.server.socket.SendData(sent);
    both.server.socket.Close();
    both.client.untilSaw("Data");
    world.settle();
    EXPECT_EQ(both.client.log, "Connect;Data;");
    std::string first;
    both.client.operation([&] { both.client.socket.GetData(first); });
    EXPECT_LE(first.size(), 256U * 1024);
    both.client.data = first;
    both.client.taking = true;
    both.client.untilSaw("Close");
    EXPECT_EQ(both.client.log, "Connect;Data;Close;");
    EXPECT_TRUE(both.client.data == sent);
}

TEST(Sockets, TellTheEndWhenTheLastBytesAreTakenLate) {
    RealWorld world;
    Connection both(world);
    both.client.taking = false;
    both.server.socket.SendData("last words");
    both.server.socket.Close();
    both.client.untilSaw("Data");
    world.settle();
    both.client.operation([&] { both.client.socket.GetData(both.client.data); });
    both.client.untilSaw("Close");
    EXPECT_EQ(both.client.data, "last words");
}

TEST(Sockets, TellAResetFromAnEnd) {
    RealWorld world;
    RawPeer peer;
    Endpoint client(world);
    client.connectTo("127.0.0.1", peer.port());
    client.untilSaw("Connect");
    peer.accept();
    peer.reset();
    client.untilSaw("Error");
    EXPECT_EQ(client.log, "Connect;Error 10054;");
}

TEST(Sockets, HoldAFloodingPeerUpAndLoseNothing) {
    RealWorld world;
    Connection both(world);
    const std::string sent = patterned(8 * 1024 * 1024);
    Endpoint& server = both.server;
    server.taking = false;
    both.client.socket.SendData(sent);
    server.untilSaw("Data");
    world.settle();
    std::string waiting;
    server.socket.GetData(waiting);
    EXPECT_LE(waiting.size(), 256U * 1024);
    server.socket.SendData(waiting);
    server.then = [&](const std::string&) {
        std::string piece;
        server.socket.GetData(piece);
        server.socket.SendData(piece);
    };
    RealWorld::until([&] { return both.client.data.size() >= sent.size(); });
    EXPECT_TRUE(both.client.data == sent);
}

TEST(Sockets, EndWhenThePeerNeverReads) {
    RealWorld world;
    RawPeer peer;
    Endpoint client(world);
    client.connectTo("127.0.0.1", peer.port());
    client.untilSaw("Connect");
    peer.accept();
    const std::string piece(1024 * 1024, 'x');
    for (int i = 0; i < 64 && !client.saw("Error"); ++i) {
        client.operation([&] { client.socket.SendData(piece); });
        world.loop.Pump();
    }
    client.untilSaw("Error");
    EXPECT_EQ(client.log, "Connect;Error 10055;");
}

TEST(Sockets, DeliverWhatWasSentBeforeAClose) {
    RealWorld world;
    Connection both(world);
    both.client.taking = false;
    both.server.socket.SendData(
        patterned(4 * 1024 * 1024));  // unread bytes must not turn the end into a reset
    both.client.untilSaw("Data");
    const std::string sent = patterned(3 * 1024 * 1024) + "QUIT";
    both.client.socket.SendData(sent);
    both.client.socket.Close();
    both.client.socket.Close();
    both.server.untilSaw("Close");
    EXPECT_TRUE(both.server.data == sent);
    EXPECT_FALSE(both.server.saw("Error"));
    EXPECT_EQ(both.client.log, "Connect;Data;");
}

TEST(Sockets, MayBeClosedOrDestroyedInAnyEvent) {
    for (const bool destroy : {false, true}) {
        for (const std::string event : {"Connect", "Data", "Close", "Error"}) {
            RealWorld world;
            Endpoint door(world);
            door.listen();
            const int port = door.socket.BoundPort();
            if (event == "Error") door.socket.Close();
            Endpoint server(world);
            auto client = std::make_unique<Endpoint>(world);
            bool ended = false;
            client->then = [&](const std::string& now) {
                if (!now.starts_with(event)) return;
                ended = true;
                if (destroy) {
                    client.reset();
                } else {
                    client->socket.Close();
                }
            };
            door.then = [&](const std::string&) {
                server.socket.Accept(door.socket);
                server.socket.SendData("hello");
                if (event == "Close") server.socket.Close();
            };
            client->connectTo("127.0.0.1", port);
            RealWorld::until([&] { return ended; });
            world.settle();
            if (client) {
                EXPECT_THAT(client->last, testing::StartsWith(event));
            }
        }
    }
}

TEST(Sockets, ConnectAgainAfterAClose) {
    RealWorld world;
    Connection both(world);
    both.client.socket.Close();
    both.client.log.clear();
    both.client.last.clear();
    both.client.connectTo("127.0.0.1", both.door.socket.BoundPort());
    both.client.untilSaw("Connect");
    EXPECT_EQ(both.client.log, "Connect;");
}

TEST(Listening, FaultsWhenThePortIsTaken) {
    RealWorld world;
    Endpoint first(world), second(world);
    first.listen();
    second.socket.LocalPort = first.socket.BoundPort();
    try {
        second.listen();
        ADD_FAILURE() << "two listeners on one port";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number, SocketErrors::AddressInUse);
    }
    EXPECT_EQ(second.socket.State(), SocketState::Closed);
}

TEST(Listening, KeepsSixteenWaitingAndDropsTheRest) {
    RealWorld world;
    Endpoint door(world);
    int requests = 0;
    door.then = [&](const std::string&) { ++requests; };
    door.listen();
    std::vector<std::unique_ptr<Endpoint>> callers;
    for (int i = 0; i < 20; ++i) {
        callers.push_back(std::make_unique<Endpoint>(world));
        callers.back()->connectTo("127.0.0.1", door.socket.BoundPort());
        callers.back()->untilSaw("Connect");
    }
    callers.back()->untilSaw("Close");
    RealWorld::until([&] { return requests == 16; });
    world.settle();
    EXPECT_EQ(requests, 16);
    for (int i = 0; i < 16; ++i) {
        Endpoint server(world);
        server.socket.Accept(door.socket);
        server.socket.SendData("x");
        callers[static_cast<std::size_t>(i)]->untilSaw("Data");
    }
    Endpoint server(world);
    EXPECT_THROW(server.socket.Accept(door.socket), RuntimeError);
    EXPECT_EQ(server.socket.State(), SocketState::Closed);
}

}  // namespace talvora::test
