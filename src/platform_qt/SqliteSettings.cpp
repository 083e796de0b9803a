#include "platform_qt/SqliteSettings.h"

#include <QtCore/QByteArray>
#include <QtCore/QUrl>
#include <QtCore/QUuid>
#include <QtCore/QVariant>
#include <QtSql/QSqlError>

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

constexpr int SchemaVersion = 1;

// The result codes of SQLite that are told apart, without their extensions.
enum Result {
    Busy = 5,
    Locked = 6,
    ReadOnly = 8,
    IoError = 10,
    Corrupt = 11,
    Full = 13,
    CantOpen = 14,
    NotADatabase = 26
};

Fault faultOf(int result) {
    switch (result) {
        case Busy:
        case Locked:
        case ReadOnly:
            return Fault::PermissionDenied;
        case IoError:
            return Fault::DeviceIOError;
        case Full:
            return Fault::DiskFull;
        default:
            return Fault::PathFileAccessError;
    }
}

QByteArray blob(std::string_view bytes) {
    return {bytes.data() != nullptr ? bytes.data() : "", static_cast<qsizetype>(bytes.size())};
}

std::string bytesOf(const QVariant& value) {
    return value.toByteArray().toStdString();
}

}  // namespace

SqliteSettings::SqliteSettings(const std::string& path, int busyMs)
    : file_(path), connection_(QUuid::createUuid().toString()) {
    try {
        start(busyMs);
    } catch (const Damaged&) {
        startAnew(busyMs);
    } catch (...) {
        close();
        throw;
    }
}

SqliteSettings::~SqliteSettings() {
    close();
}

void SqliteSettings::startAnew(int busyMs) {
    close();
    const std::string aside = file_.putAside();
    try {
        start(busyMs);
    } catch (const Damaged&) {
        close();
        throw file_.fault(Fault::DeviceIOError, "a new file is damaged at once");
    } catch (...) {
        close();
        throw;
    }
    tell("The settings were damaged and could not be read. The damaged file was kept as " + aside +
         "; Talvora starts with its default settings.");
}

void SqliteSettings::tell(const std::string& notice) {
    if (!notice_.empty()) notice_ += ' ';
    notice_ += fromUtf8(notice);
}

void SqliteSettings::start(int busyMs) {
    file_.prepare();
    // Before the database opens it, which would do whatever a log says that is sound in itself.
    if (file_.isLogDamaged()) {
        tell("The last changes of the settings were damaged and could not be read. They were kept as " +
             file_.putLogAside() + "; please look through your settings.");
    }
    try {
        read(busyMs);
    } catch (const CannotOpen&) {
        close();
        readFrozen();
    }
}

void SqliteSettings::read(int busyMs) {
    open(QString::fromStdString(file_.path()), "QSQLITE_BUSY_TIMEOUT=" + QString::number(busyMs));
    run("PRAGMA cache_size = -128");
    run("PRAGMA locking_mode = EXCLUSIVE");
    run("PRAGMA synchronous = FULL");
    checkIntegrity();
    upgradeSchema();
    load();
    save_.emplace(database_);
    if (!save_->prepare("INSERT INTO settings(app, section, name, value) VALUES(?, ?, ?, ?) "
                        "ON CONFLICT(app, section, name) DO UPDATE SET value = excluded.value")) {
        fail(save_->lastError());
    }
}

// As a file that nobody changes: this needs no log beside it. A log that is there would be missed.
void SqliteSettings::readFrozen() {
    constexpr const char* reason = "no file can be made beside them";
    if (file_.hasLog()) throw file_.fault(Fault::DiskFull, reason);
    try {
        const QByteArray path = QUrl::toPercentEncoding(QString::fromStdString(file_.path()), "/");
        open("file:" + QString::fromLatin1(path) + "?immutable=1", "QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI");
        checkIntegrity();
        load();
    } catch (const CannotOpen&) {
        throw file_.fault(Fault::DiskFull, reason);
    }
    tell(
        "The disk seems to be full: the settings can be read, but nothing that you change is kept until "
        "there is room and Talvora is started again.");
}

