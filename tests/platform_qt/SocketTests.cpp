#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QAbstractEventDispatcher>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <list>
#include <map>
#include <memory>
#include <thread>

#include "platform_qt/Descriptor.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/Worlds.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

using namespace std::chrono_literals;

// A listener of the system's own sockets, which does what no Winsock does.
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
    sockaddr_in address{};
    Descriptor door;
};

// Answers whatever comes, after a rest.
struct Echo {
    explicit Echo(std::chrono::milliseconds rest)
        : thread([this, rest] {
              const Descriptor link(::accept(peer.door.get(), nullptr, nullptr));
              std::array<char, 64> bytes{};
              for (ssize_t size = 0; (size = ::recv(link.get(), bytes.data(), bytes.size(), 0)) > 0;) {
                  std::this_thread::sleep_for(rest);
                  ::send(link.get(), bytes.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL);
              }
          }) {}
    ~Echo() { thread.join(); }
    RawPeer peer;
    std::thread thread;
};

// Of both kinds: those that answer at once, and the others.
struct Sockets : testing::TestWithParam<bool> {
    RealWorld world{GetParam()};
    Connection both{world};
    Endpoint& client = both.client;
    Endpoint& server = both.server;
};

TEST_P(Sockets, FindOutAnEndThatIsGoneWithoutAWord) {
    std::map<int, int> idle;  // seconds until the first question, by port of this end
    for (int number = 0; number < 1024; ++number) {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        int alive = 0, seconds = 0, waits = 0;
        socklen_t length = sizeof(int);
        if (::getsockname(number, reinterpret_cast<sockaddr*>(&address), &size) != 0) continue;
        ::getsockopt(number, SOL_SOCKET, SO_KEEPALIVE, &alive, &length);
        ::getsockopt(number, IPPROTO_TCP, TCP_KEEPIDLE, &seconds, &length);
        ::getsockopt(number, IPPROTO_TCP, TCP_USER_TIMEOUT, &waits, &length);
        if (alive != 0 && waits == 120'000) idle[ntohs(address.sin_port)] = seconds;
    }
    EXPECT_EQ(idle[client.socket.BoundPort()], 60);
    EXPECT_EQ(idle[server.socket.BoundPort()], 60);
}

TEST_P(Sockets, AndFilesFaultWithoutASignal) {
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_DFL);
    QtPlatform::prepareProcess();
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ::close(ends[0]);
    EXPECT_EQ(::write(ends[1], "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
    ::close(ends[1]);
    EXPECT_EQ(std::signal(SIGXFSZ, SIG_IGN), SIG_IGN);
}

TEST_P(Sockets, FailuresToConnectCarryTheirNumbers) {
    const int port = both.door.socket.BoundPort();
    both.door.socket.Close();
    using Row = std::tuple<std::string, int, int>;
    for (const auto& [host, to, number] :
         {Row("127.0.0.1", port, SocketErrors::ConnectionRefused),
          Row("..", 6667, SocketErrors::HostNotFound), Row("", 6667, SocketErrors::HostNotFound),
          Row("127.0.0.1", 70000, SocketErrors::Other), Row("127.0.0.1", -1, SocketErrors::Other)}) {
        Endpoint caller(world);
        caller.connectTo(host, to);
        caller.untilSaw("Error");
        EXPECT_EQ(caller.log, "Error " + std::to_string(number) + ";") << host << to;
        EXPECT_NE(caller.description, "");
    }
}

TEST_P(Sockets, GiveUpAnAttemptAfterThirtySeconds) {
    RawPeer peer(0);
    std::list<Descriptor> fillers;
    for (int i = 0; i < 4; ++i) {
        fillers.emplace_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
        ::connect(fillers.back().get(), peer.name(), sizeof peer.address);
    }
    VirtualTime time;
    QtNetwork network(time);
    Winsock caller(world.guard, network.CreateSocket({}));
    int number = 0;
    const auto on = caller.Error.connect([&](int error, const std::string&) { number = error; });
    caller.RemoteHost = "127.0.0.1";
    caller.RemotePort = peer.port();
    caller.Connect();
    QCoreApplication::processEvents();
    time.run(std::chrono::seconds(29));
    EXPECT_EQ(number, 0);
    time.run(std::chrono::seconds(2));
    EXPECT_EQ(number, SocketErrors::TimedOut);
}

TEST_P(Sockets, TellAResetFromAnEndAndEndWhenThePeerNeverReads) {
    for (const bool resets : {true, false}) {
        RawPeer peer;
        Endpoint caller(world);
        caller.connectTo("127.0.0.1", peer.port());
        caller.untilSaw("Connect");
        Descriptor link(::accept(peer.door.get(), nullptr, nullptr));
        const linger now{1, 0};
        ::setsockopt(link.get(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
        if (resets) link.reset();
        const std::string piece(1024 * 1024, 'x');
        for (int i = 0; i < 64 && !resets && !caller.saw("Error"); ++i) {
            caller.operation([&] { caller.socket.SendData(piece); });
            world.loop.Pump();
        }
        caller.untilSaw("Error");
        EXPECT_EQ(caller.log, resets ? "Connect;Error 10054;" : "Connect;Error 10055;");
    }
}

TEST_P(Sockets, HoldAFloodingPeerUpAndLoseNothing) {
    const std::string sent = patterned(8 * 1024 * 1024);
    server.taking = false;
    client.socket.SendData(sent);
    server.untilSaw("Data");
    world.settle();
    const auto echo = [&] {
        std::string piece;
        server.socket.GetData(piece);
        EXPECT_LE(piece.size(), 256U * 1024);
        server.socket.SendData(piece);
    };
    echo();
    server.then = [&](const std::string&) { echo(); };
    world.until([&] { return client.data.size() >= sent.size(); });
    EXPECT_TRUE(client.data == sent);
}

// It is destroyed at last in the middle of a turn that it keeps.
TEST(SocketsThatAnswerAtOnce, KeepTheTurnForAQuickPeerOnlyAndNotForLong) {
    for (const std::chrono::milliseconds rest : {0ms, 3ms}) {
        RealWorld world(true);
        Echo echo(rest);
        auto caller = std::make_unique<Endpoint>(world);
        constexpr int mostMessages = 50'000;
        int messages = 0, inTurn = 0, most = 0, ticks = 0;
        const QObject context;
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context,
                         [&] { inTurn = 0; });
        WakeUp others([&] { ++ticks; });
        others.arm(world.loop, 10);
        caller->then = [&](const std::string&) {
            most = std::max(most, ++inTurn);
            const bool enough = ticks >= 10 && (inTurn > 2 || rest > 0ms);
            caller->socket.SendData("x");
            if (enough || ++messages > mostMessages) caller.reset();
        };
        caller->connectTo("127.0.0.1", echo.peer.port());
        world.until([&] { return caller == nullptr; });
        EXPECT_GE(ticks, 10) << "in " << messages << " messages";
        EXPECT_LE(messages, mostMessages) << "and never more than " << most << " in a turn";
        if (rest > 0ms) EXPECT_EQ(most, 1);
    }
}

TEST_P(Sockets, KeepSixteenWaitingAtADoorAndDropTheRest) {
    Endpoint door(world), second(world);
    int requests = 0;
    door.then = [&](const std::string&) { ++requests; };
    door.listen();
    second.socket.LocalPort = door.socket.BoundPort();
    EXPECT_EQ(faultOf([&] { second.listen(); }), SocketErrors::AddressInUse);
    std::list<Endpoint> callers;
    for (int i = 0; i < 20; ++i) {
        callers.emplace_back(world).connectTo("127.0.0.1", door.socket.BoundPort());
        callers.back().untilSaw("Connect");
    }
    callers.back().untilSaw("Close");
    world.until([&] { return requests == 16; });
    world.settle();
    EXPECT_EQ(requests, 16);
    for (int i = 0; i < 16; ++i) {
        Endpoint accepted(world);
        accepted.socket.Accept(door.socket);
        accepted.socket.SendData("x");
        callers.front().untilSaw("Data");
        callers.pop_front();
    }
    EXPECT_THROW(second.socket.Accept(door.socket), RuntimeError);
    EXPECT_EQ(second.socket.State(), SocketState::Closed);
}

INSTANTIATE_TEST_SUITE_P(OfBothKinds, Sockets, testing::Bool());

}  // namespace
}  // namespace talvora::test
