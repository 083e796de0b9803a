#pragma once
// What the tests of loops and sockets share: a loop with its network, on the real platform or on virtual
// time, and running it until something holds.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <functional>
#include <string>

#include "platform/Winsock.h"
#include "platform_qt/QtLoop.h"
#include "platform_qt/QtSockets.h"
#include "simulation/VirtualNetwork.h"

namespace talvora::test {

struct AnyWorld {
    explicit AnyWorld(bool atOnce = false) : answersAtOnce(atOnce) {}
    virtual ~AnyWorld() = default;
    virtual Loop& TheLoop() = 0;
    virtual Network& Sockets() = 0;
    // Runs the loop until `holds`; a minute without it fails the test.
    virtual void until(const std::function<bool()>& holds) = 0;
    // Lets everything run that is under way on this machine.
    virtual void settle() = 0;

    Guard guard;
    const bool answersAtOnce;  // so do the endpoints
};

struct RealWorld final : AnyWorld {
    using AnyWorld::AnyWorld;

    QtLoop loop;
    QtNetwork network{loop};

    Loop& TheLoop() override { return loop; }
    Network& Sockets() override { return network; }
    void until(const std::function<bool()>& holds) override {
        bool late = false;
        QTimer limit;
        limit.callOnTimeout([&late] { late = true; });
        limit.start(60'000);
        while (!holds() && !late) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ASSERT_FALSE(late) << "it never came to hold";
    }
    void settle() override {
        for (int round = 0; round < 200; ++round) loop.Pump();
    }
};

struct VirtualWorld final : AnyWorld {
    VirtualTime time;
    VirtualNetwork network{time};

    Loop& TheLoop() override { return time; }
    Network& Sockets() override { return network; }
    void until(const std::function<bool()>& holds) override {
        for (int ms = 0; !holds(); ++ms) {
            ASSERT_LT(ms, 60'000) << "it never came to hold";
            time.run(std::chrono::milliseconds(1));
        }
    }
    void settle() override { time.run(std::chrono::milliseconds(20)); }
};

// Bytes that tell if one is missing or stands elsewhere.
inline std::string patterned(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 2654435761U >> 24);
    return bytes;
}

// A socket of the component that keeps a log of its events.
struct Endpoint {
    explicit Endpoint(AnyWorld& w, const Network::Security& security = {})
        : world(w), socket(w.guard, w.Sockets().CreateSocket(security)) {
        if (w.answersAtOnce) socket.AnswerAtOnce();
        on += socket.Connected.connect([this] { note("Connect"); });
        on += socket.DataArrival.connect([this] {
            if (taking) socket.GetData(data);
            note("Data");
        });
        on += socket.Closed.connect([this] { note("Close"); });
        on += socket.Error.connect([this](int number, const std::string& text) {
            description = text;
            note("Error " + std::to_string(number));
        });
        on += socket.ConnectionRequest.connect([this] { note("Request"); });
    }

    // The same event in a row is logged once. `then` may destroy this.
    void note(const std::string& event) {
        if (inside) ADD_FAILURE() << event << " from inside a call";
        if (event != last) log += event + ";";
        last = event;
        if (const auto action = then; action) action(event);
    }
    bool saw(const std::string& event) const { return log.find(event) != std::string::npos; }
    void untilSaw(const std::string& event) {
        world.until([&] { return saw(event); });
    }
    template <class Call>
    void operation(Call call) {
        inside = true;
        call();
        inside = false;
    }
    void connectTo(const std::string& host, int port) {
        socket.RemoteHost = host;
        socket.RemotePort = port;
        operation([this] { socket.Connect(); });
    }
    void listen() {
        socket.LocalAddress = "127.0.0.1";
        socket.Listen();
    }

    AnyWorld& world;
    Winsock socket;
    Subscriptions on;
    std::string log, last, data, description;
    bool taking = true;
    bool inside = false;
    std::function<void(const std::string&)> then;
};

// A listener and the two ends of one connection to it.
struct Connection {
    explicit Connection(AnyWorld& world) : door(world), server(world), client(world) {
        door.listen();
        client.connectTo("127.0.0.1", door.socket.BoundPort());
        door.untilSaw("Request");
        server.socket.Accept(door.socket);
        client.untilSaw("Connect");
    }
    Endpoint door, server, client;
};

}  // namespace talvora::test
