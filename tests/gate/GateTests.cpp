#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <filesystem>
#include <fstream>

#include "gate/Gate.h"
#include "gate/GateJson.h"
#include "gate/LocalSocket.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

// Lets the loop run until `holds`; a test that waits in vain fails.
template <class Condition>
bool runUntil(Condition&& holds) {
    bool late = false;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, &limit, [&] { late = true; });
    limit.start(20000);
    while (!holds() && !late) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return holds();
}

struct Database final : MessageDatabase {
    void Broadcast(const HostMessage& message) override { MessageBroadcasted.raise(message); }
    void says(std::int32_t number, HostValue data = {}) {
        Broadcast({number, 1, HostAddress::Everybody, "", std::move(data), 0});
    }
};

struct Client {
    explicit Client(const std::string& path) {
        QObject::connect(&socket, &QLocalSocket::readyRead, &socket, [this] {
            while (reading && socket.canReadLine()) lines.push_back(socket.readLine().toStdString());
        });
        socket.connectToServer(QString::fromStdString(path));
    }

    void says(const std::string& text) { socket.write(text.data(), static_cast<qint64>(text.size())); }
    bool connected() const { return socket.state() == QLocalSocket::ConnectedState; }
    bool hears(std::size_t count) {
        return runUntil([&] { return lines.size() >= count || !connected(); }) && lines.size() == count;
    }

    bool reading = true;
    std::vector<std::string> lines;
    QLocalSocket socket;
};

class GateTest : public testing::Test {
  protected:
    GateTest() { gate.Open(path); }

    std::unique_ptr<Client> reader() {
        const std::size_t before = gate.Readers();
        auto client = std::make_unique<Client>(path);
        EXPECT_TRUE(runUntil([&] { return gate.Readers() > before; }));
        return client;
    }

    QTemporaryDir folder;
    std::string root = folder.path().toStdString();
    std::string path = root + "/run/gate";
    Database database;
    Gate gate{database};
    std::vector<HostMessage> seen;
    std::function<void(const HostMessage&)> handler = [](const HostMessage&) {};
    Subscription on = database.MessageBroadcasted.connect([this](const HostMessage& message) {
        seen.push_back(message);
        handler(message);
    });
};

TEST_F(GateTest, EveryReaderHearsWhateverIsBroadcastAfterItCameInItsOrder) {
    handler = [this](const HostMessage& message) {
        if (message.MsgID == 1) database.says(2);
    };
    database.says(1004);
    auto anna = reader();
    database.says(1005, "first");
    auto nikos = reader();
    database.says(1);
    ASSERT_TRUE(anna->hears(3) && nikos->hears(2));
    EXPECT_THAT(anna->lines, ElementsAre(HasSubstr("\"first\""), nikos->lines[0], nikos->lines[1]));
    EXPECT_THAT(nikos->lines, ElementsAre(HasSubstr("\"MsgID\":1,"), HasSubstr("\"MsgID\":2,")));
}

TEST_F(GateTest, ALineIsBroadcastWithTheNumberOfItsConnectionAndWhatIsWrongAnsweredInItsPlace) {
    handler = [](const HostMessage& message) {
        if (message.MsgID == 1002) message.Data.at(0);
    };
    auto anna = reader();
    auto nikos = reader();
    nikos->says("{\"MsgID\":\n{\"MsgID\":1002,\"FromID\":1,\"ToID\":4,\"Data\":[]}\n\n{\"MsgID\":5}\n");
    ASSERT_TRUE(nikos->hears(5) && anna->hears(2));
    EXPECT_THAT(nikos->lines, ElementsAre(HasSubstr("{\"error\":\"no JSON"), anna->lines[0],
                                          HasSubstr("{\"error\":\"fault 9: Subscript out of range\"}"),
                                          HasSubstr(std::string(GateEmptyLine)), anna->lines[1]));
    EXPECT_EQ(seen[0].FromID, Gate::FirstReader + 1);
    EXPECT_EQ(seen[0].ToID, 4);
}

