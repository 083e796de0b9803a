// The adapter's host, with an inner driver whose events the test makes.
#include <gtest/gtest.h>

#include "irc/wire/AdaptedSocket.h"
#include "irc/wire/WireWorld.h"
#include "support/VirtualTime.h"

namespace talvora::test {
namespace {

using namespace std::chrono_literals;

struct InnerDriver final : SocketDriver {
    void setListener(Listener* l) override { listener = l; }
    void connect(const std::string&, int) override { closed = false; }
    void listen(const std::string&, int) override {}
    void accept(SocketDriver&) override {}
    void close() override { closed = true; }
    void send(std::string_view bytes) override { sent += bytes; }
    void take(std::string& to) override {
        ++takes;
        to += arrived;
        arrived.clear();
    }
    int localPort() const override { return 0; }
    std::string remoteHost() const override { return {}; }
    int remotePort() const override { return 0; }

    Listener* listener = nullptr;
    bool closed = true;
    int takes = 0;
    std::string sent;
    std::string arrived;
};

// An engine's end that notes what it is told, in order.
class Ends final : public SocketDriver::Listener {
  public:
    explicit Ends(const std::string& value) : Ends(std::make_unique<InnerDriver>(), value) {}

    void onConnected() override { told += "connected;"; }
    void onData() override {
        told += "data;";
        if (takesAtOnce) socket.take(read);
    }
    void onClosed() override { told += "closed;"; }
    void onRequest() override {}
    void onError(int number, const std::string&) override { told += std::to_string(number) + ";"; }

    void arrives(const std::string& bytes) {
        inner.arrived += bytes;
        inner.listener->onData();
    }
    void joinsThes() {
        socket.send("NICK Nikos\r\n");
        arrives(":S 001 Nikos :Hi\r\n:Nikos!~N@h JOIN :#thes\r\n");
        told.clear();
        read.clear();
        inner.sent.clear();
    }

    VirtualTime time;
    std::string told;
    std::string read;
    bool takesAtOnce = true;
    InnerDriver& inner;
    AdaptedSocket socket;

  private:
    Ends(std::unique_ptr<InnerDriver> driver, const std::string& value)
        : inner(*driver), socket(time, std::move(driver), dialect(value)) {
        socket.setListener(this);
        socket.connect("127.0.0.1", 6667);
        inner.listener->onConnected();
    }
};

const std::string answer = ":S 927 Nikos #thes :You are in that channel already\r\n";

TEST(AdaptedSocket, DeliversAnswersFromTheLoopAlone) {
    Ends ends("standard");
    ends.joinsThes();
    ends.socket.send("JOIN #thes\r\n");
    EXPECT_EQ(ends.told, "");
    ends.time.settle();
    EXPECT_EQ(ends.told, "data;");
    EXPECT_EQ(ends.read, answer);
    EXPECT_EQ(ends.inner.sent, "");
    // Taken before the loop came: nothing more is told.
    ends.socket.send("JOIN #thes\r\n");
    ends.socket.take(ends.read);
    ends.time.settle();
    EXPECT_EQ(ends.told, "data;");
    // Closed before the loop came: nothing is told or left over.
    ends.socket.send("JOIN #thes\r\n");
    ends.socket.close();
    ends.time.settle();
    EXPECT_EQ(ends.told, "data;");
    ends.read.clear();
    ends.socket.take(ends.read);
    EXPECT_EQ(ends.read, "");
}

TEST(AdaptedSocket, PullsOnlyWhenAsked) {
    Ends ends("standard");
    ends.takesAtOnce = false;
    ends.arrives("PING :a\r\nPING");
    EXPECT_EQ(ends.inner.takes, 0);
    ends.socket.take(ends.read);
    EXPECT_EQ(ends.inner.takes, 1);
    EXPECT_EQ(ends.read, "PING :a\r\n");
}

TEST(AdaptedSocket, TellsOfTheEndWhenAllIsTaken) {
    Ends ends("standard");
    ends.joinsThes();
    ends.takesAtOnce = false;
    ends.socket.send("JOIN #thes\r\n");
    ends.inner.listener->onClosed();
    ends.time.run(1s);
    EXPECT_EQ(ends.told.find("closed"), std::string::npos);
    ends.socket.take(ends.read);
    EXPECT_EQ(ends.read, answer);
    ends.time.settle();
    EXPECT_TRUE(ends.told.size() > 7 && ends.told.substr(ends.told.size() - 7) == "closed;") << ends.told;
    ends.inner.listener->onConnected();
    Ends other("standard");
    other.told.clear();
    other.inner.listener->onClosed();
    EXPECT_EQ(other.told, "closed;");
}

TEST(AdaptedSocket, EndsWithAnErrorOnAnOverflow) {
    for (const auto* value : {"plain", "standard"}) {
        Ends ends(value);
        ends.told.clear();
        ends.arrives("PING :a\r\n" + std::string(LongestLine + 1, 'x'));
        EXPECT_EQ(ends.told, "data;");
        EXPECT_EQ(ends.read, "PING :a\r\n");
        EXPECT_TRUE(ends.inner.closed);
        ends.time.settle();
        EXPECT_EQ(ends.told, "data;10040;");
        ends.socket.connect("127.0.0.1", 6667);
        ends.inner.listener->onConnected();
        ends.arrives("PING :b\r\n");
        EXPECT_EQ(ends.read, "PING :a\r\nPING :b\r\n");
    }
}

TEST(AdaptedSocket, KeepsTheServersPace) {
    Ends ends("plain +pacing");
    for (int i = 0; i < Pacing::Burst + 3; ++i) ends.socket.send("A" + std::to_string(i) + "\r\n");
    EXPECT_EQ(linesOf(ends.inner.sent).size(), 5U);
    ends.time.run(999ms);
    EXPECT_EQ(linesOf(ends.inner.sent).size(), 5U);
    ends.time.run(2s);
    EXPECT_EQ(linesOf(ends.inner.sent).size(), 7U);
    ends.socket.close();
    ends.time.run(10s);
    EXPECT_EQ(linesOf(ends.inner.sent).back(), "A6");
    EXPECT_EQ(linesOf(ends.inner.sent).size(), 7U);
}

TEST(AdaptedSocket, GivesUpWhenTooMuchWaits) {
    Ends ends("plain +pacing");
    const std::string line = std::string(1000, 'x') + "\r\n";
    for (int i = 0; i < 2000; ++i) ends.socket.send(line);
    EXPECT_TRUE(ends.inner.closed);
    ends.time.settle();
    EXPECT_EQ(ends.told, "connected;10055;");
    ends.inner.sent.clear();
    ends.time.run(5s);
    EXPECT_EQ(ends.inner.sent, "");
}

}  // namespace
}  // namespace talvora::test
