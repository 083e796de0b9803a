// The messenger is killed again and again while it sends and receives. What was confirmed in either direction
// is there in the end, and comes once but for the one line that was on disk and not yet counted.

#include <atomic>
#include <random>
#include <thread>

#include "e2e/MailFolder.h"
#include "simulation/programs/Network.h"

namespace talvora::programs {

namespace {

// Side by side, since a log-on waits more than it works; with more of them the starts, which work and don't
// wait, hold each other up.
constexpr unsigned messengers = 10;
constexpr int killsOfEach = 10;  // in each of the two tests
constexpr int mostPieces = 15;
constexpr std::size_t mailsAhead = 3;   // that the robot has for a messenger
constexpr int lookAgain = 50;           // milliseconds
constexpr int queueIsLookedAt = 12000;  // milliseconds
constexpr int answerComes = 2000;
constexpr int mostStarts = 8;

std::vector<std::string> piecesOf(const std::string& mail, int count) {
    std::vector<std::string> pieces;
    for (int i = 1; i <= count; ++i) pieces.push_back("piece " + std::to_string(i) + " of " + mail + ",");
    return pieces;
}

// A messenger that is killed, and the partner with whom it exchanges mails.
class KilledMessenger {
  public:
    KilledMessenger(int port, unsigned number, unsigned seed)
        : random_(seed),
          partner_(port, "Partner" + std::to_string(number)),
          user_(port, {.nick = "User" + std::to_string(number)}),
          nick_("User" + std::to_string(number)) {
        partner_.whenIdle = [this](MailUser&) { amuse(); };
    }

    void live() {
        for (int kills = 0; kills < killsOfEach; ++kills) {
            const bool sends = !mailsOf(user_, 'o').empty();
            const std::size_t read = mailsOf(user_, 'i').size();
            const std::uintmax_t half = halfReceived();
            workUntil([this] { return isThere(); });
            const Deadline life(Milliseconds(random(longestLife_)));
            workUntil([&] { return life.passed(); });
            user_.process().idle(random(lookAgain));
            user_.kill();
            count(sends, halfReceived() != half, mailsOf(user_, 'i').size() != read);
            startAgain(true);
        }
        ending_ = true;
        workUntil([this] { return partner_.nothingToSend(); });
        comeToTheEnd();
        // Whoever would get something twice gets it when he asks again.
        workUntil([this] { return isThere(); });
        const std::size_t before = mailsOf(user_, 'i', "").size();
        partner_.idles = 0;
        workUntil([this] { return partner_.idles > 20; });
        EXPECT_LE(mailsOf(user_, 'i', "").size(), before) << nick_ << " has got a mail once more";
    }
    void check() const {
        expectSame(written_, partner_.received);
        std::vector<SentMail> received;
        for (const auto& path : mailsOf(user_, 'i')) {
            const MailFile::Opened mail = opened(path);
            SentMail one{mail.Head.From, nick_, mail.Head.Subject, {}};
            for (std::size_t at = 0, end; (end = mail.Text.find(',', at)) != mail.Text.npos; at = end + 1) {
                one.pieces.push_back(mail.Text.substr(at, end + 1 - at));
            }
            one.pieces.erase(std::unique(one.pieces.begin(), one.pieces.end()), one.pieces.end());
            received.push_back(std::move(one));
        }
        expectSame(partner_.confirmed, received);
    }

    int killedSending = 0;
    int killedReceiving = 0;

