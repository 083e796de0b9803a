#include "orrery/face/Notices.h"

#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>
#include <utility>

namespace talvora {

namespace {

constexpr int AnswerWithin = 5000;          // milliseconds
constexpr std::int64_t LookAgain = 30'000;  // after there was no server
constexpr qsizetype MostCapabilities = 64;

const QString Service = QStringLiteral("org.freedesktop.Notifications");
const QString Path = QStringLiteral("/org/freedesktop/Notifications");

QDBusMessage message(const char* method) {
    return QDBusMessage::createMethodCall(Service, Path, Service, QString::fromLatin1(method));
}

// Anything else is about the one notice.
bool saysNobodyIsThere(const QDBusError& error) {
    const QDBusError::ErrorType type = error.type();
    return type == QDBusError::ServiceUnknown || type == QDBusError::NoReply ||
           type == QDBusError::Disconnected ||
           error.name() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
}

}  // namespace

Notices::Notices(const QDBusConnection& bus, Clock clock, std::function<void(const HostValue&)> clicked)
    : bus_(bus), clock_(std::move(clock)), clicked_(std::move(clicked)) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { Work(); });
    if (!bus_.isConnected()) return;
    watcher_.setConnection(bus_);
    watcher_.addWatchedService(Service);
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { serverChanged(); });
    bus_.connect(Service, Path, Service, QStringLiteral("ActionInvoked"), this,
                 SLOT(onActionInvoked(uint, QString)));
    bus_.connect(Service, Path, Service, QStringLiteral("NotificationClosed"), this,
                 SLOT(onNotificationClosed(uint, uint)));
}

void Notices::Show(PopUp popUp) {
    if (!bus_.isConnected()) return;
    if (server_ == Server::Missing) {
        if (clock_() < missingUntil_) return;
        server_ = Server::Unknown;
    }
    queue_.Add(std::move(popUp));
    Work();
}

// One call at a time: the next notice of a conversation needs the number of the one before.
void Notices::Work() {
    if (server_ == Server::Unknown) askServer();
    if (server_ != Server::Present || sent_) return;
    const std::int64_t now = clock_();
    if (auto next = queue_.Next(now)) {
        notify(*next);
        sent_ = std::move(next);
    } else if (const auto wait = queue_.Wait(now)) {
        timer_.start(static_cast<int>(*wait));
    }
}

void Notices::call(const QDBusMessage& what, Answered answered) {
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(what, AnswerWithin), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, answered, epoch = epoch_] {
        answer->deleteLater();
        if (epoch == epoch_) (this->*answered)(*answer);
    });
}

void Notices::askServer() {
    server_ = Server::Asked;
    call(message("GetCapabilities"), &Notices::serverTold);
}

void Notices::serverTold(const QDBusPendingCall& answer) {
    const QDBusPendingReply<QStringList> told = answer;
    if (told.isError()) return serverMissing();
    const QStringList capabilities = told.value();
    markup_ = capabilities.mid(0, MostCapabilities).contains(QStringLiteral("body-markup"));
    server_ = Server::Present;
    Work();
}

void Notices::notify(const PopUp& popUp) {
    QDBusMessage what = message("Notify");
    const QStringList actions{QStringLiteral("default"), QStringLiteral("Open")};
    const QVariantMap hints{{QStringLiteral("category"), QStringLiteral("im.received")},
                            {QStringLiteral("desktop-entry"), QStringLiteral("talvora")}};
    what << QStringLiteral("Talvora") << queue_.NumberOf(popUp.Conversation) << QStringLiteral("talvora")
         << popUp.Summary << (markup_ ? popUp.Body.toHtmlEscaped() : popUp.Body) << actions << hints << -1;
    call(what, &Notices::notified);
}

void Notices::notified(const QDBusPendingCall& answer) {
    const QDBusPendingReply<uint> number = answer;
    const std::optional<PopUp> sent = std::exchange(sent_, std::nullopt);
    if (number.isError() && saysNobodyIsThere(number.error())) return serverMissing();
    if (number.isValid()) queue_.Shown(*sent, number.value());
    Work();
}

// Another server knows nothing of the numbers of the one before.
void Notices::serverChanged() {
    ++epoch_;
    sent_.reset();
    queue_.ForgetAll();
    server_ = Server::Unknown;
    if (queue_.Wait(clock_())) Work();
}

void Notices::serverMissing() {
    server_ = Server::Missing;
    missingUntil_ = clock_() + LookAgain;
    queue_.Clear();
}

void Notices::onActionInvoked(uint number, const QString& action) {
    if (action != QLatin1String("default")) return;
    const HostValue* const window = queue_.WindowOf(number);
    if (window == nullptr) return;
    const HostValue opened = *window;  // what is opened may show a notice
    clicked_(opened);
}

void Notices::onNotificationClosed(uint number, uint) {
    queue_.Forget(number);
}

}  // namespace talvora
