#pragma once
// What the tests of the real platform share: a loop with sockets, and running it until something holds.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <functional>
#include <string>

#include "platform/Winsock.h"
#include "platform_qt/QtLoop.h"
#include "platform_qt/QtSockets.h"

namespace talvora::test {

struct RealWorld {
    QtLoop loop;
    QtNetwork network{loop};
    Guard guard;

    // Runs the loop until `holds`; a minute without it fails the test.
    static void until(const std::function<bool()>& holds) {
        bool late = false;
        QTimer limit;
        limit.callOnTimeout([&late] { late = true; });
        limit.start(60'000);
        while (!holds() && !late) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ASSERT_FALSE(late) << "it never came to hold";
    }
    // Lets everything run that is under way on this machine.
    void settle() {
        for (int round = 0; round < 200; ++round) loop.Pump();
    }
};

// A socket of the component that keeps a log of its events.
struct Endpoint {
    explicit Endpoint(RealWorld& w, const Network::Security& security = {})
        : world(w), socket(w.guard, w.network.CreateSocket(security)) {
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
        RealWorld::until([&] { return saw(event); });
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

    RealWorld& world;
    Winsock socket;
    Subscriptions on;
    std::string log, last, data, description;
    bool taking = true;
    bool inside = false;
    std::function<void(const std::string&)> then;
};

// A listener and the two ends of one connection to it.
struct Connection {
    explicit Connection(RealWorld& world) : door(world), server(world), client(world) {
        door.listen();
        client.connectTo("127.0.0.1", door.socket.BoundPort());
        door.untilSaw("Request");
        server.socket.Accept(door.socket);
        client.untilSaw("Connect");
    }
    Endpoint door, server, client;
};

}  // namespace talvora::test
