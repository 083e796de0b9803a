#pragma once
// Where a store of the tests lives: a file in memory, or a PostgreSQL server of the test's own in a folder in
// memory, which ends with its owner, even if that is killed.

#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform_qt/TemporaryFolder.h"
#include "robot/RobotStoreConnection.h"

namespace talvora::test {

inline constexpr std::int64_t noon = 1'800'014'400;  // a full hour

inline NewMail mailOf(const std::string& subject, std::vector<std::string> pieces = {"text"},
                      std::int64_t expiresAt = 0) {
    return {"Maria", "Nikos", subject, std::move(pieces), noon, expiresAt};
}

inline StoreSettings storeAt(const std::string& file) {
    StoreSettings settings;
    settings.Database = file;
    return settings;
}

class StorePlace {
  public:
    StorePlace() = default;
    StorePlace(const StorePlace&) = delete;
    StorePlace& operator=(const StorePlace&) = delete;
    virtual ~StorePlace() = default;
    virtual StoreSettings settings() const = 0;

    // What somebody else does to the tables.
    void meddle(const std::vector<std::string>& statements) const {
        RobotStoreConnection other(settings());
        for (const auto& statement : statements) other.command(statement.c_str());
    }
    std::int64_t number(const char* statement) const {
        RobotStoreConnection other(settings());
        StoreRows row = other.run(statement);
        return row.next() ? row.number() : -1;
    }
    // While somebody else is changing them.
    template <class Call>
    void whileLocked(Call call) const {
        RobotStoreConnection other(settings());
        other.command(other.isSqlite() ? "BEGIN IMMEDIATE" : "BEGIN");
        if (!other.isSqlite()) other.command("LOCK TABLE mail, meta IN EXCLUSIVE MODE");
        call();
    }
};

class SqlitePlace final : public StorePlace {
  public:
    StoreSettings settings() const override { return storeAt(folder.path("store.db")); }
    TemporaryFolder folder;
};

class PostgresPlace final : public StorePlace {
  public:
    // The folder of its programs; empty if it is not installed.
    static QString programs() {
        const QDir all("/usr/lib/postgresql");
        for (const QString& version : all.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Reversed)) {
            const QString folder = all.filePath(version + "/bin");
            if (QFile::exists(folder + "/postgres") && QFile::exists(folder + "/initdb")) return folder;
        }
        return {};
    }

    PostgresPlace() {
        if (::geteuid() == 0) {
            const passwd* const found = ::getpwnam("postgres");
            if (found == nullptr) throw std::runtime_error("there is no user postgres");
            user_ = found->pw_uid;
            group_ = found->pw_gid;
            if (::chown(folder_.path().c_str(), user_, group_) != 0) throw std::runtime_error("chown");
        }
        const QString data = path("data");
        QProcess initdb;
        start(initdb, "initdb", {"-D", data, "-U", "robot", "-A", "trust", "-N", "-E", "SQL_ASCII"});
        if (!initdb.waitForFinished(-1) || initdb.exitCode() != 0) {
            throw std::runtime_error(initdb.readAll().toStdString());
        }
        const QString options =
            "-D %1 -k %2 -F -c listen_addresses= -c shared_buffers=8MB -c synchronous_commit=off";
        start(server_, "postgres", options.arg(data, path("")).split(' '));
        QByteArray said;
        while (!said.contains("ready to accept")) {
            if (!server_.waitForReadyRead(-1)) throw std::runtime_error(said.toStdString());
            said += server_.readAll();
        }
    }
    ~PostgresPlace() override {
        ::kill(static_cast<pid_t>(server_.processId()), SIGQUIT);
        server_.waitForFinished(-1);
    }

    StoreSettings settings() const override {
        StoreSettings settings = storeAt("postgres");
        settings.Driver = "QPSQL";
        settings.Host = folder_.path();
        settings.User = "robot";
        return settings;
    }

  private:
    QString path(const char* name) const { return QString::fromStdString(folder_.path(name)); }

    void start(QProcess& process, const QString& program, const QStringList& options) const {
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setWorkingDirectory(path(""));
        process.setChildProcessModifier([user = user_, group = group_] {
            // The server refuses to run as root.
            if (user != 0 && (::setgroups(0, nullptr) != 0 || ::setgid(group) != 0 || ::setuid(user) != 0)) {
                ::_exit(1);
            }
            ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
        });
        process.start(programs() + "/" + program, options);
    }

    TemporaryFolder folder_;
    uid_t user_ = 0;
    gid_t group_ = 0;
    QProcess server_;
};

}  // namespace talvora::test
