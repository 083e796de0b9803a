#pragma once
// Looks at the log that the settings database leaves behind when its process is killed. The database reads it
// up to the first frame that does not hold, without a word, and believes what a frame says of its page and of
// the database's size; so a log that is damaged in its middle, or that nobody's saving can have written, is
// found out here. Plain function, no state.

#include <string>

namespace talvora {

// True if the log at `logPath` holds changes that can no longer be read, or pages that the database at `path`
// cannot have. A last change that was being written when the process ended is no damage, nor is a missing or
// unreadable log.
bool isLogDamaged(const std::string& logPath, const std::string& path);

}  // namespace talvora
