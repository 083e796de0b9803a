#pragma once
// The other way round: a profile as the text of its file, and the words about one value, for who lets a
// person edit them. Keys are named as in the file, values are UTF-8 as they stand there.

#include <optional>
#include <string>
#include <string_view>

#include "profile/NetworkProfile.h"

namespace talvora {

// The text with the profile's values. Comments, sections of others, lines that say the same in other words
// and the ends of lines stay as they are; keys that are missing are added where they differ from what is
// built in.
std::string withProfile(std::string_view oldText, const NetworkProfile& profile);

// The value of a key as it stands in the file; empty for an unknown key.
std::string profileValue(const NetworkProfile& profile, std::string_view key);

// Takes a value into the profile. Returns what is wrong with it and what is allowed, as the reader of the
// file would say it, and then leaves the profile as it was.
std::optional<std::string> setProfileValue(NetworkProfile& profile, std::string_view key,
                                           std::string_view value);

}  // namespace talvora
