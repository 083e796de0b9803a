// The robot is killed again and again while its users send, read and post. What it has confirmed is not lost
// and comes once; announcements have one number each, without a gap.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>

#include "e2e/MailFolder.h"
#include "simulation/programs/Network.h"

namespace talvora::programs {

namespace {

// A log-on takes a second in which nothing happens, so several networks live side by side.
constexpr int networks = 10;
constexpr int kills = 10;  // in each network, in each of the two tests
constexpr int people = 6;
// A life is counted in what the robot says, so that a slow machine sees as much of it.
constexpr int longestLife = 120;
constexpr int longestAgony = 20;  // milliseconds from then on

std::string limits() {
    return "[mail]\nMailsPerUser=100000\nKilobytesPerUser=100000\n[announcements]\nPerDay.0=100000\n";
}

// One network's life: its robot comes, works for a moment and is killed; in the end it works until everything
// has arrived.
class Story {
  public:
    explicit Story(unsigned seed) : random_(seed), network_({.settings = limits(), .waitForRobot = false}) {
        for (int i = 0; i < people; ++i) {
            users.push_back(std::make_unique<MailUser>(network_.port(), "User" + std::to_string(i)));
            users.back()->whenIdle = [this](MailUser& user) { amuse(user); };
        }
    }

    bool over() const { return phase_ == Phase::Over; }
    void step() {
        for (const auto& user : users) {
            user->work();
            if (user->gone()) throw Missing("the server has dropped " + user->nick() + transcripts());
        }
        goOnWaiting();
        if (arrived()) {
            next();
        } else if (until_.passed()) {
            throw Missing("the robot or its answer does not come:\n" + network_.robot().output() +
                          transcripts());
        }
    }

    std::vector<std::unique_ptr<MailUser>> users;

  private:
    enum class Phase { Coming, Working, Dying, Going, Delivering, AskingAgain, Over };

