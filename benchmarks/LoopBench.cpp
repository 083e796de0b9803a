// The real loop: ticks of a 1 ms timer, and bytes through two sockets on loopback.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <optional>
#include <string>

#include "platform_qt/QtLoop.h"
#include "platform_qt/QtSockets.h"

namespace {

using namespace talvora;

// The application of one benchmark, unless there is one already.
struct Application {
    Application() {
        if (QCoreApplication::instance() == nullptr) own.emplace(count, arguments);
    }
    int count = 1;
    char name[6] = "bench";
    char* arguments[2] = {name, nullptr};
    std::optional<QCoreApplication> own;
};

void loopTicks(benchmark::State& state) {
    Application application;
    QtLoop loop;
    std::int64_t ticks = 0;
    WakeUp tick([&] { ++ticks; });
    tick.arm(loop, 1);
    for (auto _ : state) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);  // one turn
    }
    state.SetItemsProcessed(ticks);
}
BENCHMARK(loopTicks)->Name("loop.ticks");

void loopSockets(benchmark::State& state) {
    Application application;
    QtLoop loop;
    QtNetwork network(loop);
    Guard guard;
    Winsock door(guard, network.CreateSocket({})), server(guard, network.CreateSocket({})),
        client(guard, network.CreateSocket({}));
    Subscriptions on;
    std::string got;
    std::size_t received = 0;
    on += door.ConnectionRequest.connect([&] { server.Accept(door); });
    on += server.DataArrival.connect([&] {
        got.clear();
        server.GetData(got);
        received += got.size();
    });
    door.LocalAddress = client.RemoteHost = "127.0.0.1";
    door.Listen();
    client.RemotePort = door.BoundPort();
    client.Connect();
    const std::string batch(8 * 1024 * 1024, 'x');
    const auto turn = [] { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); };
    while (client.State() != SocketState::Connected || server.State() != SocketState::Connected) turn();
    for (auto _ : state) {
        received = 0;
        client.SendData(batch);
        while (received < batch.size()) turn();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(batch.size()));
}
BENCHMARK(loopSockets)->Name("loop.loopback")->UseRealTime();

}  // namespace
