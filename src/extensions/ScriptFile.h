#pragma once
// The entries of one script file, one a line: a name, character 1, and the lines of its script with character
// 2 between them. All other bytes are the user's and stay as they are. A line that is no entry is kept beside
// the others and written back, so that nothing is lost that a person could mend. Plain functions over
// `Files`.

#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"

namespace talvora {

struct ScriptEntry {
    std::string Name;
    std::string Script;  // lines parted by ScriptLineEnd

    bool operator==(const ScriptEntry&) const = default;
};

inline constexpr char ScriptNameEnd = '\x01';
inline constexpr char ScriptLineEnd = '\x02';

struct ScriptEntries {
    std::vector<ScriptEntry> Good;
    std::vector<std::string> Damaged;  // lines without a name or without an end of it
};

// The files of the program, in the order of the tabs of frmScripts.
inline constexpr const char* ScriptCommandFile = "System\\script_cmd.dat";
inline constexpr const char* ScriptChannelFile = "System\\script_chm.dat";
inline constexpr const char* ScriptPrivateFile = "System\\script_pmm.dat";

ScriptEntries ParseScripts(std::string_view text);
std::string FormatScripts(const ScriptEntries& entries);
// No entry if there is no such file.
ScriptEntries ReadScripts(Files& files, const char* path);
// Beside and renamed.
void WriteScripts(Files& files, const char* path, const ScriptEntries& entries);

}  // namespace talvora
