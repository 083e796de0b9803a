#include "platform_qt/WasteFolder.h"

#include <QtCore/QFile>
#include <algorithm>
#include <charconv>

#include "platform/FilePath.h"

namespace talvora {

namespace {

constexpr std::size_t digits = 10;
constexpr std::size_t longestName = 200;  // bytes; the number comes before it

std::uint64_t numberOf(const std::string& file) {
    std::uint64_t number = 0;
    std::from_chars(file.data(), file.data() + std::min(digits, file.size()), number);
    return number;
}

std::string numbered(std::uint64_t number, const std::string& file) {
    std::string text = std::to_string(number);
    if (text.size() < digits) text.insert(0, digits - text.size(), '0');
    // The end tells a file's kind, so the beginning goes.
    return text + "-" + (file.size() > longestName ? file.substr(file.size() - longestName) : file);
}

}  // namespace

bool moveToTrash(const std::string& nativePath) {
    return QFile::moveToTrash(QString::fromStdString(nativePath));
}

std::vector<std::string> WasteFolder::files() {
    std::vector<std::string> names;
    for (const auto& entry : disk_.list(name)) {
        if (entry.What == DiskDriver::Kind::File) names.push_back(entry.Name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void WasteFolder::keep(const std::string& path) {
    const auto present = files();
    const std::uint64_t number = present.empty() ? 1 : numberOf(present.back()) + 1;
    disk_.rename(path, joinNative(name, numbered(number, path.substr(path.rfind('/') + 1))));
    shrink();
}

void WasteFolder::shrink() {
    const auto present = files();
    std::int64_t bytes = 0;
    std::size_t count = 0;
    for (auto file = present.rbegin(); file != present.rend(); ++file) {
        const std::string path = joinNative(name, *file);
        bytes += disk_.status(path).Size;
        if (count++ > 0 && (count > mostFiles || bytes > mostBytes)) disk_.remove(path);
    }
}

}  // namespace talvora
