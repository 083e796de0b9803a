#include <chrono>
#include <optional>

#include "Vocabulary.h"
#include "platform_qt/Flushes.h"
#include "robot/RobotStore.h"
#include "robot/StorePlaces.h"
#include "robot/StoreSchema.h"

namespace talvora::test {
namespace {

class RobotStores : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        if (GetParam() == "Sqlite") {
            place_ = std::make_shared<SqlitePlace>();
        } else if (PostgresPlace::programs().isEmpty() || !QSqlDatabase::isDriverAvailable("QPSQL")) {
            GTEST_SKIP() << "PostgreSQL or Qt's plug-in for it is not installed";
        } else {
            if (server_ == nullptr) server_ = std::make_shared<PostgresPlace>();
            server_->meddle({"DROP SCHEMA public CASCADE", "CREATE SCHEMA public"});
            place_ = server_;
        }
        reopen();
    }
    static void TearDownTestSuite() { server_.reset(); }

    void reopen() {
        store_.reset();
        store_.emplace(place_->settings());
    }
    RobotStore& store() { return *store_; }
    // Tells in `ends` how a change ended.
    RobotStore::WhenSafe told(const std::string& name) {
        return [this, name](bool safe) { ends.push_back(name + (safe ? " safe" : " lost")); };
    }
    void keep(const NewMail& mail) {
        store().AddMail(mail, told(mail.Subject));
        store().Commit();
    }
    // The subjects of those mails for Nikos whose end has not been sent; takes them all.
    std::vector<std::string> takeAll(std::int64_t now = noon) {
        std::vector<std::string> subjects;
        while (const auto head = store().FirstMailFor("Nikos", now)) {
            subjects.push_back(head->Subject);
            store().NoteEndSent(head->Id, nullptr);
        }
        store().RemoveDelivered("nikos");
        store().Commit();
        return subjects;
    }
    void post(const std::string& text, std::int64_t hours, std::int64_t at) {
        store().AddAnnouncement({0, "Maria", hours, 1, at, text}, told(text));
    }
    std::string announcements(std::int64_t after, std::int64_t now, int limit = 20) {
        std::string all;
        for (const auto& one : store().AnnouncementsAfter(after, now, limit)) {
            all += std::to_string(one.Id) + one.Text + " ";
        }
        return all;
    }

    static inline std::shared_ptr<StorePlace> server_;  // one for all, since its start costs seconds
    std::shared_ptr<StorePlace> place_;
    std::optional<RobotStore> store_;
    std::vector<std::string> ends;
};

INSTANTIATE_TEST_SUITE_P(, RobotStores, testing::Values("Sqlite", "PostgreSQL"),
                         [](const auto& each) { return each.param; });

TEST_P(RobotStores, KeepMailUntilItHasReachedItsRecipient) {
    std::string every;
    for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
    // "Nikos" in Greek, with an accent and a final sigma, in small letters and in capitals.
    const std::string nick = "\xCD\xDF\xEA\xEF\xF2", shouted = "\xCD\xBA\xCA\xCF\xD3";
    store().AddMail({"Maria", nick, every, {every, "", "$'\\"}, noon, 0}, told("first"));
    EXPECT_FALSE(store().FirstMailFor(nick, noon)) << "it may still be lost";
    store().AddMail({every, nick, "second", {"x"}, noon + 1, 0}, told("second"));
    EXPECT_EQ(store().TotalsOf(shouted).Mails, 2);
    EXPECT_TRUE(ends.empty() && store().Waiting());
    store().Commit();
    EXPECT_THAT(ends, ElementsAre("first safe", "second safe"));
    EXPECT_FALSE(store().Waiting());
    reopen();

    EXPECT_EQ(store().TotalsOf(shouted).Bytes, 256 + 256 + 3 + 6 + 1);
    const auto head = store().FirstMailFor(shouted, noon);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->Sender + head->Recipient + head->Subject, "Maria" + nick + every);
    EXPECT_EQ(std::pair(head->Pieces, head->SentAt), std::pair(3, noon));
    const auto piece = [&](int line) { return store().Piece(head->Id, line); };
    EXPECT_EQ(piece(1) + "|" + piece(2) + "|" + piece(3), every + "||$'\\");
    EXPECT_THROW(piece(4), StoreError);
    for (const std::int64_t id : {std::int64_t{0}, head->Id + 9, std::int64_t{1} << 40}) {
        EXPECT_FALSE(store().MailFor(nick, id));
    }
    EXPECT_FALSE(store().MailFor("Maria", head->Id)) << "not hers";

    // Its end is sent; whether that reached him shows in what he asks next.
    store().NoteEndSent(head->Id, told("end"));
    store().Commit();
    EXPECT_EQ(ends.back(), "end safe");
    reopen();
    const auto second = store().FirstMailFor(nick, noon);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->Sender, every);
    EXPECT_TRUE(store().MailFor(shouted, head->Id)) << "he may go on with it";
    store().RemoveDelivered(shouted);
    EXPECT_FALSE(store().MailFor(nick, head->Id));
    EXPECT_THROW(piece(1), StoreError);
    store().RemoveMail(second->Id);
    EXPECT_EQ(store().TotalsOf(nick).Mails + store().TotalsOf(nick).Bytes, 0);
    store().Commit();
    reopen();
    keep(mailOf("next"));
    EXPECT_GT(store().FirstMailFor("NIKOS", noon)->Id, second->Id) << "a number is never used again";
}

