#include "robot/RobotStore.h"

#include <algorithm>

#include "robot/RobotStoreImplementation.h"

namespace talvora {

namespace {

// The hours of the clock are counted, as the users' programs do: one for no hours is due until the hour ends.
std::int64_t expiryOf(const Announcement& announcement) {
    constexpr std::int64_t hour = 3600, endOfTime = std::int64_t{1} << 50;
    const auto posted = std::clamp<std::int64_t>(announcement.PostedAt, 0, endOfTime);
    return (posted / hour + std::clamp<std::int64_t>(announcement.Hours, 0, endOfTime / hour) + 1) * hour;
}

}  // namespace

std::int64_t nextNumber(RobotStoreConnection& connection, std::string_view statement) {
    StoreRows row = connection.run(statement);
    if (!row.next() || row.number() > RobotStoreTransaction::HighestNumber) {
        connection.fail("its numbers are used up");
    }
    return row.number();
}

RobotStore::RobotStore(const StoreSettings& settings)
    : implementation_(std::make_unique<Implementation>(settings)) {}

RobotStore::~RobotStore() = default;

void RobotStore::AddAnnouncement(const Announcement& announcement, WhenSafe whenSafe) {
    auto& transaction = implementation_->transaction;
    transaction.change([&](RobotStoreConnection& connection) {
        const std::int64_t id = nextNumber(
            connection, "UPDATE meta SET value = value + 1 WHERE name = 'announcement' RETURNING value");
        connection.run(
            "INSERT INTO announcement(id, poster, poster_key, hours, category, posted_at, expires_at, text) "
            "VALUES(?, ?, ?, ?, ?, ?, ?, ?)",
            {id, announcement.Poster, UCase(announcement.Poster), announcement.Hours, announcement.Category,
             announcement.PostedAt, expiryOf(announcement), announcement.Text});
        transaction.safeAnnouncement = std::min(transaction.safeAnnouncement, id - 1);
    });
    transaction.whenSafe(std::move(whenSafe));
}

std::int64_t RobotStore::LastAnnouncement() {
    return implementation_->transaction.read([&](RobotStoreConnection& connection) {
        StoreRows row = connection.run("SELECT value FROM meta WHERE name = 'announcement'");
        const std::int64_t last = row.next() ? row.number() : 0;
        return std::min(last, implementation_->transaction.safeAnnouncement);
    });
}

std::vector<Announcement> RobotStore::AnnouncementsAfter(std::int64_t after, std::int64_t now, int limit) {
    const auto& transaction = implementation_->transaction;
    after = std::clamp<std::int64_t>(after, 0, transaction.HighestNumber);
    return implementation_->transaction.read([&](RobotStoreConnection& connection) {
        std::vector<Announcement> found;
        StoreRows row = connection.run(
            "SELECT id, poster, hours, category, posted_at, text FROM announcement "
            "WHERE id > ? AND id <= ? AND expires_at > ? ORDER BY id LIMIT ?",
            {after, transaction.safeAnnouncement, now, std::max(limit, 0)});
        while (row.next()) {
            found.push_back({row.number(0), row.bytes(1), row.number(2), static_cast<int>(row.number(3)),
                             row.number(4), row.bytes(5)});
        }
        return found;
    });
}

int RobotStore::PostedSince(const std::string& poster, int category, std::int64_t since) {
    return implementation_->transaction.read([&](RobotStoreConnection& connection) {
        StoreRows row = connection.run(
            "SELECT count(*) FROM announcement WHERE poster_key = ? AND category = ? AND posted_at >= ?",
            {UCase(poster), category, since});
        return row.next() ? static_cast<int>(row.number()) : 0;
    });
}

int RobotStore::RemoveExpired(std::int64_t now) {
    return implementation_->transaction.change([&](RobotStoreConnection& connection) {
        forgetReceipts(connection, now);
        // A day's posts of a nick are counted, whether they have expired or not.
        constexpr std::int64_t twoDays = std::int64_t{2} * 24 * 3600;
        connection.run("DELETE FROM announcement WHERE expires_at <= ? AND posted_at < ?",
                       {now, now - twoDays});
        return connection.run("DELETE FROM mail WHERE expires_at > 0 AND expires_at <= ?", {now}).changed();
    });
}

bool RobotStore::Waiting() const {
    return implementation_->transaction.waiting();
}

void RobotStore::Commit() {
    implementation_->transaction.commit();
}

const std::string& RobotStore::LastFault() const {
    return implementation_->transaction.fault();
}

}  // namespace talvora
