#pragma once
// Two whole clients in one world who send each other files, and strangers in the place of either.

#include <string>
#include <vector>

#include "Vocabulary.h"
#include "platform/CodePage1253.h"
#include "platform/Text.h"
#include "simulation/Relay.h"
#include "transfer/FormatBit.h"

namespace talvora::test {

constexpr const char* anna = "Anna";
constexpr const char* bob = "Bob";

inline std::string framed(const std::string& message) {
    return message + std::string(TransferStream::Delimiter);
}

// A sender of a stranger's making: says what a test has him say.
struct Stranger {
    Stranger(World& world, Client& victim)
        : time(world.time), socket(victim.around.platform.Guarded, world.network.CreateSocket({})) {
        on += socket.DataArrival.connect([this] { socket.GetData(heard); });
        socket.RemoteHost = victim.profile.ReceiveAddress;
        socket.RemotePort = TransferPort;
        socket.Connect();
        time.run(50ms);
    }
    void says(const std::string& bytes) {
        if (connected()) socket.SendData(bytes);
        time.run(50ms);
    }
    bool connected() const { return socket.State() == SocketState::Connected; }

    VirtualTime& time;
    Winsock socket;
    std::string heard;
    Subscriptions on;
};

class TransferTest : public testing::Test {
  protected:
    TransferTest() : a(world.loggedIn(anna)), b(world.loggedIn(bob)) {
        for (Client* client : {&a, &b}) client->around.disk.put("Received/old.txt", "old");
    }

    TransferDesk& desk(Client& of) { return of.component->Transfers(); }
    frmReceiveFile& receiver() { return *desk(b).Receiver.Get(); }
    frmTransferStatus* sender() { return desk(a).Status.Get(); }
    void blockSize(int bytes) {
        a.around.settings.SaveSetting("Talvora", "Settings", "PackageSplit", CStr(bytes));
    }

    // Anna offers files to an address, and waits for the answer.
    void offer(const Texts& paths, const std::string& address = "address-of-Bob") {
        static_cast<FileOffers&>(desk(a).Offers()).Offer("", paths);
        desk(a).Dialog.Get()->Text1.Text = address;
        desk(a).Dialog.Get()->Command4.Click.raise();
        world.time.run(1s);
    }
    void offer(const std::string& content) {
        a.around.disk.picked["/home/anna/new.txt"] = content;
        offer(Texts{"/home/anna/new.txt"});
    }
    void accept() {
        receiver().Command2.Click.raise();
        world.time.run(3s);
    }
    std::string received(const std::string& name = "new.txt") {
        return b.around.disk.content("Received/" + name).value_or("(none)");
    }
    std::size_t wasted() {
        std::size_t count = 0;
        for (const auto& path : b.around.disk.paths()) count += path.starts_with(".waste/") ? 1 : 0;
        return count;
    }
    // Only the other side's "X" ends what the receiver's abort has begun.
    void stopTimer3() {
        b.around.questions.willAnswer(Answer::Ok);
        Stranger(world, b).says(framed("X"));
        world.time.run(50ms);
    }
    Texts outcomes(Client& of) {
        Texts all;
        for (const FinishedFile& file : desk(of).History.Files()) all.push_back(file.Outcome);
        return all;
    }
    // An honest transfer, from the offer to the stored file; true if it came over.
    bool goesWell() {
        a.around.disk.picked["/home/anna/honest.txt"] = std::string(1024, 'h');
        offer(Texts{"/home/anna/honest.txt"});
        accept();
        return received("honest.txt") == std::string(1024, 'h');
    }

    World world;
    Client& a;
    Client& b;
};

}  // namespace talvora::test