// After lost power nothing but this tells what was safe.
TEST_P(RobotStores, FlushEachCommitAndNothingElse) {
    const int before = flushes;
    store().AddMail(mailOf("one"), nullptr);
    store().AddMail(mailOf("two"), nullptr);
    EXPECT_EQ(flushes, before);
    store().Commit();
    if (GetParam() == "Sqlite") {
        EXPECT_EQ(flushes, before + 1);
    } else {  // the server's own setting is off
        EXPECT_EQ(
            place_->number("SELECT CASE current_setting('synchronous_commit') WHEN 'on' THEN 1 ELSE 0 END"),
            1);
    }
}

TEST_P(RobotStores, AnswerAtOnceWhileSomebodyElseHasThemLocked) {
    keep(mailOf("before"));
    const auto begin = std::chrono::steady_clock::now();
    place_->whileLocked([&] {
        for (int request = 0; request < 20; ++request) {
            EXPECT_THROW(store().AddMail(mailOf("refused"), nullptr), StoreError);
            EXPECT_EQ(store().FirstMailFor("Nikos", noon)->Subject, "before") << "who reads is served";
        }
    });
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20))
        << "not one wait after the other";
    for (bool kept = false; !kept;) {  // the next try is a moment away
        try {
            keep(mailOf("behind"));
            kept = true;
        } catch (const StoreError&) {
            kept = std::chrono::steady_clock::now() - begin > std::chrono::seconds(30);
        }
    }
    EXPECT_THAT(takeAll(), ElementsAre("before", "behind"));
}

TEST_P(RobotStores, KeepAMailThatComesAgainOnce) {
    struct Case {
        std::string name;
        std::int64_t confirmedAfter;  // -1: never
        bool delivered;
        NewMail again;
        bool kept;
    };
    const auto later = [](std::int64_t seconds, NewMail mail = mailOf("hello", {"a", "bc"})) {
        mail.SentAt += seconds;
        return mail;
    };
    NewMail toOther = later(1), inCapitals = later(1), ofOther = later(1);
    toOther.Recipient = "Anna";
    ofOther.Sender = "Anna";
    inCapitals.Sender = "MARIA";
    inCapitals.Recipient = "nikos";
    const Case cases[] = {
        {"at once", -1, false, later(1), false},
        {"a month later", -1, false, later(30 * 24 * 3600), false},
        {"after its delivery", -1, true, later(60), false},
        {"just confirmed", 5, true, later(604), false},
        {"long confirmed", 5, true, later(605), true},
        {"by the clock put back", 5000, false, later(1), false},
        {"in capitals", -1, false, inCapitals, false},
        {"cut in another place", -1, false, later(1, mailOf("hello", {"ab", "c"})), true},
        {"another subject", -1, false, later(1, mailOf("hallo", {"a", "bc"})), true},
        {"another recipient", -1, false, toOther, true},
        {"another sender", -1, false, ofOther, true},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        keep(mailOf("hello", {"a", "bc"}));
        if (one.confirmedAfter >= 0) store().NoteConfirmed("maria", noon + one.confirmedAfter);
        if (one.delivered) {
            EXPECT_THAT(takeAll(), ElementsAre("hello"));
        }
        const int before = store().TotalsOf("Nikos").Mails + store().TotalsOf("Anna").Mails;
        ends.clear();
        keep(one.again);
        EXPECT_THAT(ends, ElementsAre(one.again.Subject + " safe"));
        EXPECT_EQ(store().TotalsOf("Nikos").Mails + store().TotalsOf("Anna").Mails,
                  before + (one.kept ? 1 : 0));
        place_->meddle({"DELETE FROM mail", "DELETE FROM receipt"});
    }
    // The confirmation is the last mail's, also where that came again.
    keep(mailOf("old"));
    keep(mailOf("new"));
    keep(later(700, mailOf("old")));
    store().NoteConfirmed("Maria", noon + 700);
    EXPECT_EQ(store().RemoveExpired(noon + 1299), 0);
    for (const auto& [after, subject] : {std::pair(1301, "new"), {1302, "old"}, {1303, "old"}}) {
        keep(later(after, mailOf(subject)));
    }
    EXPECT_THAT(takeAll(), ElementsAre("old", "new", "old")) << "a new mail's confirmation is its own";
    store().NoteConfirmed("Maria", noon + 1304);
    store().RemoveExpired(noon + 1304 + std::int64_t{90} * 24 * 3600);
    store().Commit();
    EXPECT_EQ(place_->number("SELECT count(*) FROM receipt"), 0) << "nobody is waited for without end";
}

