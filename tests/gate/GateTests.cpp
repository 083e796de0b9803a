#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <filesystem>
#include <fstream>

#include "gate/Gate.h"
#include "gate/GateJson.h"

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
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &limit, [&] { late = true; });
    limit.start(20000);
    while (!holds() && !late) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return holds();
}

class Database final : public MessageDatabase {
  public:
    void Broadcast(const HostMessage& message) override { MessageBroadcasted.raise(message); }
    void says(std::int32_t number, HostValue data = {}) {
        HostMessage message;
        message.MsgID = number;
        message.FromID = 1;
        message.Data = std::move(data);
        Broadcast(message);
    }
};

class Client {
  public:
    explicit Client(const std::string& path) {
        QObject::connect(&socket_, &QLocalSocket::readyRead, &socket_, [this] { take(); });
        socket_.connectToServer(QString::fromStdString(path));
    }

    void says(const std::string& text) { socket_.write(text.data(), static_cast<qint64>(text.size())); }
    void leaves() { socket_.disconnectFromServer(); }
    // One byte is taken in advance at most, so that the rest stays with the sender.
    void stopsReading() { socket_.setReadBufferSize(1), reading_ = false; }
    bool connected() const { return socket_.state() == QLocalSocket::ConnectedState; }
    bool hears(std::size_t count) {
        return runUntil([&] { return lines.size() >= count || !connected(); }) && lines.size() == count;
    }

    std::vector<std::string> lines;

  private:
    void take() {
        while (reading_ && socket_.canReadLine()) {
            lines.push_back(socket_.readLine().toStdString());
            if (lines.back().ends_with('\n')) lines.back().pop_back();
        }
    }

    QLocalSocket socket_;
    bool reading_ = true;
};

class GateTest : public testing::Test {
  protected:
    GateTest() {
        gate.Open(path);
        on += database.MessageBroadcasted.connect([this](const HostMessage& message) {
            seen.push_back(message);
            if (handler) handler(message);
        });
    }

    std::unique_ptr<Client> reader() {
        const std::size_t before = gate.Readers();
        auto client = std::make_unique<Client>(path);
        EXPECT_TRUE(runUntil([&] { return gate.Readers() > before; }));
        return client;
    }
    std::string refusal(const std::string& where) {
        Gate other(database);
        try {
            other.Open(where);
        } catch (const GateError& error) {
            return error.what();
        }
        return "none";
    }

    QTemporaryDir folder;
    std::string root = folder.path().toStdString();
    std::string path = root + "/run/gate";
    Database database;
    Gate gate{database};
    std::vector<HostMessage> seen;
    std::function<void(const HostMessage&)> handler;
    Subscriptions on;
};

TEST_F(GateTest, OnlyTheOwnerCanReachIt) {
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(root + "/run").permissions(), fs::perms::owner_all);
    gate.Close();
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(GateTest, EveryReaderHearsWhateverIsBroadcastAfterItCame) {
    database.says(1004);
    auto anna = reader();
    database.says(1005, "first");
    auto nikos = reader();
    HostMessage toHost;
    toHost.MsgID = 2;
    toHost.ToID = HostAddress::Host;
    database.Broadcast(toHost);
    ASSERT_TRUE(anna->hears(2) && nikos->hears(1));
    EXPECT_THAT(anna->lines, ElementsAre(HasSubstr("\"first\""), HasSubstr("\"ToID\":-2")));
    EXPECT_THAT(nikos->lines, ElementsAre(HasSubstr("\"MsgID\":2,")));
}

TEST_F(GateTest, AMessageIsHeardBeforeThoseThatItCauses) {
    handler = [this](const HostMessage& message) {
        if (message.MsgID == 1) database.says(2);
    };
    auto anna = reader();
    database.says(1);
    ASSERT_TRUE(anna->hears(2));
    EXPECT_THAT(anna->lines, ElementsAre(HasSubstr("\"MsgID\":1,"), HasSubstr("\"MsgID\":2,")));
}

TEST_F(GateTest, ALineIsBroadcastWithTheNumberOfItsConnection) {
    auto anna = reader();
    auto nikos = reader();
    nikos->says(R"({"MsgID":1006,"FromID":1,"ToID":4,"Tag":"t","Data":["Anna","hi"],"Extra":true})"
                "\n");
    ASSERT_TRUE(anna->hears(1) && nikos->hears(1));
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].FromID, Gate::FirstReader + 1);
    EXPECT_EQ(seen[0].ToID, 4);
    EXPECT_EQ(seen[0].Data, HostValue(HostArray{"Anna", "hi"}));
    EXPECT_EQ(seen[0].Extra, HostValue(true));
    EXPECT_EQ(anna->lines, nikos->lines);
}