    int random(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    int texts() const {
        int sum = 0;
        for (const auto& user : users) sum += user->texts;
        return sum;
    }

    // What the phase waits for.
    bool arrived() const {
        if (phase_ == Phase::Coming || phase_ == Phase::Going) {
            const bool there = phase_ == Phase::Coming;
            return std::ranges::all_of(users, [&](const auto& u) { return u->robotIsThere() == there; });
        }
        if (phase_ == Phase::Working) return texts() >= lifeEnds_;
        if (phase_ == Phase::Dying) return until_.passed();
        if (phase_ == Phase::Delivering) return allDelivered();
        return std::ranges::all_of(users, [](const auto& u) { return u->idles >= 3; });
    }

    // A slow disk makes a long life: while the robot says something, nobody gives it up.
    void goOnWaiting() {
        if (std::exchange(heard_, texts()) == texts() || phase_ == Phase::Dying) return;
        until_ = Deadline(2 * Patience);
    }

    // Everything that was composed has been confirmed, and as much has been received.
    bool allDelivered() const {
        std::size_t sent = 0, received = 0;
        for (const auto& user : users) {
            if (!user->nothingToSend()) return false;
            sent += user->confirmed.size();
            received += user->received.size();
        }
        return sent <= received;
    }

    void next() {
        const bool last = kills_ == kills;
        if (phase_ == Phase::Coming) {
            transcripts();
            lifeEnds_ = texts() + random(longestLife);
            wait(last ? Phase::Delivering : Phase::Working, 2 * Patience);
        } else if (phase_ == Phase::Working) {
            wait(Phase::Dying, Milliseconds(random(longestAgony)));
        } else if (phase_ == Phase::Dying) {
            network_.killRobot();
            ++kills_;
            wait(Phase::Going, Patience);
        } else if (phase_ == Phase::Going) {
            network_.startRobot();
            wait(Phase::Coming, 2 * Patience);
        } else if (phase_ == Phase::Delivering) {
            // Whoever would get something twice gets it when he asks again.
            for (const auto& user : users) user->idles = 0;
            wait(Phase::AskingAgain, Patience);
        } else {
            phase_ = Phase::Over;
        }
    }

    void wait(Phase phase, Milliseconds time) {
        phase_ = phase;
        until_ = Deadline(time);
    }

    // What an idle user does next.
    void amuse(MailUser& user) {
        if (phase_ == Phase::Delivering || phase_ == Phase::AskingAgain) return;
        const std::string number = std::to_string(++written_);
        if (random(2) == 0) user.post("Announcement " + number);
        std::vector<std::string> pieces;
        for (int i = random(4); i >= 0; --i) pieces.push_back("piece " + std::to_string(i) + " of " + number);
        user.compose(users[static_cast<std::size_t>(random(people))]->nick(), "Mail " + number, pieces);
    }

    std::string transcripts() {
        std::string text;
        for (const auto& user : users) text += "\n--- " + user->nick() + "\n" + user->takeTranscript();
        return text;
    }

    std::mt19937 random_;
    Network network_;
    Phase phase_ = Phase::Coming;
    Deadline until_{2 * Patience};
    int lifeEnds_ = 0;
    int heard_ = 0;  // of the robot, when it was last looked
    int kills_ = 0;
    int written_ = 0;
};

void tell(std::vector<std::unique_ptr<Story>>& stories) {
    const auto isOver = [](const auto& story) { return story->over(); };
    while (!std::ranges::all_of(stories, isOver)) {
        std::vector<pollfd> entries;
        for (const auto& story : stories) {
            for (const auto& user : story->users) entries.push_back({user->descriptor(), POLLIN, 0});
        }
        poll(entries.data(), entries.size(), 5);
        for (const auto& story : stories) {
            if (!story->over()) story->step();
        }
    }
}

// Gives how many mails were confirmed and how many receptions went on after a kill.
std::pair<std::size_t, int> checkMail(const Story& story) {
    std::vector<SentMail> confirmed, received;
    int refused = 0, resumed = 0;
    for (const auto& user : story.users) {
        confirmed.insert(confirmed.end(), user->confirmed.begin(), user->confirmed.end());
        received.insert(received.end(), user->received.begin(), user->received.end());
        refused += user->refused;
        resumed += user->resumed;
    }
    expectSame(confirmed, received);
    EXPECT_EQ(refused, 0);
    return {confirmed.size(), resumed};
}

void checkAnnouncements(const Story& story) {
    std::map<int, HeardAnnouncement> byNumber;
    std::map<std::string, int> byText;
    std::vector<int> lastOf;
    for (const auto& user : story.users) {
        int last = user->firstNumber;
        for (const HeardAnnouncement& one : user->heard) {
            EXPECT_EQ(one.number, ++last) << "at " << user->nick();
            last = one.number;
            EXPECT_EQ(byNumber.emplace(one.number, one).first->second, one);
            EXPECT_EQ(byText.emplace(one.text, one.number).first->second, one.number);
        }
        lastOf.push_back(last);
    }
    EXPECT_EQ(std::ranges::count(lastOf, lastOf.front()), people) << "not everybody has heard all";
    EXPECT_GT(byNumber.size(), 2u);
}

class KilledRobot : public testing::TestWithParam<int> {};

TEST_P(KilledRobot, LosesNoConfirmedMailAndDoublesNone) {
    if (const auto reason = Network::whyNot(); !reason.empty()) GTEST_SKIP() << reason;
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::vector<std::unique_ptr<Story>> stories;
    for (unsigned i = 0; i < networks; ++i) stories.push_back(std::make_unique<Story>(seed + i));
    tell(stories);
    std::size_t confirmed = 0;
    int resumed = 0;
    for (const auto& story : stories) {
        const auto [mails, goneOn] = checkMail(*story);
        confirmed += mails;
        resumed += goneOn;
        checkAnnouncements(*story);
    }
    // Else the robots have died at quiet moments only.
    EXPECT_GT(confirmed, 20U * networks);
    EXPECT_GT(resumed, networks);
}

INSTANTIATE_TEST_SUITE_P(Network, KilledRobot, testing::Range(0, 2));

}  // namespace

}  // namespace talvora::programs
