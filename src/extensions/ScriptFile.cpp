#include "extensions/ScriptFile.h"

#include "platform/Text.h"

namespace talvora {

ScriptEntries ParseScripts(std::string_view text) {
    ScriptEntries entries;
    for (const std::string& line : Split(Replace(text, "\r\n", "\n"), "\n")) {
        if (line.empty()) continue;
        const auto end = line.find(ScriptNameEnd);
        if (end == std::string::npos || end == 0) {
            entries.Damaged.push_back(line);
        } else {
            entries.Good.push_back({line.substr(0, end), line.substr(end + 1)});
        }
    }
    return entries;
}

std::string FormatScripts(const ScriptEntries& entries) {
    std::string text;
    for (const ScriptEntry& entry : entries.Good) {
        text.append(entry.Name).append(1, ScriptNameEnd).append(entry.Script).append("\r\n");
    }
    for (const std::string& line : entries.Damaged) text.append(line).append("\r\n");
    return text;
}

ScriptEntries ReadScripts(Files& files, const char* path) {
    return files.Exists(path) ? ParseScripts(files.ReadWhole(path)) : ScriptEntries{};
}

void WriteScripts(Files& files, const char* path, const ScriptEntries& entries) {
    files.Rewrite(path, FormatScripts(entries));
}

}  // namespace talvora
