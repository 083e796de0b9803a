#include "robot/RobotStoreTransaction.h"

#include "robot/StoreSchema.h"

namespace talvora {

RobotStoreTransaction::RobotStoreTransaction(const StoreSettings& settings) : settings_(settings) {
    connected();
}

RobotStoreConnection& RobotStoreTransaction::connected() {
    if (!connection_) {
        // A server that doesn't answer holds the robot up each time that it is asked.
        if (std::chrono::steady_clock::now() < nextTry_) throw StoreError(fault_);
        nextTry_ = std::chrono::steady_clock::now() + BetweenTries;
        auto connection = std::make_unique<RobotStoreConnection>(settings_);
        bringUpToDate(*connection);
        connection_ = std::move(connection);
        nextTry_ = {};
    }
    return *connection_;
}

RobotStoreConnection& RobotStoreTransaction::begun() {
    RobotStoreConnection& connection = connected();
    if (!open_) {
        if (std::chrono::steady_clock::now() < nextChange_) throw StoreError(fault_);
        nextChange_ = std::chrono::steady_clock::now() + BetweenLocks;
        connection.command(connection.isSqlite() ? "BEGIN IMMEDIATE" : "BEGIN");
        nextChange_ = {};
    }
    open_ = true;
    return connection;
}

void RobotStoreTransaction::undo(const std::string& reason) {
    fault_ = reason;
    if (open_ && connection_ && connection_->isAlive()) {
        try {
            connection_->command("ROLLBACK");
        } catch (const StoreError&) {  // it has been rolled back already, or the server has gone
        }
    }
    if (connection_ && !connection_->isAlive()) connection_.reset();
    end(Fate::Lost);
}

void RobotStoreTransaction::end(Fate fate) {
    open_ = false;
    safeMail = safeAnnouncement = HighestNumber;
    for (auto waiter = waiting_.rbegin(); waiter != waiting_.rend() && waiter->fate == Fate::Open; ++waiter) {
        waiter->fate = fate;
    }
}

void RobotStoreTransaction::commit() {
    try {
        if (open_) {
            guarded([this] { connection_->command("COMMIT"); });
            fault_.clear();
        }
        end(Fate::Safe);
    } catch (const StoreError&) {  // those who wait are told
    }
    // What a call changes belongs to the next transaction. If one throws, the others are called next time.
    while (!waiting_.empty() && waiting_.front().fate != Fate::Open) {
        const Waiter first = std::move(waiting_.front());
        waiting_.pop_front();
        if (first.call) first.call(first.fate == Fate::Safe);
    }
}

}  // namespace talvora
