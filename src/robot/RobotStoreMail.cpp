// The store's mail. A receipt stands for what was taken of a sender; it outlives the mail.

#include <QtCore/QCryptographicHash>
#include <algorithm>

#include "robot/RobotStoreImplementation.h"

namespace talvora {

namespace {

// How long after its confirmation the same mail is taken for one that comes again, and how long one waits
// whose confirmation may never have been sent.
constexpr std::int64_t ComesAgain = 10 * 60;
constexpr std::int64_t Forgotten = std::int64_t{90} * 24 * 3600;

constexpr auto HighestMail = RobotStoreTransaction::HighestNumber;

// The same for the same mail of the same sender.
std::string digestOf(const NewMail& mail) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const auto add = [&](std::string_view text) {
        hash.addData(QByteArray::number(static_cast<qulonglong>(text.size())) + ' ');
        hash.addData(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    };
    for (const auto& text : {UCase(mail.Sender), UCase(mail.Recipient), mail.Subject}) add(text);
    for (const auto& piece : mail.Pieces) add(piece);
    return hash.result().toStdString();
}

bool hasComeAgain(RobotStoreConnection& connection, const std::string& digest, std::int64_t now) {
    StoreRows row = connection.run("SELECT confirmed_at FROM receipt WHERE digest = ?", {digest});
    return row.next() && (row.number() == 0 || row.number() > now - ComesAgain);
}

// It is the sender's last one from now on, and its confirmation has yet to be sent.
void keepReceipt(RobotStoreConnection& connection, std::int64_t id, const NewMail& mail,
                 const std::string& digest) {
    connection.run(
        "INSERT INTO receipt(id, sender_key, digest, kept_at, confirmed_at) VALUES(?, ?, ?, ?, 0) "
        "ON CONFLICT(digest) DO UPDATE SET id = excluded.id, kept_at = excluded.kept_at, confirmed_at = 0",
        {id, UCase(mail.Sender), digest, mail.SentAt});
}

void keepMail(RobotStoreConnection& connection, std::int64_t id, const NewMail& mail) {
    std::size_t bytes = mail.Subject.size();
    for (const auto& piece : mail.Pieces) bytes += piece.size();
    connection.run(
        "INSERT INTO mail(id, sender, recipient, recipient_key, subject, pieces, bytes, sent_at, expires_at, "
        "ended) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, 0)",
        {id, mail.Sender, mail.Recipient, UCase(mail.Recipient), mail.Subject, mail.Pieces.size(), bytes,
         mail.SentAt, mail.ExpiresAt});
    int line = 0;
    for (const auto& piece : mail.Pieces) {
        connection.run("INSERT INTO piece(mail, line, text) VALUES(?, ?, ?)", {id, ++line, piece});
    }
}

std::optional<MailHead> firstOf(StoreRows& row) {
    if (!row.next()) return std::nullopt;
    return MailHead{row.number(0), row.bytes(1), row.bytes(2), row.bytes(3), static_cast<int>(row.number(4)),
                    row.number(5)};
}

}  // namespace

void forgetReceipts(RobotStoreConnection& connection, std::int64_t now) {
    connection.run("DELETE FROM receipt WHERE confirmed_at > 0 AND confirmed_at <= ?", {now - ComesAgain});
    connection.run("DELETE FROM receipt WHERE confirmed_at = 0 AND kept_at <= ?", {now - Forgotten});
}

void RobotStore::AddMail(const NewMail& mail, WhenSafe whenSafe) {
    if (mail.Pieces.empty()) throw StoreError("A mail without a piece can't be kept");
    auto& transaction = implementation_->transaction;
    transaction.change([&](RobotStoreConnection& connection) {
        const std::string digest = digestOf(mail);
        const std::int64_t id =
            nextNumber(connection, "UPDATE meta SET value = value + 1 WHERE name = 'mail' RETURNING value");
        const bool isNew = !hasComeAgain(connection, digest, mail.SentAt);
        keepReceipt(connection, id, mail, digest);
        if (isNew) keepMail(connection, id, mail);
        transaction.safeMail = std::min(transaction.safeMail, id - 1);
    });
    transaction.whenSafe(std::move(whenSafe));
}

void RobotStore::NoteConfirmed(const std::string& sender, std::int64_t now) {
    implementation_->transaction.change([&](RobotStoreConnection& connection) {
        connection.run(
            "UPDATE receipt SET confirmed_at = ? "
            "WHERE id = (SELECT max(id) FROM receipt WHERE sender_key = ?)",
            {std::max<std::int64_t>(now, 1), UCase(sender)});
    });
}

MailTotals RobotStore::TotalsOf(const std::string& recipient) {
    return implementation_->transaction.read([&](RobotStoreConnection& connection) {
        StoreRows row = connection.run("SELECT count(*), sum(bytes) FROM mail WHERE recipient_key = ?",
                                       {UCase(recipient)});
        if (!row.next()) return MailTotals{};
        return MailTotals{static_cast<int>(row.number(0)), row.number(1)};
    });
}

std::optional<MailHead> RobotStore::FirstMailFor(const std::string& recipient, std::int64_t now) {
    auto& transaction = implementation_->transaction;
    return transaction.read([&](RobotStoreConnection& connection) {
        StoreRows row = connection.run(
            "SELECT id, sender, recipient, subject, pieces, sent_at FROM mail WHERE recipient_key = ? "
            "AND id <= ? AND ended = 0 AND (expires_at = 0 OR expires_at > ?) ORDER BY id LIMIT 1",
            {UCase(recipient), transaction.safeMail, now});
        return firstOf(row);
    });
}

std::optional<MailHead> RobotStore::MailFor(const std::string& recipient, std::int64_t id) {
    auto& transaction = implementation_->transaction;
    if (id < 1 || id > transaction.safeMail) return std::nullopt;
    return transaction.read([&](RobotStoreConnection& connection) {
        StoreRows row = connection.run(
            "SELECT id, sender, recipient, subject, pieces, sent_at FROM mail WHERE id = ? AND recipient_key "
            "= ?",
            {id, UCase(recipient)});
        return firstOf(row);
    });
}

std::string RobotStore::Piece(std::int64_t id, int line) {
    std::optional<std::string> text;
    if (id >= 1 && id <= HighestMail) {
        text = implementation_->transaction.read([&](RobotStoreConnection& connection) {
            StoreRows row = connection.run("SELECT text FROM piece WHERE mail = ? AND line = ?", {id, line});
            return row.next() ? std::optional(row.bytes(0)) : std::nullopt;
        });
    }
    if (!text) throw StoreError("Mail " + CStr(id) + " has no piece " + CStr(line));
    return *text;
}

void RobotStore::NoteEndSent(std::int64_t id, WhenSafe whenSafe) {
    implementation_->transaction.change([&](RobotStoreConnection& connection) {
        if (id >= 1 && id <= HighestMail) connection.run("UPDATE mail SET ended = 1 WHERE id = ?", {id});
    });
    implementation_->transaction.whenSafe(std::move(whenSafe));
}

void RobotStore::RemoveDelivered(const std::string& recipient) {
    implementation_->transaction.change([&](RobotStoreConnection& connection) {
        connection.run("DELETE FROM mail WHERE recipient_key = ? AND ended = 1", {UCase(recipient)});
    });
}

void RobotStore::RemoveMail(std::int64_t id) {
    if (id < 1 || id > HighestMail) return;
    implementation_->transaction.change(
        [&](RobotStoreConnection& connection) { connection.run("DELETE FROM mail WHERE id = ?", {id}); });
}

}  // namespace talvora
