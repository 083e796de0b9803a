#include "platform/Files.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "platform/CodePage1253.h"
#include "platform/FilePath.h"
#include "platform/OpenFile.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::size_t CopiedAtOnce = std::size_t{64} << 10;

// Tries what may help and must not hide the fault that is under way.
template <class Call>
void attempt(Call&& call) {
    try {
        std::forward<Call>(call)();
    } catch (const RuntimeError&) {  // the first fault is told
    }
}

// The path as the driver has it, if each name is spelt as it is there.
std::string exactNative(std::string_view path) {
    std::string native;
    for (const std::string& part : pathParts(path)) native = joinNative(native, toUtf8(part));
    return native;
}

// Opens for reading what stands there under its exact name and behind no link, since the driver follows none.
// Nothing where only a walk can tell what there is.
std::optional<DiskDriver::Handle> openExact(DiskDriver& disk, const std::string& native) {
    try {
        return disk.open(native, DiskDriver::Access::Read);
    } catch (const RuntimeError& fault) {
        const int error = fault.LastDllError;
        if (error != ENOENT && error != ENOTDIR && error != ELOOP && error != EISDIR && error != ENXIO) throw;
        return std::nullopt;
    }
}

bool cutTornRecord(OpenFile& file) {
    if (file.end == 0 || file.readAt(file.end - 1, 1) == "\n") return false;
    const auto from = std::max<std::int64_t>(0, file.end - static_cast<std::int64_t>(File::LineLimit));
    const std::string tail = file.readAt(from, static_cast<std::size_t>(file.end - from));
    const std::size_t lineEnd = tail.rfind('\n');
    if (lineEnd == std::string::npos && from > 0) return false;
    const auto whole = lineEnd == std::string::npos ? 0 : from + static_cast<std::int64_t>(lineEnd) + 1;
    file.driver.truncate(file.handle, whole);
    file.end = whole;
    return true;
}

}  // namespace

Files::~Files() {
    attempt([&] { CloseAll(); });
}

void Files::forget(const OpenFile& file) {
    opened_.erase(std::remove(opened_.begin(), opened_.end(), &file), opened_.end());
}

void Files::CloseAll() {
    std::exception_ptr first;
    while (!opened_.empty()) {
        try {
            opened_.back()->close();
        } catch (const RuntimeError&) {
            if (!first) first = std::current_exception();
        }
    }
    if (first) std::rethrow_exception(first);
}

// To read a file that is there as it is named takes no walk: a list of mails opens thousands.
File Files::Open(std::string_view path, FileMode mode) {
    if (mode == FileMode::Input) {
        const std::string native = exactNative(path);
        requireShareable({native, {}}, mode);
        if (const auto handle = openExact(disk_, native)) return adopt(*handle, mode, native);
    }
    const Place place = mode == FileMode::Input ? findFile(path) : findForWriting(path);
    requireShareable(place, mode);
    const bool anew = place.found.What == DiskDriver::Kind::Missing;
    const auto access = prepare(place, mode);
    File file = adopt(disk_.open(place.native, access), mode, place.native);
    OpenFile& opened = *file.opened_;
    if (anew || (place.received && mode == FileMode::Output)) opened.unflushedFolder = folderOf(place.native);
    if (mode == FileMode::Append) opened.end = disk_.size(opened.handle);
    return file;
}

DiskDriver::Access Files::prepare(const Place& place, FileMode mode) {
    if (mode == FileMode::Input) return DiskDriver::Access::Read;
    if (mode != FileMode::Output) return DiskDriver::Access::Create;
    if (place.received && place.found.What == DiskDriver::Kind::File) disk_.moveToWaste(place.native);
    return DiskDriver::Access::Empty;
}

File Files::OpenPicked(const std::string& nativePath) {
    File file = adopt(disk_.openPicked(nativePath), FileMode::Binary, std::string());
    file.opened_->picked = true;
    return file;
}

File Files::CreatePicked(const std::string& nativePath) {
    return adopt(disk_.createPicked(nativePath), FileMode::Output, std::string());
}

File Files::adopt(DiskDriver::Handle handle, FileMode mode, const std::string& path) {
    auto opened = std::make_unique<OpenFile>(disk_, *this, handle, mode, path);
    opened_.push_back(opened.get());
    return File(std::move(opened));
}

bool Files::Exists(std::string_view path) {
    try {
        return find(path).found.What == DiskDriver::Kind::File;
    } catch (const RuntimeError& fault) {
        if (fault.Number != static_cast<int>(Fault::PathNotFound)) throw;
        return false;
    }
}

bool Files::FolderExists(std::string_view path) {
    try {
        return find(path).found.What == DiskDriver::Kind::Folder;
    } catch (const RuntimeError& fault) {
        if (fault.Number != static_cast<int>(Fault::PathNotFound)) throw;
        return false;
    }
}

std::int64_t Files::FileLen(std::string_view path) {
    return findFile(path).found.Size;
}

std::vector<DiskDriver::Entry> Files::plainFiles(std::string_view folder, std::string_view pattern,
                                                 DiskDriver::Detail detail) {
    const Place place = find(folder);
    if (place.found.What != DiskDriver::Kind::Folder) throw RuntimeError(Fault::PathNotFound);
    std::vector<DiskDriver::Entry> files;
    for (auto& entry : disk_.list(place.native, detail)) {
        if (entry.Found.What != DiskDriver::Kind::File) continue;
        std::string name = fromUtf8(entry.Name);
        if (!fitsPattern(name, pattern) || toUtf8(name) != entry.Name) continue;
        files.push_back({std::move(name), entry.Found});
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) {
        const int order = CompareText(a.Name, b.Name);
        return order != 0 ? order < 0 : a.Name < b.Name;
    });
    return files;
}

