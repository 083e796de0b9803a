#include "chat/StateTable.h"

#include <utility>

namespace talvora {

StateTable::StateTable(std::string_view text) {
    for (const std::string& line : Split(text, "\r\n")) {
        if (line.empty()) continue;
        Fields fields = Split(line, "|");
        std::string tag = Trim(fields.front());
        states_.try_emplace(std::move(tag), std::move(fields));  // the first line of a tag stands
    }
}

const std::vector<std::string>* StateTable::find(std::string_view tag) const {
    const auto found = states_.find(Trim(tag));
    return found == states_.end() ? nullptr : &found->second;
}

}  // namespace talvora