TEST_P(RobotStores, DropWhatHasExpiredAndNumberWithoutAGap) {
    keep(mailOf("for ever"));
    keep(mailOf("for an hour", {"a"}, noon + 3600));
    EXPECT_EQ(store().RemoveExpired(noon + 3599), 0);
    EXPECT_EQ(store().FirstMailFor("Nikos", noon)->Subject, "for ever");
    EXPECT_THAT(takeAll(noon + 3600), ElementsAre("for ever"));
    EXPECT_EQ(store().RemoveExpired(noon + 3600), 1);

    EXPECT_EQ(store().LastAnnouncement(), 0);
    post("due", 0, noon + 3599);
    post("day", 24, noon + 60);
    EXPECT_EQ(announcements(0, noon), "") << "they may still be lost";
    EXPECT_EQ(store().LastAnnouncement(), 0);
    EXPECT_EQ(store().PostedSince("MARIA", 1, noon), 2);
    store().Commit();
    post("last", 0, noon + 7200);
    store().Commit();
    EXPECT_EQ(announcements(0, noon + 3599, 2), "1due 2day ");
    EXPECT_EQ(announcements(0, noon + 3600), "2day 3last ");
    EXPECT_EQ(announcements(2, noon + 24 * 3600 + 3599), "");
    EXPECT_EQ(announcements(-5, noon + 24 * 3600 + 3599), "2day ");
    EXPECT_EQ(announcements(std::int64_t{1} << 40, noon), "");
    store().RemoveExpired(noon + 25 * 3600);
    EXPECT_EQ(store().PostedSince("maria", 1, noon + 61), 2) << "expired ones count for their day";
    EXPECT_EQ(store().PostedSince("Nikos", 1, 0) + store().PostedSince("maria", 3, 0), 0);
    store().RemoveExpired(noon + 100 * 3600);
    store().Commit();
    EXPECT_EQ(place_->number("SELECT count(*) FROM announcement"), 0);
    reopen();
    EXPECT_EQ(store().LastAnnouncement(), 3);
    store().AddAnnouncement({77, "Nikos", std::int64_t{1} << 62, 7, noon, "far"}, nullptr);
    store().Commit();
    const auto far = store().AnnouncementsAfter(3, noon * 2, 5);
    ASSERT_EQ(far.size(), 1U);
    EXPECT_EQ(far[0].Id, 4);
    EXPECT_EQ(far[0].Poster + " " + std::to_string(far[0].Category), "Nikos 7");
    EXPECT_EQ(std::pair(far[0].Hours, far[0].PostedAt), std::pair(std::int64_t{1} << 62, noon));
}

