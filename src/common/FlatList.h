#pragma once
// Lists are kept as flat text: entries, each followed by a separator. Membership and removal are plain text
// operations on the whole, with all that follows from it, on purpose.

#include <string>
#include <string_view>
#include <vector>

namespace talvora {

// Whether `list` holds `entry` and the separator behind it, without regard to case.
bool HoldsEntry(std::string_view list, std::string_view entry, char separator);

// Takes `entry` with its separator out, everywhere and without regard to case, as it was looked for.
void RemoveEntry(std::string& list, std::string_view entry, char separator);

// Spells the entry in the list as here, if it is there.
void RespellEntry(std::string& list, std::string_view entry, char separator);

// The entries that are not empty, in order.
std::vector<std::string> Entries(std::string_view list, char separator);

}  // namespace talvora
