#pragma once
// A folder that holds what is its owner's alone. Plain function, no state.

#include <string>

namespace talvora {

// Takes all rights of others from an existing folder (0700). One that is another user's, the home folder or
// one that is shared on purpose (sticky, the root) is left as it is. Never fails: the files have modes of
// their own.
void keepPrivate(const std::string& nativePath);

}  // namespace talvora
