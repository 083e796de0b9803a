#pragma once
// The network profile on the disk. Paths are native.

#include <stdexcept>
#include <string>

#include "profile/NetworkProfile.h"

namespace talvora {

// The profile cannot be written; the text, in UTF-8, names the file and the reason.
class ProfileFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// What is built in, if the file is missing and need not be there. Throws ProfileError.
NetworkProfile readProfile(const std::string& file, bool mustExist);

// Writes the profile into its file, which keeps its comments. A killed process or lost power leaves the old
// file or the new one. Throws ProfileFileError.
void saveProfile(const std::string& file, const NetworkProfile& profile);

// Why the file cannot be written, as far as can be seen beforehand; empty if it can.
std::string whyNotWritable(const std::string& file);

}  // namespace talvora
