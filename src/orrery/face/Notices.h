#pragma once
// Shows notices through the desktop's notification server, on the session's bus. Every call is asynchronous;
// where there is no bus or no server nothing happens, and a server that appears later is found. Owned by the
// face.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>

#include "orrery/face/NoticeQueue.h"

namespace talvora {

class Notices final : public QObject {
    Q_OBJECT

  public:
    using Clock = std::function<std::int64_t()>;

    // `clock` counts milliseconds; `clicked` gets the window of a notice that the user has clicked on.
    Notices(const QDBusConnection& bus, Clock clock, std::function<void(const HostValue& window)> clicked);

    void Show(PopUp popUp);
    // Shows what may be shown by now; its own timer does so too.
    void Work();

  private Q_SLOTS:
    void onActionInvoked(uint number, const QString& action);
    void onNotificationClosed(uint number, uint reason);

  private:
    enum class Server { Unknown, Asked, Present, Missing };
    using Answered = void (Notices::*)(const QDBusPendingCall& answer);

    void call(const QDBusMessage& message, Answered answered);
    void askServer();
    void serverTold(const QDBusPendingCall& answer);
    void notify(const PopUp& popUp);
    void notified(const QDBusPendingCall& answer);
    void serverChanged();
    void serverMissing();

    QDBusConnection bus_;
    Clock clock_;
    std::function<void(const HostValue&)> clicked_;
    QDBusServiceWatcher watcher_;
    QTimer timer_;
    NoticeQueue queue_;
    Server server_ = Server::Unknown;
    bool markup_ = false;            // the server reads markup in the body
    std::int64_t missingUntil_ = 0;  // when a missing server is looked for again
    std::uint64_t epoch_ = 0;        // of the server; answers of an earlier one do not count
    std::optional<PopUp> sent_;      // waits for its number
};

}  // namespace talvora