std::vector<std::string> Files::List(std::string_view folder, std::string_view pattern) {
    std::vector<std::string> names;
    for (auto& file : plainFiles(folder, pattern, DiskDriver::Detail::Kind)) {
        names.push_back(std::move(file.Name));
    }
    return names;
}

std::string Files::ReadStart(std::string_view path, std::size_t count) {
    return Open(path, FileMode::Input).opened().readAt(0, count);
}

std::string Files::StoredPath(std::string_view path) {
    return talvora::Replace(fromUtf8(find(path).native), "/", "\\");
}

void Files::MkDir(std::string_view path) {
    const Place place = find(path);
    if (place.found.What != DiskDriver::Kind::Missing) throw RuntimeError(Fault::PathFileAccessError);
    if (!place.receivedFolder) requireReceiving(place);
    disk_.makeFolder(place.native);
    disk_.flushFolder(folderOf(place.native));
}

void Files::Kill(std::string_view path) {
    remove(findForRemoval(path));
}

void Files::remove(const Place& place) {
    if (place.received) {
        disk_.moveToWaste(place.native);
    } else {
        disk_.remove(place.native);
    }
}

void Files::Discard(std::string_view path) {
    disk_.moveToWaste(findForRemoval(path).native);
}

void Files::Rename(std::string_view from, std::string_view to) {
    const Place source = findForRemoval(from);
    Place target = find(to);
    requireReceiving(target);
    if (target.native == source.native) {  // the same name in another case
        target.native = joinNative(folderOf(source.native), toUtf8(pathParts(to).back()));
    } else if (target.found.What != DiskDriver::Kind::Missing) {
        throw RuntimeError(Fault::FileAlreadyExists);
    }
    disk_.rename(source.native, target.native);
    flushFolders(source.native, target.native);
}

void Files::Replace(std::string_view from, std::string_view to) {
    const Place source = findForRemoval(from);
    const Place target = findForWriting(to);
    requireClosed(target);
    File content =
        adopt(disk_.open(source.native, DiskDriver::Access::Write), FileMode::Binary, source.native);
    if (target.native == source.native) return content.Flush();
    putInPlace(target, std::move(content));
}

void Files::flushFolders(const std::string& from, const std::string& to) {
    disk_.flushFolder(folderOf(to));
    if (folderOf(from) != folderOf(to)) disk_.flushFolder(folderOf(from));
}

// What `beside` holds takes the place of `place`.
void Files::putInPlace(const Place& place, File beside) {
    const std::string native = beside.opened().nativePath;
    beside.Flush();
    beside.Close();
    if (place.received && place.found.What == DiskDriver::Kind::File) disk_.moveToWaste(place.native);
    disk_.rename(native, place.native);
    flushFolders(native, place.native);
}

File Files::writeBeside(const Place& place) {
    const std::string native = place.native + ".new";
    // What a crash has left there, or what somebody has put there.
    if (disk_.status(native).What != DiskDriver::Kind::Missing) disk_.remove(native);
    return adopt(disk_.open(native, DiskDriver::Access::Empty), FileMode::Output, native);
}

template <class Fill>
void Files::rewrite(const Place& place, Fill&& fill) {
    requireClosed(place);
    File beside = writeBeside(place);
    const std::string native = beside.opened().nativePath;
    try {
        std::forward<Fill>(fill)(beside);
        putInPlace(place, std::move(beside));
    } catch (const RuntimeError&) {
        attempt([&] { beside.Close(); });
        attempt([&] { disk_.remove(native); });
        throw;
    }
}

void Files::FileCopy(std::string_view from, std::string_view to) {
    const Place source = findFile(from);
    const Place target = findForWriting(to);
    requireShareable(source, FileMode::Input);
    if (target.native == source.native) throw RuntimeError(Fault::PermissionDenied);
    rewrite(target, [&](File& copy) { copyInto(source, copy); });
}

void Files::copyInto(const Place& source, File& copy) {
    File original =
        adopt(disk_.open(source.native, DiskDriver::Access::Read), FileMode::Input, source.native);
    for (std::int64_t at = 0;;) {
        const std::string bytes = original.opened().readAt(at, CopiedAtOnce);
        if (bytes.empty()) break;
        copy.Write(bytes);
        at += static_cast<std::int64_t>(bytes.size());
    }
}

std::string Files::ReadWhole(std::string_view path) {
    return Open(path, FileMode::Input).ReadAll();
}

void Files::Rewrite(std::string_view path, std::string_view content) {
    rewrite(findForWriting(path), [&](File& beside) { beside.Write(content); });
}

void Files::AppendRecord(std::string_view path, std::string_view record) {
    File file = Open(path, FileMode::Append);
    OpenFile& opened = file.opened();
    cutTornRecord(opened);
    const std::int64_t before = opened.end;
    file.WriteLine(record);
    try {
        file.Flush();
    } catch (const RuntimeError&) {
        // A record that was not acknowledged will come again, and must not stand twice then.
        attempt([&] { disk_.truncate(opened.handle, before); });
        throw;
    }
    file.Close();
}

bool Files::DropTornRecord(std::string_view path) {
    if (!Exists(path)) return false;
    File file = Open(path, FileMode::Append);
    if (!cutTornRecord(file.opened())) return false;
    file.Flush();
    file.Close();
    return true;
}

}  // namespace talvora
