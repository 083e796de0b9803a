#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <limits>

#include "common/HostMessageNumbers.h"
#include "gate/Gate.h"
#include "gate/GateJson.h"
#include "gate/LocalSocket.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;
using namespace testing;

std::string written(const HostValue& data, const std::string& tag = {}) {
    std::string line;
    appendMessage(line, {7, 1, HostAddress::Everybody, tag, data, 0});
    return line;
}

TEST(GateJson, ValuesGoOutAndComeBack) {
    const std::pair<HostValue, std::string> cases[] = {
        {{}, "null"},
        {-2147483647 - 1, "-2147483648"},
        {2.5, "2.5"},
        {1e300, "1e+300"},
        {4294967296.0, "4294967296"},
        {true, "true"},
        {"\x80 \xCA\xE1 \xAA\xD2\xFF", "\"€ Κα \uF8F9\uF8FA\uF8FB\""},
        {std::string("a\0b\x01\x1F\x7F\x90\"\\/\r\n\t", 13),
         R"("a\u0000b\u0001\u001f\u007f\u0090\"\\/\r\n\t")"},
        {HostArray{HostArray{1, HostArray{}}, HostValue(), "x"}, R"([[1,[]],null,"x"])"},
    };
    for (const auto& [value, json] : cases) {
        EXPECT_EQ(written(value),
                  R"({"MsgID":7,"FromID":1,"ToID":-1,"Tag":"","Data":)" + json + R"(,"Extra":0})");
        EXPECT_EQ(readValue(json), value) << json;
    }
    EXPECT_NE(readValue("2e3")->asInteger(), nullptr);
    EXPECT_THAT(written(std::numeric_limits<double>::infinity()), HasSubstr(R"("Data":null)"));
    const auto deepest =
        readValue(std::string(GateArrayDepth, '[') + std::string(GateArrayDepth, ']')).value();
    EXPECT_EQ(readMessage(written(deepest)).Message.value().Data, deepest);
    EXPECT_THAT(written(HostArray{deepest}), HasSubstr("[[null]]"));
    // Every byte of a text survives, and none of them is a control character on the way.
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    const std::string line = written(HostArray{all}, all);
    for (const char byte : line) EXPECT_GE(static_cast<unsigned char>(byte), 0x20);
    EXPECT_EQ(readMessage(line).Message.value().Tag, all);
    EXPECT_EQ(readMessage(line).Message.value().Data, HostValue(HostArray{all}));
}

TEST(GateJson, FieldsHaveTheirDefaultsAndAWrongLineIsNoMessage) {
    const auto good = readMessage("{\"MsgID\":7,\"FromID\":\"me\"} \r").Message.value_or(HostMessage{});
    EXPECT_TRUE(good.MsgID == HostMsg::ApplySettings && good.FromID == 0 &&
                good.ToID == HostAddress::Everybody);
    const std::string deep(100000, '[');
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"empty line", {" \r"}},
        {"too long", {std::string(GateLineLimit + 1, ' ') + "{}"}},
        {"no JSON", {"hello", deep, R"({"MsgID":1)", R"({"MsgID":1} {})", "{\"Tag\":\"\xC3\x28\"}"}},
        {"too deep", {R"({"MsgID":1,"Data":)" + deep.substr(0, 40) + std::string(40, ']') + "}"}},
        {"MsgID", {"[]", R"({"msgid":1})"}},
        {"MsgID is no 32-bit integer", {R"({"MsgID":"1"})", R"({"MsgID":1.5})", R"({"MsgID":2147483648})"}},
        {"ToID is no 32-bit integer", {R"({"MsgID":1,"ToID":null})"}},
        {"Tag is no text", {R"({"MsgID":1,"Tag":1})"}},
        {"holds an object", {R"({"MsgID":1,"Data":[[{}]]})", R"({"MsgID":1,"Extra":{}})"}},
        {"unknown field data", {R"({"MsgID":1,"data":1})"}},
    };
    for (const auto& [complaint, lines] : cases) {
        for (const auto& line : lines)
            EXPECT_THAT(readMessage(line).Error, HasSubstr(complaint)) << line.substr(0, 80);
    }
    for (const char* json : {"", "1,2", "{}", "[", "1e999", "nul"}) EXPECT_FALSE(readValue(json)) << json;
    std::string line;
    appendError(line, "no \"\xC1\"");
    EXPECT_EQ(line, R"({"error":"no \"Α\""})");
    EXPECT_EQ(readError(line), "no \"\xC1\"");
    EXPECT_FALSE(readError(written("error")) || peekMsgID(line));
    EXPECT_EQ(peekMsgID(written("error")), 7);
}

// Lets the loop run until `holds`; a test that waits in vain fails.
bool runUntil(const std::function<bool()>& holds) {
    const QDeadlineTimer limit(20000);
    while (!holds() && !limit.hasExpired()) QCoreApplication::processEvents();
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
            while (socket.canReadLine()) lines.push_back(socket.readLine().toStdString());
        });
        socket.connectToServer(QString::fromStdString(path));
    }

    void says(const std::string& text) { socket.write(text.data(), static_cast<qint64>(text.size())); }
    bool connected() const { return socket.state() == QLocalSocket::ConnectedState; }
    bool hears(std::size_t count) {
        return runUntil([&] { return lines.size() >= count || !connected(); }) && lines.size() == count;
    }

    std::vector<std::string> lines;
    QLocalSocket socket;
};

