#pragma once
// The system's own paths (`Mail\i1A.ml`, code page 1253) as words only: taken apart, checked, compared. What
// the disk holds is not asked here; `Files` owns that. Plain functions, no state.

#include <string>
#include <string_view>
#include <vector>

namespace talvora {

// The parts of a path below the program's folder; none for the empty path, which is the folder itself. One
// separator at the end is passed over. Faults: 75 for a path that leaves the folder (absolute, with a drive,
// or with a part "." or ".."), 52 for an empty part, an overlong path, and control or reserved characters
// (the "/" among them).
std::vector<std::string> pathParts(std::string_view path);

// Whether `name` fits `pattern`, in which "*" stands for any text and "?" for any one character; without
// regard to case.
bool fitsPattern(std::string_view name, std::string_view pattern);

// Of native paths, whose separator is "/": the whole, and the folder that holds it.
std::string joinNative(std::string_view folder, std::string_view name);
std::string folderOf(const std::string& path);

}  // namespace talvora
