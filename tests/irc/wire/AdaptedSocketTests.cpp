// The adapter's host between an engine's end and a server.
#include "Vocabulary.h"
#include "irc/wire/AdaptedSocket.h"
#include "irc/wire/WireWorld.h"
#include "simulation/VirtualNetwork.h"

namespace talvora::test {
namespace {

// An engine's end that notes what it is told, in order.
struct Ends final : SocketDriver::Listener {
    explicit Ends(const std::string& value) : socket(time, network.CreateSocket({}), dialect(value)) {
        socket.setListener(this);
        connects();
    }
    void onConnected() override { told.clear(); }
    void onData() override { told += "data;"; }
    void onClosed() override { told += "closed;"; }
    void onRequest() override {}
    void onError(int number, const std::string&) override { told += std::to_string(number) + ";"; }

    void connects() {
        socket.connect("irc.test", 6667);
        time.settle();
    }
    std::string takes() {
        std::string read;
        socket.take(read);
        return read;
    }
    // What the adapter answers itself.
    void joinsAgain() {
        socket.send("NICK Nikos\r\n");
        server.says(":S 001 Nikos :Hi\r\n:Nikos!~N@h JOIN :#a");
        time.settle();
        takes();
        told.clear();
        server.transcript.clear();
        socket.send("JOIN #a\r\n");
    }

    std::string told;
    VirtualTime time;
    VirtualNetwork network{time};
    ScriptedServer& server = network.server("irc.test", 6667);
    AdaptedSocket socket;
};

const std::string answer = ":S 927 Nikos #a :You are in that channel already\r\n";

TEST(AdaptedSocket, DeliversAnswersFromTheLoopAlone) {
    Ends ends("standard");
    ends.joinsAgain();
    EXPECT_EQ(ends.told, "");
    ends.time.settle();
    EXPECT_EQ(ends.told + ends.takes() + ends.server.transcript, "data;" + answer);
    // Taken, or closed, before the loop came: nothing more is told or left over.
    ends.joinsAgain();
    EXPECT_EQ(ends.takes(), answer);
    ends.time.settle();
    EXPECT_EQ(ends.told, "");
    ends.joinsAgain();
    ends.socket.close();
    ends.time.settle();
    EXPECT_EQ(ends.told + ends.takes(), "");
}

TEST(AdaptedSocket, PullsOnlyWhenAskedAndTellsOfTheEndWhenAllIsTaken) {
    for (const std::string line : {"PING :a\r\n", ""}) {
        Ends ends("standard");
        ends.joinsAgain();
        ends.server.sends(line);
        ends.server.closes();
        ends.time.run(1s);
        EXPECT_EQ(ends.told.find("closed"), std::string::npos) << ends.told;
        EXPECT_EQ(ends.takes(), answer + line);
        EXPECT_EQ(ends.told.find("closed"), std::string::npos) << "from inside a call";
        ends.time.settle();
        EXPECT_TRUE(ends.told.ends_with("data;closed;")) << ends.told;
    }
}

TEST(AdaptedSocket, EndsWithAnErrorOnAnOverflowAndMayConnectAgain) {
    for (const auto* value : {"plain", "standard"}) {
        Ends ends(value);
        ends.server.says("PING :a\r\n" + std::string(LongestLine + 1, 'x'));
        ends.time.settle();
        EXPECT_EQ(ends.takes() + ends.told, "PING :a\r\ndata;");
        ends.time.settle();
        EXPECT_EQ(ends.told, "data;10040;");
        EXPECT_FALSE(ends.server.connected());
        ends.connects();
        ends.server.says("PING :b");
        ends.time.settle();
        EXPECT_EQ(ends.takes(), "PING :b\r\n");
    }
    Ends ends("plain +pacing");
    for (int i = 0; i < 2000; ++i) ends.socket.send(std::string(1000, 'x') + "\r\n");
    EXPECT_EQ(ends.told, "");
    ends.time.run(5s);
    EXPECT_EQ(ends.told, "10055;");
    EXPECT_LE(ends.server.heard().size(), 5U);
}

TEST(AdaptedSocket, KeepsTheServersPaceUntilItIsClosed) {
    Ends ends("plain +pacing");
    ends.socket.send("A\rB\rC\rD\rE\rF\rG\rH\r");
    ends.time.run(999ms);
    EXPECT_EQ(ends.server.heard().size(), 5U);
    ends.time.run(2s);
    ends.socket.close();
    ends.time.run(10s);
    EXPECT_EQ(replaced(ends.server.transcript, "\r\n", ""), "ABCDEFG");
}

}  // namespace
}  // namespace talvora::test
