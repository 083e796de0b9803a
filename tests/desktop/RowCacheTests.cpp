// The heights of rows against a plain list, in long random sessions.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "desktop/RowCache.h"

namespace talvora::test {

namespace {

class RowSession {
  public:
    explicit RowSession(unsigned seed) : random_(seed) {}

    void step() {
        const std::uint64_t at = pick(heights_.size() + 1);
        switch (pick(6)) {
            case 0:
                return change(at, pick(heights_.size() - at + 1), pick(4));
            case 1:
                return change(at, pick(std::min<std::size_t>(heights_.size() - at, 700) + 1), pick(900));
            case 2:
                return change(heights_.size() - std::min<std::size_t>(heights_.size(), 1), 1, 2);
            case 3:
                return drop(pick(pick(20) == 0 ? heights_.size() + 1 : 5));
            case 4:
                return change(at, 0, 1);
            default:
                if (at == heights_.size()) return;
                heights_[at] = 1 + static_cast<int>(pick(40));
                rows_.setHeight(first_ + at, heights_[at]);
        }
    }

    void compare() {
        ASSERT_EQ(rows_.FirstNumber(), first_);
        ASSERT_EQ(rows_.EndNumber(), first_ + heights_.size());
        std::int64_t top = 0;
        for (std::size_t i = 0; i < heights_.size(); ++i) {
            ASSERT_EQ(rows_.Height(first_ + i), heights_[i]);
            ASSERT_EQ(rows_.TopOf(first_ + i), top);
            ASSERT_EQ(rows_.RowAt(top), first_ + i);
            top += heights_[i];
            ASSERT_EQ(rows_.RowAt(top - 1), first_ + i);
        }
        ASSERT_EQ(rows_.Total(), top);
    }

  private:
    std::size_t pick(std::size_t below) { return random_() % std::max<std::size_t>(below, 1); }

    void change(std::size_t at, std::size_t oldCount, std::size_t newCount) {
        std::vector<int> by(newCount);
        for (int& height : by) height = 1 + static_cast<int>(pick(40));
        rows_.replace(first_ + at, oldCount, by);
        oldCount = std::min(oldCount, heights_.size() - at);
        const auto begin = heights_.begin() + static_cast<std::ptrdiff_t>(at);
        heights_.erase(begin, begin + static_cast<std::ptrdiff_t>(oldCount));
        heights_.insert(heights_.begin() + static_cast<std::ptrdiff_t>(at), by.begin(), by.end());
    }
    void drop(std::size_t count) {
        rows_.dropFront(count);
        count = std::min(count, heights_.size());
        first_ += count;
        heights_.erase(heights_.begin(), heights_.begin() + static_cast<std::ptrdiff_t>(count));
    }

    std::mt19937 random_;
    RowCache rows_;
    std::uint64_t first_ = 0;
    std::vector<int> heights_;
};

}  // namespace

TEST(RowCache, AgreesWithAPlainList) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RowSession session(seed);
        for (int i = 0; i < 400 && !testing::Test::HasFatalFailure(); ++i) {
            session.step();
            if (i % 10 == 0) session.compare();
        }
    }
}

}  // namespace talvora::test
