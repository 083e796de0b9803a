#pragma once
// What the store's parts share: its transaction, and the numbers that are given once.

#include "platform/Text.h"
#include "robot/RobotStoreTransaction.h"

namespace talvora {

class RobotStore::Implementation {
  public:
    explicit Implementation(const StoreSettings& settings) : transaction(settings) {}
    RobotStoreTransaction transaction;
};

// Counts on by that statement, within the transaction: what is undone leaves no gap.
std::int64_t nextNumber(RobotStoreConnection& connection, std::string_view statement);
// Receipts that no longer tell a mail that comes again from a new one.
void forgetReceipts(RobotStoreConnection& connection, std::int64_t now);

}  // namespace talvora
