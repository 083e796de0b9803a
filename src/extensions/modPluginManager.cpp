#include "extensions/modPluginManager.h"

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {
namespace {

constexpr int Fields = 6;

std::string entryOf(const std::vector<std::string>& fields) {
    return Replace(elementOf(fields, 0), "<SYS>", "TalvoraClient", Compare::Text) + "@" +
           elementOf(fields, 5);
}

void append(std::string& list, const std::string& entry) {
    if (entry.empty()) return;
    if (!list.empty()) list += '|';
    list += entry;
}

std::vector<std::string> linesOf(const std::string& text) {
    return Split(Replace(Replace(text, "\r\n", "\n"), "\r", "\n"), "\n");
}

// Entries parted by "|".
struct Lists {
    std::string Private;
    std::string Channel;
};

// Fault 9, with nothing added, if a field that is needed is not there.
void addLine(Lists& lists, const std::string& line) {
    const std::vector<std::string> fields = Split(line, " ", Fields);
    const std::string channel = elementOf(fields, 2) == "T" ? entryOf(fields) : "";
    const std::string priv = elementOf(fields, 1) == "T" ? entryOf(fields) : "";
    append(lists.Channel, channel);
    append(lists.Private, priv);
}

}  // namespace

void modPluginManager::ReloadPlugins() {
    trapped(globError_, "ReloadPlugins", [&](Trap& step) {
        // At one go: a device that fails at each line would be reported without an end.
        const auto text = step.value(std::string(), [&] { return files_.ReadWhole(ListFile); });
        Lists lists;
        for (const std::string& line : linesOf(text)) {
            if (!line.empty()) step([&] { addLine(lists, line); });
        }
        private_ = Split(lists.Private, "|");
        channel_ = Split(lists.Channel, "|");
    });
}

}  // namespace talvora
