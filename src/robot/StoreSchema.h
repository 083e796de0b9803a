#pragma once
// The tables of the robot's store and the steps that led to them. A store says in its table `meta` which step
// it has reached.

#include "robot/RobotStoreConnection.h"

namespace talvora {

// Takes the steps that are missing, each in one transaction. A store of a newer program, or a file that is no
// store, is refused as it is: StoreError.
void bringUpToDate(RobotStoreConnection& connection);
// The same, as an older program with only so many steps did it.
void bringUpTo(int version, RobotStoreConnection& connection);

}  // namespace talvora