TEST_P(RobotStores, KeepNothingOfATransactionThatFailsAndGoOn) {
    keep(mailOf("before"));
    // Whoever is kept behind `grudge` makes the commit fail; a subject of "!" fails by itself.
    place_->meddle({"CREATE TABLE grudge(id INTEGER REFERENCES mail(id) DEFERRABLE INITIALLY DEFERRED)"});
    const bool isSqlite = GetParam() == "Sqlite";
    const std::string body = "INSERT INTO grudge VALUES(-1);";
    place_->meddle(
        isSqlite
            ? std::vector<std::string>{"CREATE TRIGGER hold AFTER INSERT ON mail BEGIN " + body + " END"}
            : std::vector<std::string>{"CREATE FUNCTION hold() RETURNS trigger LANGUAGE plpgsql AS $$BEGIN " +
                                           body + " RETURN NEW; END$$",
                                       "CREATE TRIGGER hold AFTER INSERT ON mail FOR EACH ROW "
                                       "EXECUTE FUNCTION hold()"});
    post("lost", 48, noon);
    store().AddMail(mailOf("one"), [&](bool safe) {
        ends.emplace_back(safe ? "one safe" : "one lost");
        post("kept", 48, noon);
    });
    store().NoteConfirmed("Maria", noon);
    store().Commit();
    EXPECT_THAT(ends, ElementsAre("before safe", "lost lost", "one lost"));
    EXPECT_THAT(store().LastFault(), testing::HasSubstr(isSqlite ? "FOREIGN KEY" : "foreign key"));
    EXPECT_TRUE(store().Waiting()) << "what was begun by a call belongs to the next";
    store().Commit();
    EXPECT_EQ(ends.back(), "kept safe");
    EXPECT_EQ(announcements(0, noon), "1kept ") << "no gap";
    EXPECT_EQ(store().TotalsOf("Nikos").Mails, 1);

    // A statement that fails takes with it what came before, and not what comes behind.
    place_->meddle({isSqlite ? "DROP TRIGGER hold" : "DROP TRIGGER hold ON mail",
                    "CREATE UNIQUE INDEX once ON mail(subject)"});
    ends.clear();
    store().AddMail(mailOf("two"), told("two"));
    EXPECT_THROW(store().AddMail(mailOf("before", {"b"}), told("never")), StoreError);
    EXPECT_THROW(store().AddMail(mailOf("empty", {}), told("never")), StoreError);
    store().AddMail(mailOf("three"), told("three"));
    store().AddMail(mailOf("four"), [](bool) { throw std::runtime_error("a fault of the robot"); });
    post("next", 48, noon);
    EXPECT_THROW(store().Commit(), std::runtime_error);
    EXPECT_TRUE(store().Waiting());
    store().Commit();
    EXPECT_THAT(ends, ElementsAre("two lost", "three safe", "next safe"));
    EXPECT_THAT(takeAll(), ElementsAre("before", "three", "four"));
    EXPECT_EQ(announcements(0, noon), "1kept 2next ");
}

TEST_P(RobotStores, BringAnOlderStoreUpToDateAndRefuseANewerOne) {
    store_.reset();
    for (const char* table : {"announcement", "receipt", "piece", "mail", "meta"}) {
        place_->meddle({std::string("DROP TABLE ") + table});
    }
    {
        RobotStoreConnection old(place_->settings());
        bringUpTo(1, old);
        EXPECT_THROW(old.run("SELECT confirmed_at FROM receipt"), StoreError);
    }
    place_->meddle({"INSERT INTO mail VALUES(7, 'Maria', 'Nikos', 'NIKOS', 'old', 1, 4, 0, 0, 0)",
                    "INSERT INTO piece VALUES(7, 1, 'text')",
                    "UPDATE meta SET value = 7 WHERE name = 'mail'"});
    if (GetParam() == "Sqlite") {  // which tells text and bytes apart
        place_->meddle({"UPDATE mail SET recipient_key = CAST(recipient_key AS BLOB)"});
    }
    reopen();
    EXPECT_EQ(store().Piece(store().FirstMailFor("Nikos", noon)->Id, 1), "text");
    keep(mailOf("new"));
    store().NoteConfirmed("Maria", noon);
    EXPECT_THAT(takeAll(), ElementsAre("old", "new"));
    store_.reset();
    place_->meddle({"UPDATE meta SET value = 3 WHERE name = 'schema'"});
    try {
        reopen();
        FAIL() << "it was taken";
    } catch (const StoreError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("newer version"));
    }
    EXPECT_EQ(place_->number("SELECT value FROM meta WHERE name = 'schema'"), 3);
}

class LostServers : public RobotStores {};
INSTANTIATE_TEST_SUITE_P(, LostServers, testing::Values("PostgreSQL"),
                         [](const auto& each) { return each.param; });

TEST_P(LostServers, AreFoundAgain) {
    const auto lose = [this] {
        place_->meddle(
            {"SELECT pg_terminate_backend(pid, 10000) FROM pg_stat_activity "
             "WHERE usename = 'robot' AND pid <> pg_backend_pid() AND datname = 'postgres'"});
    };
    keep(mailOf("before"));
    lose();
    EXPECT_THROW(store().TotalsOf("Nikos"), StoreError);
    EXPECT_EQ(store().TotalsOf("Nikos").Mails, 1);
    ends.clear();
    store().AddMail(mailOf("in the middle"), told("in the middle"));
    lose();
    store().Commit();
    keep(mailOf("behind"));
    EXPECT_THAT(ends, ElementsAre("in the middle lost", "behind safe"));
    EXPECT_THAT(takeAll(), ElementsAre("before", "behind"));
}

}  // namespace
}  // namespace talvora::test
