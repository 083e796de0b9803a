#pragma once
// The robot's store: mail that waits, and announcements, in a database through Qt Sql. SQLite is built in;
// PostgreSQL by configuration. It brings an older schema up to date when it opens.
//
// Changes are made in one open transaction and are safe after `Commit` only; what depends on that is given as
// `whenSafe` and called by `Commit`, in the order in which it was given, with false if the commit failed and
// nothing of the transaction was kept. So many users' mails cost one flush of the disk. Counting sees what is
// not committed yet; mails and announcements are given to others when they are safe, since a number that was
// shown must not come to mean something else. Nothing is kept in memory but what waits for the commit.
//
// Nicks are bare; they are compared without regard to case. Text is in code page 1253 and comes back byte by
// byte. Moments are seconds of the wall clock, as `Moment.h` counts them. Faults are StoreError; one that the
// database raises undoes the open transaction, and those who wait are told at the next `Commit`. A call that
// throws does not keep its `whenSafe`. A connection that was lost is made anew at the next call. No call
// waits longer than a moment for a lock that somebody else holds: it is a fault as any other.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace talvora {

class StoreError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct NewMail {
    std::string Sender;
    std::string Recipient;
    std::string Subject;              // with its marks, as it came
    std::vector<std::string> Pieces;  // at least one
    std::int64_t SentAt = 0;
    std::int64_t ExpiresAt = 0;  // 0 for never
};

// A mail without its text.
struct MailHead {
    std::int64_t Id = 0;  // from 1, below 2^31, never used again
    std::string Sender;
    std::string Recipient;
    std::string Subject;
    int Pieces = 0;
    std::int64_t SentAt = 0;
};

struct MailTotals {
    int Mails = 0;
    std::int64_t Bytes = 0;  // of subjects and pieces
};

struct Announcement {
    std::int64_t Id = 0;  // 1, 2, 3, ... without a gap, whatever has expired
    std::string Poster;
    std::int64_t Hours = 0;
    int Category = 0;
    std::int64_t PostedAt = 0;
    std::string Text;
};

// Texts go to the database as they stand, in UTF-8.
struct StoreSettings {
    std::string Driver = "QSQLITE";          // or QPSQL
    std::string Database = "orreryserv.db";  // a native path, or the name of a PostgreSQL database
    std::string Host;                        // PostgreSQL: host or folder of the socket
    int Port = 0;
    std::string User;
    std::string Password;
    int Megabytes = 2048;  // that a SQLite file may grow to; 0 for no limit
};

class RobotStore {
  public:
    using WhenSafe = std::function<void(bool safe)>;

    explicit RobotStore(const StoreSettings& settings);
    ~RobotStore();
    RobotStore(const RobotStore&) = delete;
    RobotStore& operator=(const RobotStore&) = delete;

    // ---- Mail

    // Keeps a mail. One that its sender sends again, because the confirmation never reached him, is not kept
    // twice: `whenSafe` is called all the same. It counts as sent again while the same mail (sender,
    // recipient, subject, pieces) is known whose confirmation is not known to have been sent, or whose
    // confirmation was sent less than ten minutes ago, even if it was delivered meanwhile. A confirmation
    // that never came to be sent is waited for 90 days.
    void AddMail(const NewMail& mail, WhenSafe whenSafe);
    // The confirmation of the mail of that sender which was kept last has been sent.
    void NoteConfirmed(const std::string& sender, std::int64_t now);
    MailTotals TotalsOf(const std::string& recipient);

    // The oldest mail for that nick that has not expired and whose end has not been sent.
    std::optional<MailHead> FirstMailFor(const std::string& recipient, std::int64_t now);
    // A mail by its number, if it is still there and for that nick.
    std::optional<MailHead> MailFor(const std::string& recipient, std::int64_t id);
    // Piece `line` of a mail, counted from 1. StoreError if it is not there, perhaps because it has expired.
    std::string Piece(std::int64_t id, int line);
    // The recipient has taken all pieces, and is about to be told that this was the end.
    void NoteEndSent(std::int64_t id, WhenSafe whenSafe);
    // The recipient asks for a new mail: those whose end was sent have reached him and go.
    void RemoveDelivered(const std::string& recipient);
    void RemoveMail(std::int64_t id);
    // The number of mails that went. Announcements go two days after their posting at the soonest.
    int RemoveExpired(std::int64_t now);

    // ---- Announcements

    // Gives it the next number; its `Id` is of no account.
    void AddAnnouncement(const Announcement& announcement, WhenSafe whenSafe);
    // The number given last, of what is safe; 0 before the first.
    std::int64_t LastAnnouncement();
    // At most `limit` of those above `after` that have not expired, in order. One has expired when more hours
    // of the clock have been crossed than it has.
    std::vector<Announcement> AnnouncementsAfter(std::int64_t after, std::int64_t now, int limit);
    // How many that nick has posted in a category since `since`.
    int PostedSince(const std::string& poster, int category, std::int64_t since);

    // ---- Transactions

    // Whether something waits for `Commit`.
    bool Waiting() const;
    void Commit();
    // What the last transaction that was undone was undone for; empty if there was none.
    const std::string& LastFault() const;

  private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace talvora
