#include "common/FlatList.h"

#include "platform/Text.h"

namespace talvora {

namespace {

std::string withSeparator(std::string_view entry, char separator) {
    std::string text(entry);
    text += separator;
    return text;
}

}  // namespace

bool HoldsEntry(std::string_view list, std::string_view entry, char separator) {
    return UCase(list).find(UCase(withSeparator(entry, separator))) != std::string::npos;
}

void RemoveEntry(std::string& list, std::string_view entry, char separator) {
    list = Replace(list, withSeparator(entry, separator), "", Compare::Text);
}

void RespellEntry(std::string& list, std::string_view entry, char separator) {
    const std::string between(1, separator);
    const std::size_t at = InStr(between + list, between + withSeparator(entry, separator), Compare::Text);
    if (at != 0) list.replace(at - 1, entry.size(), entry);
}

std::vector<std::string> Entries(std::string_view list, char separator) {
    std::vector<std::string> entries;
    while (!list.empty()) {
        const std::size_t end = list.find(separator);
        const std::string_view entry = list.substr(0, end);
        if (!entry.empty()) entries.emplace_back(entry);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return entries;
}

}  // namespace talvora
