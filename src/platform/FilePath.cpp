#include "platform/FilePath.h"

#include <algorithm>
#include <cstddef>

#include "platform/CodePage1253.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::size_t LongestPath = 1024;
constexpr std::string_view Reserved = "/<>:\"|?*";

bool isRefused(char c) {
    const char16_t character = codePointOf(static_cast<unsigned char>(c));
    const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
    return control || Reserved.find(c) != std::string_view::npos;
}

bool hasDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':';
}

void checkPart(std::string_view part) {
    if (part == "." || part == "..") throw RuntimeError(Fault::PathFileAccessError);
    if (part.empty() || std::any_of(part.begin(), part.end(), isRefused)) {
        throw RuntimeError(Fault::BadFileNameOrNumber);
    }
}

}  // namespace

std::vector<std::string> pathParts(std::string_view path) {
    if (path.size() > LongestPath) throw RuntimeError(Fault::BadFileNameOrNumber);
    if (path.starts_with('\\') || path.starts_with('/') || hasDrive(path)) {
        throw RuntimeError(Fault::PathFileAccessError);
    }
    if (path.ends_with('\\')) path.remove_suffix(1);
    auto parts = Split(path, "\\");
    for (const auto& part : parts) checkPart(part);
    return parts;
}

bool fitsPattern(std::string_view name, std::string_view pattern) {
    const std::string text = UCase(name);
    const std::string form = UCase(pattern);
    std::size_t at = 0;
    std::size_t next = 0;
    std::size_t star = std::string::npos;  // the last one met, and where in the text it was tried
    std::size_t tried = 0;
    while (at < text.size()) {
        if (next < form.size() && form[next] == '*') {
            star = next++;
            tried = at;
        } else if (next < form.size() && (form[next] == '?' || form[next] == text[at])) {
            ++next;
            ++at;
        } else if (star != std::string::npos) {
            next = star + 1;
            at = ++tried;
        } else {
            return false;
        }
    }
    return form.find_first_not_of('*', next) == std::string::npos;
}

std::string joinNative(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty()) path += '/';
    return path.append(name);
}

std::string folderOf(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? std::string() : path.substr(0, end);
}

}  // namespace talvora