  private:
    int random(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

    // The partner goes on meanwhile.
    template <class Arrived>
    void workUntil(Arrived arrived) {
        for (const Deadline deadline(3 * Patience); !arrived(); user_.process().idle(lookAgain)) {
            partner_.work();
            if (deadline.passed() || user_.process().ended() || partner_.gone()) {
                standsStill();
            }
        }
    }
    bool isThere() {
        seen_ += partner_.takeTranscript();
        const std::size_t itself = seen_.rfind(":" + nick_ + "!");
        return itself != seen_.npos && seen_.compare(seen_.find(' ', itself), 6, " JOIN ") == 0;
    }
    // Bytes of mails that are not whole.
    std::uintmax_t halfReceived() const {
        std::uintmax_t sum = 0;
        for (const auto& path : mailsOf(user_, 'i', ".ml")) {
            std::error_code whole;  // since it was listed
            const std::uintmax_t size = std::filesystem::file_size(path, whole);
            if (!whole) sum += size + 1;
        }
        return sum;
    }
    bool allDelivered() const {
        return partner_.nothingToSend() && mailsOf(user_, 'o').empty() &&
               mailsOf(user_, 'i').size() >= partner_.confirmed.size() &&
               partner_.received.size() >= written_.size();
    }

    // One without a mail to send asks for its own at its log-on, and then each minute only, so that it is
    // ended and asks again. But one that was killed when its mail was erased and its queue not yet saved has
    // a name without a mail in the queue: at the log-on it asks to send, and for its own mails at the next
    // look at the queue, ten seconds later. Who is always ended before that, or before the log-on, gets
    // nowhere for ever.
    void comeToTheEnd() {
        for (int starts = 0; !allDelivered(); ++starts) {
            if (starts == mostStarts) standsStill();
            if (starts > 0) {
                user_.kill();
                startAgain(false);
            }
            workUntil([this] { return isThere(); });
            while (!allDelivered() && moves(starts == 0 ? answerComes : queueIsLookedAt)) {
            }
        }
    }
    bool moves(int milliseconds) {
        const std::uintmax_t before = delivered();
        const Deadline still{Milliseconds(milliseconds)};
        workUntil([&] { return allDelivered() || delivered() != before || still.passed(); });
        return delivered() != before;
    }
    std::uintmax_t delivered() const {
        return halfReceived() + mailsOf(user_, 'i').size() + partner_.received.size() -
               mailsOf(user_, 'o').size();
    }
    [[noreturn]] void standsStill() {
        throw Missing(nick_ + " gets no further:\n" + user_.process().output() + seen_ +
                      partner_.takeTranscript());
    }
    // A life ends in the middle of the work, however fast the machine is.
    void count(bool sends, bool receiving, bool read) {
        const bool sending = sends && !mailsOf(user_, 'o').empty();
        killedSending += sending ? 1 : 0;
        killedReceiving += receiving ? 1 : 0;
        const bool early = sending || (!sends && !read);
        longestLife_ = std::clamp(early ? longestLife_ * 2 : longestLife_ * 2 / 3, 20, 20000);
    }

    // Half of the lives begin with a mail to send; only a messenger without one asks for its own.
    void startAgain(bool mayWrite) {
        std::vector<std::string> settings;
        if (mayWrite && mailsOf(user_, 'o').empty() && random(2) == 0) {
            const std::string number = std::to_string(written_.size() + 1);
            SentMail mail{nick_, partner_.nick(), "Mail " + number, piecesOf(number, 1 + random(mostPieces))};
            std::string file =
                mail.to + " " + std::to_string(mail.pieces.size()) + " " + mail.subject + "\r\n";
            for (const std::string& piece : mail.pieces) file += piece + "\r\n";
            user_.folder().write("data/Mail/o" + number + ".qrm", file + "\r\n");
            settings.push_back("Incompleted/SendQueue=o" + number + ".qrm|");
            written_.push_back(std::move(mail));
        }
        partner_.work();
        seen_.clear();
        partner_.takeTranscript();
        user_.startAgain(settings);
    }
    void amuse() {
        if (ending_ || mailsOf(user_, 'i').size() + mailsAhead <= partner_.confirmed.size()) return;
        const std::string number = std::to_string(++composed_);
        partner_.compose(nick_, "Mail " + number, piecesOf(number, 1 + random(mostPieces)));
    }

    std::mt19937 random_;
    MailUser partner_;
    OrreryProcess user_;
    std::string nick_;
    std::string seen_;
    std::vector<SentMail> written_;
    int composed_ = 0;
    int longestLife_ = 200;  // milliseconds from the log-on
    bool ending_ = false;
};

class KilledMessengers : public testing::TestWithParam<int> {};

TEST_P(KilledMessengers, LoseNoConfirmedMailAndDoubleNone) {
    if (const auto reason = Network::whyNot(); !reason.empty()) GTEST_SKIP() << reason;
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Network network({.settings = "[mail]\nMailsPerUser=1000\nKilobytesPerUser=10000\n"});
    std::atomic<int> sending{0}, receiving{0};
    const auto tell = [&](unsigned number) {
        try {
            KilledMessenger messenger(network.port(), number, seed + number);
            messenger.live();
            messenger.check();
            sending += messenger.killedSending;
            receiving += messenger.killedReceiving;
        } catch (const std::exception& missing) {
            ADD_FAILURE() << missing.what();
        }
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned number = 0; number < messengers; ++number) threads.emplace_back(tell, number);
    }
    std::cout << "seed " << seed << ": killed while sending " << sending << ", while receiving " << receiving
              << std::endl;
    EXPECT_GT(sending + receiving, 20) << "the others died at quiet moments";
}

INSTANTIATE_TEST_SUITE_P(Network, KilledMessengers, testing::Range(0, 2));

}  // namespace

}  // namespace talvora::programs
