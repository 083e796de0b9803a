#pragma once
// One connection of the robot's store to its database. It opens SQLite or PostgreSQL, keeps each statement
// prepared under its text, and makes a StoreError of whatever goes wrong. The statements are the same for
// both databases; all text goes as bytes.

#include <QtCore/QVariant>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "robot/RobotStore.h"

namespace talvora {

// What stands in a statement's "?".
struct StoreValue : QVariant {
    template <std::integral T>
    StoreValue(T number) : QVariant(static_cast<qlonglong>(number)) {}
    StoreValue(std::string_view bytes);
    StoreValue(const std::string& bytes) : StoreValue(std::string_view(bytes)) {}
};

class RobotStoreConnection;

// What a statement gave. The statement is free for its next use when this is gone.
class StoreRows {
  public:
    StoreRows(const RobotStoreConnection& connection, QSqlQuery& query)
        : connection_(connection), query_(query) {}
    StoreRows(const StoreRows&) = delete;
    StoreRows& operator=(const StoreRows&) = delete;
    ~StoreRows() { query_.finish(); }

    bool next();
    std::int64_t number(int column = 0) const { return query_.value(column).toLongLong(); }
    std::string bytes(int column) const { return query_.value(column).toByteArray().toStdString(); }
    int changed() const { return query_.numRowsAffected(); }

  private:
    const RobotStoreConnection& connection_;
    QSqlQuery& query_;
};

class RobotStoreConnection {
  public:
    // How long a lock of others is waited for. The whole robot waits with it.
    static constexpr int LockWaitMs = 20;

    // A SQLite file that is damaged is refused as it is.
    explicit RobotStoreConnection(const StoreSettings& settings);
    RobotStoreConnection(const RobotStoreConnection&) = delete;
    RobotStoreConnection& operator=(const RobotStoreConnection&) = delete;
    ~RobotStoreConnection();

    bool isSqlite() const { return settings_.Driver == "QSQLITE"; }
    // False when the server has gone.
    bool isAlive() const { return database_.isOpen(); }

    StoreRows run(std::string_view statement, std::initializer_list<StoreValue> values = {});
    // For what can't be prepared: BEGIN and its like.
    void command(const char* text);
    [[noreturn]] void fail(const std::string& reason) const;
    [[noreturn]] void fail(const QSqlError& error) const;

  private:
    void open();
    void openSqlite();
    void close();
    void setCeiling();
    void checkFile();
    void tighten(const std::string& file) const;

    StoreSettings settings_;
    QString name_;  // unique in the process
    QSqlDatabase database_;
    std::unordered_map<std::string, QSqlQuery> statements_;
};

}  // namespace talvora
