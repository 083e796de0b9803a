#pragma once
// The one open transaction of the robot's store, and who waits for its end. A statement that fails undoes the
// whole transaction, and what comes behind begins another; each of those who wait is told how his own ended.
// A connection that was lost is made anew at its next use.

#include <chrono>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <string>

#include "robot/RobotStoreConnection.h"

namespace talvora {

class RobotStoreTransaction {
  public:
    static constexpr std::int64_t HighestNumber = std::numeric_limits<std::int32_t>::max();

    explicit RobotStoreTransaction(const StoreSettings& settings);

    // `work` is called with the connection. Its StoreErrors undo the transaction.
    template <class Work>
    auto read(const Work& work) {
        return guarded([&] { return work(connected()); });
    }
    template <class Work>
    auto change(const Work& work) {
        return guarded([&] { return work(begun()); });
    }

    void whenSafe(RobotStore::WhenSafe call) { waiting_.push_back({std::move(call), Fate::Open}); }
    bool waiting() const { return open_ || !waiting_.empty(); }
    void commit();
    const std::string& fault() const { return fault_; }

    // The highest numbers that nobody can be given in vain: those above may be undone and given again.
    std::int64_t safeMail = HighestNumber;
    std::int64_t safeAnnouncement = HighestNumber;

  private:
    enum class Fate { Open, Safe, Lost };
    struct Waiter {
        RobotStore::WhenSafe call;
        Fate fate;
    };

    template <class Work>
    auto guarded(const Work& work) {
        try {
            return work();
        } catch (const StoreError& error) {
            undo(error.what());
            throw;
        }
    }

    RobotStoreConnection& connected();
    RobotStoreConnection& begun();
    void undo(const std::string& reason);
    void end(Fate fate);

    StoreSettings settings_;
    std::unique_ptr<RobotStoreConnection> connection_;
    bool open_ = false;
    std::deque<Waiter> waiting_;
    std::string fault_;
    // After a connection that failed the next one has to wait.
    static constexpr std::chrono::seconds BetweenTries{15};
    std::chrono::steady_clock::time_point nextTry_{};
    // While somebody else has the store locked, few of those who ask wait for the lock.
    static constexpr std::chrono::milliseconds BetweenLocks{200};
    std::chrono::steady_clock::time_point nextChange_{};
};

}  // namespace talvora
