#pragma once
// The settings store of a real machine: one SQLite file a user, readable by its owner alone. Whoever composes
// the platform owns it; it needs a QCoreApplication, for Qt's database plug-in.
//
// All is loaded at the start, reads come from memory, and a save is on the disk when it returns. The file is
// this store's alone as long as it lives. What is damaged is put aside beside it and told by `Notice`; so
// is a full disk, on which the settings are read and each save faults with 61.

#include <QtCore/QString>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <optional>
#include <string>
#include <string_view>

#include "platform/SettingsStore.h"
#include "platform/SettingsTable.h"
#include "platform_qt/SettingsFile.h"

namespace talvora {

class SqliteSettings final : public SettingsStore {
  public:
    // `path` is native, UTF-8. Throws RuntimeError with a description for the user if the file can't be
    // written, was written by a newer version, or stays in use by another store for `busyMs` milliseconds.
    explicit SqliteSettings(const std::string& path, int busyMs = 2000);
    SqliteSettings(const SqliteSettings&) = delete;
    SqliteSettings& operator=(const SqliteSettings&) = delete;
    ~SqliteSettings() override;

    // What the user should know of the start, in the component's code page; empty if all was well.
    std::string Notice() const { return notice_; }

    std::string GetSetting(std::string_view app, std::string_view section, std::string_view key,
                           std::string_view fallback) const override;
    void SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                     std::string_view value) override;

  private:
    struct Damaged {};     // thrown by a statement that meets a damaged file
    struct CannotOpen {};  // by one that finds no room for a file beside it

    void start(int busyMs);
    void startAnew(int busyMs);
    void tell(const std::string& notice);
    void read(int busyMs);
    void readFrozen();
    void open(const QString& name, const QString& options);
    void close();
    void checkIntegrity();
    void upgradeSchema();
    void load();
    QSqlQuery run(const char* statement);
    [[noreturn]] void fail(const QSqlError& error) const;

    SettingsFile file_;
    QString connection_;  // its name, unique in the process
    QSqlDatabase database_;
    std::optional<QSqlQuery> save_;  // nothing while the store can only be read
    SettingsTable table_;
    std::string notice_;
};

}  // namespace talvora
