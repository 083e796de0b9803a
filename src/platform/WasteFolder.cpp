#include "platform/WasteFolder.h"

#include <algorithm>
#include <cerrno>
#include <charconv>

#include "platform/FilePath.h"

namespace talvora {

namespace {

constexpr std::size_t Digits = 10;
constexpr std::size_t LongestName = 200;  // bytes; the number comes before it

std::uint64_t numberOf(const std::string& file) {
    std::uint64_t number = 0;
    std::from_chars(file.data(), file.data() + std::min(Digits, file.size()), number);
    return number;
}

std::string numbered(std::uint64_t number, const std::string& file) {
    std::string text = std::to_string(number);
    if (text.size() < Digits) text.insert(0, Digits - text.size(), '0');
    // The end tells a file's kind, so the beginning goes.
    return text + "-" + (file.size() > LongestName ? file.substr(file.size() - LongestName) : file);
}

}  // namespace

void WasteFolder::make() {
    if (disk_.status(name).What != DiskDriver::Kind::Missing) return;
    disk_.makeFolder(name);
    disk_.flushFolder("");
}

std::vector<DiskDriver::Entry> WasteFolder::files() {
    auto all = disk_.list(name, DiskDriver::Detail::All);
    const auto isNoFile = [](const auto& entry) { return entry.Found.What != DiskDriver::Kind::File; };
    all.erase(std::remove_if(all.begin(), all.end(), isNoFile), all.end());
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.Name < b.Name; });
    return all;
}

void WasteFolder::keep(const std::string& path) {
    const auto file = disk_.status(path);
    if (file.What == DiskDriver::Kind::Missing) throw DiskFault(ENOENT);
    if (file.What != DiskDriver::Kind::File) throw DiskFault(EISDIR);
    make();
    const auto present = files();
    makeRoom(present, file.Size);
    const std::uint64_t number = present.empty() ? 1 : numberOf(present.back().Name) + 1;
    disk_.rename(path, joinNative(name, numbered(number, path.substr(path.rfind('/') + 1))));
    disk_.flushFolder(name);
}

// Before the move: what can't be made room for stays where it is.
void WasteFolder::makeRoom(const std::vector<DiskDriver::Entry>& present, std::int64_t bytes) {
    std::size_t count = 1;
    for (auto file = present.rbegin(); file != present.rend(); ++file) {
        bytes += file->Found.Size;
        if (++count > MostFiles || bytes > MostBytes) disk_.remove(joinNative(name, file->Name));
    }
}

}  // namespace talvora
