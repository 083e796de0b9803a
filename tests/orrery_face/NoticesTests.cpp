// Notices on a bus of their own, with a notification server that the test plays.
#include <gmock/gmock.h>

#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "Until.h"
#include "orrery/face/LauncherEntry.h"
#include "orrery/face/Notices.h"
#include "platform/Form.h"

namespace talvora::test {
namespace {

using namespace testing;

HostArray chat(const std::string& name, const std::string& text, std::int32_t kind = 1) {
    return {"Chat", name + ": " + text, kind, name, "", "imgChat", false, false};
}

TEST(PopUp, ShowsNoMoreThanTheUserWantsOthersToSee) {
    const struct {
        HostValue data;
        NoticePrivacy privacy;
        const char* shown;
    } cases[] = {
        {chat("Nikos", "hi"), NoticePrivacy::NameAndText, "Nikos|hi"},
        {chat("Nikos", "hi"), NoticePrivacy::NameOnly, "New message from Nikos|"},
        {chat("Nikos", "hi"), NoticePrivacy::Neither, "New message|"},
        {chat("#chat", "Nikos: hi", 2), NoticePrivacy::NameAndText, "#chat|Nikos: hi"},
        {chat("#chat", "Nikos: hi", 2), NoticePrivacy::NameOnly, "New text in #chat|"},
        {HostArray{"Mail", "From Maria", 3}, NoticePrivacy::NameAndText, "Mail|From Maria"},
        {HostArray{"Mail", "From Maria", 3}, NoticePrivacy::NameOnly, "Mail|"},
        {chat("N",
              "a\r\n\x1B[2J\x03"
              "4b"),
         NoticePrivacy::NameAndText, "N|a [2J 4b"},
        {HostArray{1, HostArray{}, "x"}, NoticePrivacy::NameAndText, "|"},
    };
    for (const auto& one : cases) {
        const auto popUp = popUpOf(one.data, one.privacy);
        ASSERT_TRUE(popUp.has_value());
        EXPECT_EQ((popUp->Summary + '|' + popUp->Body).toStdString(), one.shown);
    }
    EXPECT_FALSE(popUpOf("text", NoticePrivacy::NameAndText) ||
                 popUpOf(HostArray{1}, NoticePrivacy::Neither));
    const auto conversation = [](const HostValue& data) {
        return popUpOf(data, NoticePrivacy::Neither)->Conversation;
    };
    EXPECT_NE(conversation(HostArray{"Mail", "", 3}), conversation(HostArray{"News", "", 3}));
    EXPECT_NE(conversation(HostArray{"", "", 3, 5}), conversation(HostArray{"", "", 3, "5"}));
    const std::string endless(1'000'000, 'x');
    const auto large = popUpOf(chat(endless, endless), NoticePrivacy::NameAndText);
    EXPECT_LT(large->Summary.size() + large->Body.size(), 1000);
    EXPECT_TRUE(large->Window.isNull());
}

TEST(NoticeQueue, StaysSmallWhateverStrangersDo) {
    NoticeQueue queue;
    int shown = 0;
    for (std::int64_t now = 0; now < 100'000; now += 10) {
        queue.Add({"crowd " + std::to_string(now), {}, {}, {}});
        while (const auto next = queue.Next(now)) queue.Shown(*next, static_cast<std::uint32_t>(++shown));
    }
    EXPECT_THAT(shown, AllOf(Ge(290), Le(303)));
    EXPECT_TRUE(queue.WindowOf(1) == nullptr && queue.WindowOf(static_cast<std::uint32_t>(shown)) != nullptr);
    int waiting = 0;
    std::string first;
    for (std::int64_t now = 200'000; const auto next = queue.Next(now); now += 1000, ++waiting)
        if (first.empty()) first = next->Conversation;
    EXPECT_THAT(first, StartsWith("crowd 99")) << "the oldest ones went";
    EXPECT_EQ(waiting, static_cast<int>(NoticeQueue::MostWaiting));
}

struct Bus {
    Bus() {
        QFile config(folder.filePath("bus.conf"));
        EXPECT_TRUE(config.open(QIODevice::WriteOnly));
        config.write("<busconfig><type>session</type><listen>unix:dir=" + folder.path().toUtf8() +
                     "</listen><policy context='default'><allow send_destination='*'/>"
                     "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>");
        config.close();
        daemon.start("dbus-daemon", {"--nofork", "--print-address", "--config-file=" + config.fileName()});
        EXPECT_TRUE(daemon.waitForReadyRead());
        address = QString::fromUtf8(daemon.readLine().trimmed());
    }
    ~Bus() {
        for (const QString& name : names) QDBusConnection::disconnectFromBus(name);
        daemon.kill();
        daemon.waitForFinished();
    }
    QDBusConnection connection(const char* name) {
        names << folder.path() + name;
        return QDBusConnection::connectToBus(address, names.last());
    }

    QTemporaryDir folder;
    QProcess daemon;
    QString address;
    QStringList names;
};

const QString Service = "org.freedesktop.Notifications";
const QString Path = "/org/freedesktop/Notifications";

// Writes down "replaced number|summary|body" of each notice.
struct Server : QDBusVirtualObject {
    explicit Server(const QDBusConnection& on) : bus(on) {
        bus.registerVirtualObject(Path, this);
        bus.registerService(Service);
    }
    ~Server() override { bus.unregisterService(Service); }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& to) override {
        const QVariantList given = message.arguments();
        if (message.member() == "GetCapabilities") return to.send(message.createReply(capabilities));
        if (given.at(3) == "Refused") return to.send(message.createErrorReply(QDBusError::InvalidArgs, "no"));
        const uint replaced = given.at(1).toUInt();
        shown << QString::number(replaced) + '|' + given.at(3).toString() + '|' + given.at(4).toString();
        return to.send(message.createReply(replaced != 0 ? replaced : ++numbers));
    }
    void tells(const char* name, uint number, const QVariant& what) {
        bus.send(QDBusMessage::createSignal(Path, Service, name) << number << what);
    }
    QString last() const { return shown.isEmpty() ? QString() : shown.last(); }

    QDBusConnection bus;
    QStringList capabilities{"body", "body-markup"};
    QStringList shown;
    uint numbers = 0;
};

struct Screen {
    void shows(const HostArray& data) { notices.Show(*popUpOf(data, NoticePrivacy::NameAndText)); }
    void passes(std::int64_t milliseconds) {
        now += milliseconds;
        notices.Work();
    }
    // All that is on its way has come.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            const QDBusPendingCallWatcher call(client.asyncCall(QDBusMessage::createMethodCall(
                "org.freedesktop.DBus", "/", "org.freedesktop.DBus.Peer", "Ping")));
            until([&] { return call.isFinished(); });
        }
    }

    Bus bus;
    QDBusConnection client = bus.connection("client");
    std::int64_t now = 0;
    std::vector<std::string> opened;
    Notices notices{client, [this] { return now; },
                    [this](const HostValue& window) { opened.push_back(window.text()); }};
};

