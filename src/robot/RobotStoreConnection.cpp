#include "robot/RobotStoreConnection.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QtCore/QByteArray>
#include <QtCore/QUuid>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "gate/PrivateFolder.h"
#include "platform_qt/Descriptor.h"
#include "platform_qt/WriteAheadLog.h"

namespace talvora {

StoreValue::StoreValue(std::string_view bytes)
    : QVariant(
          QByteArray(bytes.data() != nullptr ? bytes.data() : "", static_cast<qsizetype>(bytes.size()))) {}

bool StoreRows::next() {
    if (query_.next()) return true;
    if (query_.lastError().isValid()) connection_.fail(query_.lastError());
    return false;
}

RobotStoreConnection::RobotStoreConnection(const StoreSettings& settings)
    : settings_(settings), name_(QUuid::createUuid().toString()) {
    try {
        open();
    } catch (...) {
        close();
        throw;
    }
}

RobotStoreConnection::~RobotStoreConnection() {
    close();
}

void RobotStoreConnection::open() {
    if (settings_.Database.empty()) fail("it has no name");
    if (isSqlite() && settings_.Database != ":memory:") checkFile();
    database_ = QSqlDatabase::addDatabase(QString::fromStdString(settings_.Driver), name_);
    if (!database_.isValid()) fail("Qt's plug-in " + settings_.Driver + " is missing");
    database_.setDatabaseName(QString::fromStdString(settings_.Database));
    if (isSqlite()) return openSqlite();
    database_.setHostName(QString::fromStdString(settings_.Host));
    if (settings_.Port != 0) database_.setPort(settings_.Port);
    database_.setUserName(QString::fromStdString(settings_.User));
    database_.setPassword(QString::fromStdString(settings_.Password));
    // A server that is gone without a word must not hold the robot up for minutes.
    database_.setConnectOptions("connect_timeout=5;tcp_user_timeout=10000;keepalives_idle=20");
    if (!database_.open()) fail(database_.lastError());
    command("SET synchronous_commit = on");
    command("SET statement_timeout = 10000");
    command(("SET lock_timeout = " + std::to_string(LockWaitMs)).c_str());
    command("SET client_min_messages = error");
}

void RobotStoreConnection::openSqlite() {
    database_.setConnectOptions("QSQLITE_BUSY_TIMEOUT=" + QString::number(LockWaitMs));
    if (!database_.open()) fail(database_.lastError());
    {
        StoreRows check = run("PRAGMA quick_check(1)");
        if (!check.next() || check.bytes(0) != "ok") fail("it is damaged");
    }
    command("PRAGMA foreign_keys = ON");
    command("PRAGMA synchronous = FULL");
    setCeiling();
}

// Beyond it the database says that the disk is full; what is deleted makes room again.
void RobotStoreConnection::setCeiling() {
    if (settings_.Megabytes <= 0) return;
    std::int64_t pages = std::int64_t{settings_.Megabytes} << 20;
    {
        StoreRows size = run("PRAGMA page_size");
        if (!size.next()) fail("it can't be read");
        pages /= std::max<std::int64_t>(size.number(), 1);
    }
    command(("PRAGMA max_page_count = " + std::to_string(pages)).c_str());
}

// Before SQLite sees the file: it drops without a word what it can't read of the log.
void RobotStoreConnection::checkFile() {
    const Descriptor file(::open(settings_.Database.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    struct stat found {};
    if (file.get() < 0 || ::fstat(file.get(), &found) != 0) fail(std::strerror(errno));
    if (!S_ISREG(found.st_mode)) fail("it is not a file");
    const std::string log = settings_.Database + "-wal";
    for (const std::string& one : {settings_.Database, log, settings_.Database + "-shm"}) tighten(one);
    keepPrivate(std::filesystem::path(settings_.Database).parent_path().string());
    struct stat foundLog {};
    const bool hasLog = ::stat(log.c_str(), &foundLog) == 0 && foundLog.st_size > 0;
    if (hasLog && (found.st_size == 0 || isLogDamaged(log, settings_.Database))) fail("it is damaged");
}

void RobotStoreConnection::tighten(const std::string& file) const {
    struct stat found {};
    if (::stat(file.c_str(), &found) != 0 || (found.st_mode & 0077) == 0) return;
    if (::chmod(file.c_str(), 0600) != 0) fail(std::strerror(errno));
}

void RobotStoreConnection::close() {
    statements_.clear();
    if (!database_.isValid()) return;
    database_.close();
    database_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(name_);
}

StoreRows RobotStoreConnection::run(std::string_view statement, std::initializer_list<StoreValue> values) {
    auto found = statements_.find(std::string(statement));
    if (found == statements_.end()) {
        QSqlQuery query(database_);
        if (!query.prepare(QString::fromLatin1(statement.data(), static_cast<qsizetype>(statement.size())))) {
            fail(query.lastError());
        }
        found = statements_.emplace(statement, std::move(query)).first;
    }
    QSqlQuery& query = found->second;
    int place = 0;
    for (const auto& value : values) query.bindValue(place++, value);
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        query.finish();
        fail(error);
    }
    return {*this, query};
}

void RobotStoreConnection::command(const char* text) {
    QSqlQuery query(database_);
    if (!query.exec(text)) fail(query.lastError());
}

void RobotStoreConnection::fail(const std::string& reason) const {
    throw StoreError("The store " + settings_.Database + " can't be used: " + reason);
}

void RobotStoreConnection::fail(const QSqlError& error) const {
    const QString text = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    fail(text.simplified().toStdString());
}

}  // namespace talvora