class GateTest : public Test {
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

TEST_F(GateTest, EveryReaderHearsWhateverIsBroadcastAfterItCameAndWhatIsWrongWithItsOwnLines) {
    handler = [this](const HostMessage& message) {
        if (message.MsgID == HostMsg::Start) database.says(HostMsg::Started);
        if (message.MsgID == HostMsg::SaySystemVerb) message.Data.at(0);
    };
    database.says(HostMsg::Verb);
    auto anna = reader();
    database.says(HostMsg::ChannelText, "first");
    auto nikos = reader();
    nikos->says("{\"MsgID\":\n{\"MsgID\":1002,\"FromID\":1,\"ToID\":4,\"Data\":[]}\n\n{\"MsgID\":1}\n");
    ASSERT_TRUE(nikos->hears(6) && anna->hears(4));
    EXPECT_THAT(anna->lines[0], HasSubstr("\"first\""));
    EXPECT_THAT(nikos->lines, ElementsAre(HasSubstr("{\"error\":\"no JSON"), anna->lines[1],
                                          HasSubstr("{\"error\":\"fault 9: Subscript out of range\"}"),
                                          HasSubstr(std::string(GateEmptyLine)), HasSubstr("\"MsgID\":1,"),
                                          anna->lines[3]));
    EXPECT_THAT(anna->lines[3], HasSubstr("\"MsgID\":2,"));
    EXPECT_EQ(std::pair(seen[2].FromID, seen[2].ToID), std::pair(Gate::FirstReader + 1, 4));
}

TEST_F(GateTest, LinesOfOneThatHasLeftAreStillHandledInOrderWhenAHandlerLetsTheLoopRun) {
    auto anna = reader();
    int depth = 0;
    handler = [&](const HostMessage& message) {
        EXPECT_EQ(++depth, 1);
        EXPECT_EQ(message.MsgID, static_cast<int>(seen.size()) - 1);
        if (message.MsgID == HostMsg::Start) anna->socket.disconnectFromServer();
        for (int i = 0; i < 10 && message.MsgID == HostMsg::Start; ++i) QCoreApplication::processEvents();
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
    EXPECT_TRUE(runUntil([&] { return !nikos->connected() && seen.size() == 1; }) && anna->connected());
}

TEST_F(GateTest, AReaderThatDoesNotKeepUpIsDroppedAndTheOthersMissNothing) {
    auto slow = reader();
    auto quick = reader();
    // One byte is taken in advance at most, so that the rest stays with the sender.
    slow->socket.setReadBufferSize(1);
    std::size_t told = 0;
    for (; gate.Readers() == 2 && told * 100000 < 2 * Gate::QueueLimit; ++told) {
        database.says(HostMsg::ServerNumeric, std::string(100000, 'x'));
        EXPECT_TRUE(quick->hears(told + 1));
    }
    EXPECT_TRUE(gate.Readers() == 1 && told * 100000 > Gate::QueueLimit) << told;
}

TEST_F(GateTest, ConnectionsHaveABoundAndThoseThatSayNothingGiveTheirPlacesToOthers) {
    std::vector<std::unique_ptr<Client>> clients;
    for (std::size_t i = 0; i < Gate::MostReaders; ++i) clients.push_back(reader());
    // What has not been read yet was said all the same.
    clients[0]->says("{\"MsgID\":1}\n");
    clients[0]->socket.flush();
    Client second(path);
    EXPECT_TRUE(runUntil([&] { return !clients[1]->connected(); }));
    EXPECT_EQ(clients[1]->lines.back(), "{\"error\":\"the place went to another connection\"}\n");
    clients[1] = std::make_unique<Client>(path);
    EXPECT_TRUE(runUntil([&] { return !clients[2]->connected(); }) && clients[0]->connected());
    const auto answered = [](Client& one) {
        return !one.connected() ||
               (!one.lines.empty() && Value(one.lines.back(), HasSubstr(std::string(GateEmptyLine))));
    };
    second.says("\n");
    for (auto& client : clients) client->says("\n");
    EXPECT_TRUE(runUntil([&] {
        return answered(second) && std::ranges::all_of(clients, [&](auto& one) { return answered(*one); });
    }));
    Client late(path);
    EXPECT_TRUE(runUntil([&] { return !late.lines.empty() && !late.connected(); }));
    EXPECT_EQ(late.lines.front(), "{\"error\":\"too many connections\"}\n");
    EXPECT_EQ(gate.Readers(), Gate::MostReaders);
}

TEST_F(GateTest, ThePathIsTakenFromADeadProcessAlone) {
    const Descriptor other = listenLocal(root + "/other");
    std::ofstream(root + "/letter") << "dear";
    const std::pair<std::string, std::string> cases[] = {
        {path, "Another host is running and listens at " + path},
        {root + "/other", "Another program listens"},
        {root + "/letter", "is no socket"},
        {root + "/letter/gate", "cannot be"},
        {root + "/" + std::string(120, 'x'), "cannot be opened"},
    };
    for (const auto& [where, reason] : cases) {
        const std::string& place = where;
        EXPECT_THAT([&] { Gate(database).Open(place); }, ThrowsMessage<GateError>(HasSubstr(reason)));
    }
    EXPECT_EQ(fs::file_size(root + "/letter"), 4u);
    // What a dead process left is replaced by what only the owner can reach, in a folder that was looser.
    gate.Close();
    fs::permissions(root + "/run", fs::perms::all);
    EXPECT_FALSE(fs::exists(path));
    listenLocal(path).reset();
    gate.Open(path);
    EXPECT_TRUE(reader()->connected());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(root + "/run").permissions(), fs::perms::owner_all);
}

}  // namespace
}  // namespace talvora