TEST(Notices, OfOneConversationReplaceEachOtherAndAClickOpensItsWindow) {
    Screen screen;
    Server server(screen.bus.connection("server"));
    screen.shows(chat("Nikos", "one"));
    until([&] { return server.last() == "0|Nikos|one"; });
    screen.shows(chat("Nikos", "<b>2 & 3"));
    until([&] { return server.last() == "1|Nikos|&lt;b&gt;2 &amp; 3"; });
    screen.shows(chat("#chat", "Maria: hi", 2));
    until([&] { return server.last() == "0|#chat|Maria: hi"; });
    // Three a second are enough; of what waits a conversation's newest is shown.
    for (int i = 0; i < 50; ++i) {
        screen.shows(chat("Nikos", std::to_string(i)));
        screen.shows(chat("Eleni", std::to_string(i)));
    }
    screen.settle();
    EXPECT_EQ(server.shown.size(), 3);
    screen.passes(1000);
    until([&] { return server.shown.size() == 5; });
    EXPECT_EQ(server.shown.mid(3), QStringList({"1|Nikos|49", "0|Eleni|49"}));

    screen.settle();
    server.tells("ActionInvoked", 2, "default");
    server.tells("ActionInvoked", 1, "dismiss");
    server.tells("ActionInvoked", 77, "default");
    server.tells("NotificationClosed", 1, uint{2});
    server.tells("ActionInvoked", 1, "default");
    server.tells("ActionInvoked", 3, "default");
    until([&] { return screen.opened.size() == 2; });
    EXPECT_THAT(screen.opened, ElementsAre("#chat", "Eleni"));
    screen.passes(1000);
    screen.shows(chat("Nikos", "again"));
    until([&] { return server.last() == "0|Nikos|again"; });
    screen.passes(1000);
    screen.shows(chat("Refused", "one alone"));
    screen.settle();
    screen.shows(chat("Nikos", "and again"));
    until([&] { return server.last().endsWith("|Nikos|and again"); });
}

TEST(Notices, WaitForNobodyAndFindAServerThatComesLater) {
    Screen screen;
    screen.shows(chat("Nikos", "lost"));
    screen.settle();
    {
        Server server(screen.bus.connection("server"));
        server.capabilities = {"body"};
        screen.settle();
        screen.shows(chat("Nikos", "<plain>"));
        until([&] { return server.last() == "0|Nikos|<plain>"; });
        screen.settle();
    }
    Server other(screen.bus.connection("other"));
    screen.settle();
    screen.shows(chat("Nikos", "<again>"));
    until([&] { return other.last() == "0|Nikos|&lt;again&gt;"; });
}

TEST(LauncherEntry, TellsHowFarAllIsTogetherAndNothingTwice) {
    Bus bus;
    QProcess dock;
    QString heard;
    QObject::connect(&dock, &QProcess::readyRead, &dock, [&] { heard += dock.readAll(); });
    dock.start("dbus-monitor", {"--address", bus.address, "interface='com.canonical.Unity.LauncherEntry'"});
    until([&] { return heard.contains("NameAcquired"); });
    LauncherEntry entry(bus.connection("client"));
    Form sending, receiving, other;
    for (const double done : {0.25, 0.251, 0.2599}) entry.Show(sending, done);
    entry.Show(other, {});
    entry.Show(receiving, 7.0);
    entry.Show(sending, {});
    entry.Show(receiving, {});
    until([&] { return heard.contains("boolean false"); });
    QStringList told;
    for (const QString& line : heard.split('\n'))
        if (line.contains("double") || line.contains("boolean")) told << line.simplified().section(' ', -1);
    EXPECT_EQ(told.join(' '), "0.25 true 0.62 true 1 true 0 false");
    EXPECT_TRUE(heard.contains("application://talvora.desktop"));
    dock.kill();
    dock.waitForFinished();
}

}  // namespace
}  // namespace talvora::test
