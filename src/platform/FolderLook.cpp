#include "platform/FolderLook.h"

#include <optional>
#include <utility>

#include "platform/CodePage1253.h"
#include "platform/FilePath.h"

namespace talvora {

FolderLook::FolderLook(Files& files, std::string folder, std::string pattern)
    : files_(files), folder_(std::move(folder)), pattern_(std::move(pattern)) {}

// The watch stands again when the look has succeeded, since its names are told once.
FolderLook::News FolderLook::Look() {
    std::unique_ptr<FolderWatch> watch = std::exchange(watch_, nullptr);
    std::optional<std::vector<std::string>> names;
    if (watch) names = watch->names();
    if (!names) return all();
    News news = some(*names);
    watch_ = std::move(watch);
    return news;
}

// The watch begins before the list, so that nothing falls between them.
FolderLook::News FolderLook::all() {
    News news{true, {}, {}};
    if (!files_.FolderExists(folder_)) return news;
    native_ = files_.find(folder_).native;
    std::unique_ptr<FolderWatch> watch = files_.disk_.watch(native_);
    for (auto& entry : files_.plainFiles(folder_, pattern_, DiskDriver::Detail::All))
        news.Found.push_back({std::move(entry.Name), entry.Found.Size, entry.Found.Version});
    watch_ = std::move(watch);
    return news;
}

FolderLook::News FolderLook::some(const std::vector<std::string>& names) {
    News news;
    for (const std::string& native : names) {
        std::string name = fromUtf8(native);
        if (!fitsPattern(name, pattern_) || toUtf8(name) != native) continue;
        const DiskDriver::Status status = files_.disk_.status(joinNative(native_, native));
        if (status.What == DiskDriver::Kind::File) {
            news.Found.push_back({std::move(name), status.Size, status.Version});
        } else {
            news.Gone.push_back(std::move(name));
        }
    }
    return news;
}

}  // namespace talvora