void SqliteSettings::open(const QString& name, const QString& options) {
    database_ = QSqlDatabase::addDatabase("QSQLITE", connection_);
    if (!database_.isValid()) throw file_.fault(Fault::PathFileAccessError, "Qt's SQLite plug-in is missing");
    database_.setDatabaseName(name);
    database_.setConnectOptions(options);
    if (!database_.open()) fail(database_.lastError());
}

void SqliteSettings::close() {
    save_.reset();
    if (!database_.isValid()) return;
    database_.close();
    database_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection_);
}

QSqlQuery SqliteSettings::run(const char* statement) {
    QSqlQuery query(database_);
    query.setForwardOnly(true);
    if (!query.exec(statement)) fail(query.lastError());
    return query;
}

void SqliteSettings::fail(const QSqlError& error) const {
    const int result = error.nativeErrorCode().toInt() & 0xFF;
    if (result == Corrupt || result == NotADatabase) throw Damaged();
    if (result == CantOpen) throw CannotOpen();
    if (result == Busy || result == Locked) {
        throw file_.fault(Fault::PermissionDenied, "they are in use by another running program");
    }
    throw file_.fault(faultOf(result), error.databaseText().toStdString());
}

void SqliteSettings::checkIntegrity() {
    QSqlQuery check = run("PRAGMA quick_check(1)");
    if (!check.next() || check.value(0).toString() != "ok") throw Damaged();
}

void SqliteSettings::upgradeSchema() {
    QSqlQuery stored = run("PRAGMA user_version");
    const int version = stored.next() ? stored.value(0).toInt() : 0;
    stored.finish();
    if (version > SchemaVersion) {
        throw file_.fault(Fault::PathFileAccessError, "they were written by a newer version of Talvora");
    }
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA wal_autocheckpoint = 256");
    if (version == SchemaVersion) return;
    run("BEGIN IMMEDIATE");
    run("CREATE TABLE IF NOT EXISTS settings(app BLOB NOT NULL, section BLOB NOT NULL, name BLOB NOT NULL, "
        "value BLOB NOT NULL, PRIMARY KEY(app, section, name)) WITHOUT ROWID");
    run("PRAGMA user_version = 1");
    run("COMMIT");
}

void SqliteSettings::load() {
    QSqlQuery tables = run("SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND name = 'settings'");
    if (!tables.next() || tables.value(0).toInt() != 1) throw Damaged();
    tables.finish();
    QSqlQuery all = run("SELECT app, section, name, value FROM settings");
    while (all.next()) {
        table_.save({bytesOf(all.value(0)), bytesOf(all.value(1)), bytesOf(all.value(2))},
                    bytesOf(all.value(3)));
    }
    if (all.lastError().isValid()) fail(all.lastError());
}

std::string SqliteSettings::GetSetting(std::string_view app, std::string_view section, std::string_view key,
                                       std::string_view fallback) const {
    const std::string* value = table_.find({app, section, key});
    return value != nullptr ? *value : std::string(fallback);
}

void SqliteSettings::SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                                 std::string_view value) {
    const SettingName name{app, section, key};
    const std::string* old = table_.find(name);
    if (old != nullptr && *old == value) return;
    if (!save_) throw file_.fault(Fault::DiskFull, "the disk was full at the start");
    int column = 0;
    for (const auto part : {app, section, key}) save_->bindValue(column++, blob(SettingsTable::folded(part)));
    save_->bindValue(column, blob(value));
    const bool saved = save_->exec();
    const QSqlError error = save_->lastError();
    save_->finish();
    if (!saved) {
        try {
            fail(error);
        } catch (const Damaged&) {
            throw file_.fault(Fault::DeviceIOError, "the file was damaged while it was open");
        }
    }
    table_.save(name, value);
}

}  // namespace talvora
