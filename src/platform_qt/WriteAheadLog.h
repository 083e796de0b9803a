#pragma once
// Looks at the log that the settings database leaves behind when its process is killed. The database reads it
// up to the first frame that does not hold, without a word; so a log that is damaged in its middle is found
// out here. Plain function, no state.

#include <string>

namespace talvora {

// True if the log at `nativePath` holds changes that can no longer be read. A last change that was being
// written when the process ended is no damage, nor is a missing or unreadable log.
bool isLogDamaged(const std::string& nativePath);

}  // namespace talvora