TEST_F(GateTest, WhatIsWrongIsAnsweredInItsPlaceToItsSenderAlone) {
    handler = [](const HostMessage& message) {
        if (message.MsgID == 1002) message.Data.at(0);
    };
    auto anna = reader();
    auto nikos = reader();
    nikos->says("{\"MsgID\":\n{\"MsgID\":1002,\"Data\":[]}\n\n{\"MsgID\":5}\n");
    ASSERT_TRUE(nikos->hears(5) && anna->hears(2));
    EXPECT_THAT(nikos->lines, ElementsAre(HasSubstr("{\"error\":\"no JSON"), HasSubstr("\"MsgID\":1002"),
                                          HasSubstr("{\"error\":\"fault 9: Subscript out of range\"}"),
                                          HasSubstr(std::string(GateEmptyLine)), HasSubstr("\"MsgID\":5")));
}

TEST_F(GateTest, LinesOfOneThatHasLeftAreStillHandled) {
    auto anna = reader();
    std::string lines;
    for (int i = 0; i < 1000; ++i) {
        lines += "{\"MsgID\":" + std::to_string(i) + "," + std::string(1000, ' ') + "\"Extra\":1}\n";
    }
    anna->says(lines + "{\"MsgID\":1000}");  // the torn end is not
    anna->leaves();
    EXPECT_TRUE(runUntil([&] { return gate.Readers() == 0; }));
    ASSERT_EQ(seen.size(), 1000u);
    EXPECT_EQ(seen.back().MsgID, 999);
}

TEST_F(GateTest, LinesStayInOrderWhenAHandlerLetsTheLoopRun) {
    auto anna = reader();
    int depth = 0;
    handler = [&](const HostMessage& message) {
        EXPECT_EQ(++depth, 1);
        if (message.MsgID == 1) {
            anna->says("{\"MsgID\":3}\n");
            anna->leaves();
            for (int i = 0; i < 10; ++i) QCoreApplication::processEvents();
        }
        --depth;
    };
    anna->says("{\"MsgID\":1}\n{\"MsgID\":2}\n");
    EXPECT_TRUE(runUntil([&] { return gate.Readers() == 0; }));
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[1].MsgID, 2);
    EXPECT_EQ(seen[2].MsgID, 3);
}

TEST_F(GateTest, AnOverlongLineEndsItsConnectionAndOneOfTheLongestDoesNot) {
    auto anna = reader();
    auto nikos = reader();
    const std::string frame = R"({"MsgID":9,"Data":""})";
    anna->says(R"({"MsgID":9,"Data":")" + std::string(GateLineLimit - frame.size(), 'x') + "\"}\n");
    nikos->says(std::string(GateLineLimit + 1, 'x'));
    EXPECT_TRUE(runUntil([&] { return !nikos->connected() && seen.size() == 1; }));
    EXPECT_TRUE(anna->connected());
}

TEST_F(GateTest, AReaderThatDoesNotKeepUpIsDroppedAndTheOthersMissNothing) {
    auto slow = reader();
    auto quick = reader();
    slow->stopsReading();
    std::size_t told = 0;
    EXPECT_TRUE(runUntil([&] {
        if (quick->lines.size() == told && gate.Readers() == 2) {
            database.says(1012, std::string(100000, 'x'));
            ++told;
        }
        return gate.Readers() == 1;
    }));
    EXPECT_TRUE(quick->hears(told));
    EXPECT_GT(told * 100000, Gate::QueueLimit);
    EXPECT_LT(told * 100000, 2 * Gate::QueueLimit);
}

TEST_F(GateTest, ConnectionsHaveABound) {
    std::vector<std::unique_ptr<Client>> clients;
    for (std::size_t i = 0; i < Gate::MostReaders; ++i) clients.push_back(reader());
    Client late(path);
    EXPECT_TRUE(runUntil([&] { return !late.lines.empty() && !late.connected(); }));
    EXPECT_EQ(late.lines.front(), R"({"error":"too many connections"})");
    clients.front()->leaves();
    EXPECT_TRUE(runUntil([&] { return gate.Readers() < Gate::MostReaders; }));
    EXPECT_TRUE(reader()->connected());
}

TEST_F(GateTest, ThePathOfALivingHostIsRefused) {
    EXPECT_THAT(refusal(path), HasSubstr("Another host is running and listens at " + path));
    database.says(1);
    EXPECT_TRUE(reader()->connected());
}

TEST_F(GateTest, WhatAnotherProgramHasAtThePathStays) {
    QLocalServer other;
    ASSERT_TRUE(other.listen(QString::fromStdString(root + "/other")));
    EXPECT_THAT(refusal(root + "/other"), HasSubstr("Another program listens"));
    std::ofstream(root + "/letter") << "dear";
    EXPECT_THAT(refusal(root + "/letter"), HasSubstr("is no socket"));
    EXPECT_EQ(fs::file_size(root + "/letter"), 4u);
    EXPECT_THAT(refusal(root + "/letter/gate"), HasSubstr("cannot be"));
    EXPECT_THAT(refusal(root + "/" + std::string(120, 'x')), HasSubstr("cannot be opened"));
}

TEST_F(GateTest, TheSocketOfADeadProcessIsReplaced) {
    const std::string stale = root + "/stale";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    stale.copy(address.sun_path, stale.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    gate.Open(stale);
    path = stale;
    EXPECT_TRUE(reader()->connected());
}

}  // namespace
}  // namespace talvora