TEST_F(GateTest, LinesOfOneThatHasLeftAreStillHandledInOrderWhenAHandlerLetsTheLoopRun) {
    auto anna = reader();
    int depth = 0;
    handler = [&](const HostMessage& message) {
        EXPECT_EQ(++depth, 1);
        EXPECT_EQ(message.MsgID, static_cast<int>(seen.size()) - 1);
        if (message.MsgID == 1) anna->socket.disconnectFromServer();
        for (int i = 0; i < 10 && message.MsgID == 1; ++i) QCoreApplication::processEvents();
        --depth;
    };
    for (int i = 0; i < 1000; ++i)
        anna->says("{\"MsgID\":" + std::to_string(i) + "," + std::string(1000, ' ') + "\"Extra\":1}\n");
    anna->says("{\"MsgID\":1000}");  // the torn end is not
    EXPECT_TRUE(runUntil([&] { return gate.Readers() == 0; }));
    EXPECT_EQ(seen.size(), 1000u);
}

TEST_F(GateTest, AnOverlongLineEndsItsConnectionAndOneOfTheLongestDoesNot) {
    auto anna = reader();
    auto nikos = reader();
    const std::string start = R"({"MsgID":9,"Data":")";
    anna->says(start + std::string(GateLineLimit - start.size() - 2, 'x') + "\"}\n");
    nikos->says(std::string(GateLineLimit + 1, 'x'));
    EXPECT_TRUE(runUntil([&] { return !nikos->connected() && seen.size() == 1; }));
    EXPECT_TRUE(anna->connected());
}

TEST_F(GateTest, AReaderThatDoesNotKeepUpIsDroppedAndTheOthersMissNothing) {
    auto slow = reader();
    auto quick = reader();
    // One byte is taken in advance at most, so that the rest stays with the sender.
    slow->socket.setReadBufferSize(1);
    slow->reading = false;
    std::size_t told = 0;
    for (; gate.Readers() == 2 && told * 100000 < 2 * Gate::QueueLimit; ++told) {
        database.says(1012, std::string(100000, 'x'));
        EXPECT_TRUE(quick->hears(told + 1));
    }
    EXPECT_EQ(gate.Readers(), 1u);
    EXPECT_GT(told * 100000, Gate::QueueLimit);
}

TEST_F(GateTest, ConnectionsHaveABound) {
    std::vector<std::unique_ptr<Client>> clients;
    for (std::size_t i = 0; i < Gate::MostReaders; ++i) clients.push_back(reader());
    Client late(path);
    EXPECT_TRUE(runUntil([&] { return !late.lines.empty() && !late.connected(); }));
    EXPECT_EQ(late.lines.front(), "{\"error\":\"too many connections\"}\n");
}

TEST_F(GateTest, WhatStandsAtThePathIsNotDisturbed) {
    const Descriptor other = listenLocal(root + "/other");
    std::ofstream(root + "/letter") << "dear";
    const std::pair<std::string, std::string> cases[] = {
        {path, "Another host is running and listens at " + path},
        {root + "/other", "Another program listens"},
        {root + "/letter", "is no socket"},
        {root + "/letter/gate", "cannot be"},
        {root + "/" + std::string(120, 'x'), "cannot be opened"},
    };
    for (const auto& [where, reason] : cases)
        EXPECT_THAT([&] { Gate(database).Open(where); },
                    testing::ThrowsMessage<GateError>(HasSubstr(reason)));
    EXPECT_EQ(fs::file_size(root + "/letter"), 4u);
    EXPECT_TRUE(reader()->connected());
}

TEST_F(GateTest, TheSocketOfADeadProcessIsReplacedByOneThatOnlyTheOwnerCanReach) {
    gate.Close();
    EXPECT_FALSE(fs::exists(path));
    listenLocal(path).reset();
    fs::permissions(path, fs::perms::all);
    gate.Open(path);
    EXPECT_TRUE(reader()->connected());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(root + "/run").permissions(), fs::perms::owner_all);
}

}  // namespace
}  // namespace talvora
