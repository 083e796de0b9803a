#include "robot/Service.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <filesystem>

#include "common/Version.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

Q_LOGGING_CATEGORY(session, "orreryserv.session")
Q_LOGGING_CATEGORY(mail, "orreryserv.mail")
Q_LOGGING_CATEGORY(announcements, "orreryserv.announce")
Q_LOGGING_CATEGORY(storage, "orreryserv.store")

// The moment of a line is the journal's business.
void prepareLog() {
    if (!qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN")) {
        qSetMessagePattern("%{category}: %{if-warning}warning: %{endif}%{message}");
    }
}

void log(LogSubject subject, const std::string& text) {
    const std::string line = toUtf8(text);
    switch (subject) {
        case LogSubject::Session:
            qCInfo(session, "%s", line.c_str());
            break;
        case LogSubject::Mail:
            qCInfo(mail, "%s", line.c_str());
            break;
        case LogSubject::Announcements:
            qCInfo(announcements, "%s", line.c_str());
            break;
        case LogSubject::Store:
            qCWarning(storage, "%s", line.c_str());
            break;
    }
}

// Two robots on one file would each take the other's mail for its own.
const StoreSettings& locked(FileLock& lock, const StoreSettings& store) {
    if (store.Driver != "QSQLITE" || store.Database == ":memory:") return store;
    const std::string file = fs::weakly_canonical(store.Database).string() + ".lock";
    if (!lock.tryLock(file)) throw StoreError("another robot is running and has " + store.Database);
    return store;
}

}  // namespace

Service::Service(const RobotConfig& config, StopSignals& signals)
    : signals_(signals),
      store_(locked(lock_, config.Store)),
      robot_(platform_.platform(), config, store_, log) {
    prepareLog();
}

void Service::Run() {
    signals_.listen([this] {
        ending_ = true;
        QCoreApplication::quit();
    });
    qCInfo(session, "version %s started", Version::text().c_str());
    Guard& guard = platform_.platform().Guarded;
    guard.run("Start", [this] { robot_.Start(); });
    if (!ending_) QCoreApplication::exec();
    guard.run("Stop", [this] { robot_.Stop("The robot will be back"); });
    qCInfo(session, "ended");
}

}  // namespace talvora
