#include "robot/StoreSchema.h"

#include <array>

namespace talvora {

namespace {

// SQLite keeps bytes in a column of any type, so both databases read the same text. `..._key` is a nick in
// capitals. Numbers of mails are taken from `meta`, which is why none comes twice.
const std::vector<const char*> firstTables = {
    "CREATE TABLE meta(name VARCHAR(40) PRIMARY KEY, value BIGINT NOT NULL)",
    "INSERT INTO meta(name, value) VALUES('schema', 0), ('mail', 0), ('announcement', 0)",

    "CREATE TABLE mail(id INTEGER PRIMARY KEY, sender BYTEA NOT NULL, recipient BYTEA NOT NULL, "
    "recipient_key BYTEA NOT NULL, subject BYTEA NOT NULL, pieces INTEGER NOT NULL, bytes BIGINT NOT NULL, "
    "sent_at BIGINT NOT NULL, expires_at BIGINT NOT NULL, ended INTEGER NOT NULL)",
    "CREATE INDEX mail_by_recipient ON mail(recipient_key, id)",

    "CREATE TABLE piece(mail INTEGER NOT NULL REFERENCES mail(id) ON DELETE CASCADE, line INTEGER NOT NULL, "
    "text BYTEA NOT NULL, PRIMARY KEY(mail, line))",

    // What was taken of whom: it outlives the mail, so that one that comes again is known.
    "CREATE TABLE receipt(id INTEGER PRIMARY KEY, sender_key BYTEA NOT NULL, digest BYTEA NOT NULL UNIQUE, "
    "kept_at BIGINT NOT NULL)",
    "CREATE INDEX receipt_by_sender ON receipt(sender_key, id)",

    "CREATE TABLE announcement(id INTEGER PRIMARY KEY, poster BYTEA NOT NULL, poster_key BYTEA NOT NULL, "
    "hours BIGINT NOT NULL, category INTEGER NOT NULL, posted_at BIGINT NOT NULL, "
    "expires_at BIGINT NOT NULL, text BYTEA NOT NULL)",
    "CREATE INDEX announcement_by_poster ON announcement(poster_key, posted_at)",
};

// When the confirmation was sent, 0 for unknown; and what expires is found without looking at the rest.
const std::vector<const char*> confirmationsAndExpiry = {
    "ALTER TABLE receipt ADD COLUMN confirmed_at BIGINT NOT NULL DEFAULT 0",
    "CREATE INDEX receipt_by_confirmation ON receipt(confirmed_at)",
    "CREATE INDEX mail_by_expiry ON mail(expires_at)",
    "CREATE INDEX announcement_by_expiry ON announcement(expires_at)",
};

const std::array steps{&firstTables, &confirmationsAndExpiry};

// 0 for a new store.
int versionOf(RobotStoreConnection& connection) {
    StoreRows tables = connection.run(
        connection.isSqlite() ? "SELECT count(*), sum(name = 'meta') FROM sqlite_schema"
                              : "SELECT 1, CASE WHEN to_regclass('meta') IS NULL THEN 0 ELSE 1 END");
    if (!tables.next()) connection.fail("it can't be read");
    if (tables.number(1) == 0) {
        if (connection.isSqlite() && tables.number(0) != 0) connection.fail("it is another program's file");
        return 0;
    }
    StoreRows version = connection.run("SELECT value FROM meta WHERE name = 'schema'");
    if (!version.next() || version.number() < 1) connection.fail("its tables are another program's");
    if (version.number() > static_cast<int>(steps.size())) {
        connection.fail("it was written by a newer version of this program");
    }
    return static_cast<int>(version.number());
}

void take(std::size_t step, RobotStoreConnection& connection) {
    connection.command(connection.isSqlite() ? "BEGIN IMMEDIATE" : "BEGIN");
    try {
        for (const char* statement : *steps.at(step)) connection.command(statement);
        connection.run("UPDATE meta SET value = ? WHERE name = 'schema'", {step + 1});
        connection.command("COMMIT");
    } catch (const StoreError&) {
        try {
            connection.command("ROLLBACK");
        } catch (const StoreError&) {  // it has been rolled back, or the server has gone
        }
        throw;
    }
}

}  // namespace

void bringUpTo(int version, RobotStoreConnection& connection) {
    const int found = versionOf(connection);
    if (connection.isSqlite()) connection.command("PRAGMA journal_mode = WAL");
    for (int step = found; step < version; ++step) take(static_cast<std::size_t>(step), connection);
}

void bringUpToDate(RobotStoreConnection& connection) {
    bringUpTo(static_cast<int>(steps.size()), connection);
}

}  // namespace talvora
