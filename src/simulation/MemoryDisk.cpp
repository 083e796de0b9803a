#include "simulation/MemoryDisk.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/FilePath.h"
#include "platform/WasteFolder.h"

namespace talvora {

namespace {

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace

struct MemoryDisk::Node {
    explicit Node(Kind what) : kind(what) {}

    void settle() {
        flushedContent = content;
        flushedEntries = entries;
    }
    void restart(Survived survived) {
        if (survived == Survived::Everything) settle();
        content = flushedContent;
        entries = flushedEntries;
        for (auto& [name, node] : entries) node->restart(survived);
    }
    void collect(const std::string& path, std::vector<std::string>& to) const {
        for (const auto& [name, node] : entries) {
            const std::string below = joinNative(path, name);
            if (node->kind != Kind::Folder) to.push_back(below);
            node->collect(below, to);
        }
    }

    Kind kind;
    std::string content;  // of a link its target
    std::uint64_t version = 0;
    std::string flushedContent;
    std::map<std::string, NodeOf> entries;
    std::map<std::string, NodeOf> flushedEntries;
};

class MemoryDisk::Watch final : public FolderWatch {
  public:
    explicit Watch(std::shared_ptr<Watched> watched) : watched_(std::move(watched)) {}
    std::optional<std::vector<std::string>> names() override { return std::exchange(watched_->names, {}); }

  private:
    std::shared_ptr<Watched> watched_;
};

MemoryDisk::MemoryDisk() : root_(std::make_shared<Node>(Kind::Folder)) {}
MemoryDisk::~MemoryDisk() = default;

void MemoryDisk::call() {
    if (died_) throw DiskFault(EIO);
    if (callsToFault_ < 0 || callsToFault_-- > 0) return;
    failed_ = true;
    throw DiskFault(faultNumber_);
}

void MemoryDisk::change() {
    call();
    if (refusal_ != 0 && --changesToRefusal_ < 0) {
        changesToRefusal_ = -1;
        throw DiskFault(refusal_);
    }
    if (changesToDeath_ < 0 || changesToDeath_-- > 0) return;
    died_ = true;
    throw DiskFault(EIO);
}

void MemoryDisk::failAt(int callNumber, int errorNumber) {
    callsToFault_ = callNumber;
    faultNumber_ = errorNumber;
    failed_ = false;
}

void MemoryDisk::refuseChanges(int errorNumber, int changeNumber) {
    refusal_ = errorNumber;
    changesToRefusal_ = changeNumber;
}

void MemoryDisk::dieAtWrite(int changeNumber) {
    changesToDeath_ = changeNumber;
}

void MemoryDisk::restart(Survived survived) {
    root_->restart(survived);
    handles_.clear();
    callsToFault_ = -1;
    changesToDeath_ = -1;
    died_ = false;
}

void MemoryDisk::happened(const std::string& path) {
    std::erase_if(watched_, [](const auto& watched) { return watched.expired(); });
    for (const auto& weak : watched_) {
        const auto watched = weak.lock();
        const std::string name = nameOf(path);
        const bool told = !watched->names.empty() && watched->names.back() == name;
        if (watched->folder == folderOf(path) && !told) watched->names.push_back(name);
    }
}

void MemoryDisk::written(Node& node, const std::string& path) {
    node.version = ++versions_;
    happened(path);
}

DiskDriver::Status MemoryDisk::statusOf(const Node& node) {
    const auto size = node.kind == Kind::File ? static_cast<std::int64_t>(node.content.size()) : 0;
    return {node.kind, size, node.version};
}

MemoryDisk::NodeOf MemoryDisk::look(const std::string& path) const {
    NodeOf node = root_;
    for (std::size_t from = 0; from < path.size();) {
        const std::size_t to = std::min(path.find('/', from), path.size());
        if (node->kind == Kind::Link) throw DiskFault(ELOOP);
        if (node->kind != Kind::Folder) throw DiskFault(ENOTDIR);
        const auto entry = node->entries.find(path.substr(from, to - from));
        if (entry == node->entries.end()) return nullptr;
        node = entry->second;
        from = to + 1;
    }
    return node;
}

MemoryDisk::NodeOf MemoryDisk::existing(const std::string& path) const {
    NodeOf node = look(path);
    if (!node) throw DiskFault(ENOENT);
    return node;
}

MemoryDisk::NodeOf MemoryDisk::take(const std::string& path) {
    change();
    NodeOf node = existing(path);
    folder(folderOf(path)).entries.erase(nameOf(path));
    happened(path);
    return node;
}

MemoryDisk::Node& MemoryDisk::folder(const std::string& path) const {
    const NodeOf node = existing(path);
    if (node->kind != Kind::Folder) throw DiskFault(node->kind == Kind::Link ? ELOOP : ENOTDIR);
    return *node;
}

MemoryDisk::Node& MemoryDisk::makeFolders(const std::string& path) {
    if (path.empty()) return *root_;
    Node& parent = makeFolders(folderOf(path));
    NodeOf& node = parent.entries[nameOf(path)];
    if (!node) node = std::make_shared<Node>(Kind::Folder);
    parent.settle();
    return *node;
}

void MemoryDisk::put(const std::string& path, std::string_view text) {
    makeFolders(path);
    Node& node = *look(path);
    node.kind = Kind::File;
    node.content = text;
    written(node, path);
    node.settle();
}

void MemoryDisk::makeLink(const std::string& path, const std::string& target) {
    put(path, target);
    look(path)->kind = Kind::Link;
}

std::optional<std::string> MemoryDisk::content(const std::string& path) const {
    const NodeOf node = look(path);
    if (!node || node->kind != Kind::File) return std::nullopt;
    return node->content;
}

std::vector<std::string> MemoryDisk::paths() const {
    std::vector<std::string> all;
    root_->collect("", all);
    return all;
}

MemoryDisk::Handle MemoryDisk::handleOf(NodeOf node, const std::string& path) {
    handles_[nextHandle_] = {std::move(node), path};
    return nextHandle_++;
}

MemoryDisk::Handle MemoryDisk::open(const std::string& path, Access access) {
    const bool creates = access == Access::Create || access == Access::Empty;
    creates ? change() : call();
    Node& parent = folder(folderOf(path));
    NodeOf node = look(path);
    if (!node && !creates) throw DiskFault(ENOENT);
    const bool anew = node == nullptr;
    if (anew) node = parent.entries[nameOf(path)] = std::make_shared<Node>(Kind::File);
    if (node->kind != Kind::File) throw DiskFault(node->kind == Kind::Link ? ELOOP : EISDIR);
    if (access == Access::Empty) node->content.clear();
    if (anew || access == Access::Empty) written(*node, path);
    return handleOf(node, path);
}

MemoryDisk::Handle MemoryDisk::openPicked(const std::string& nativePath) {
    call();
    const auto found = picked.find(nativePath);
    if (found == picked.end()) throw DiskFault(ENOENT);
    const auto node = std::make_shared<Node>(Kind::File);
    node->content = found->second;
    openedPicked_[nativePath] = node;
    return handleOf(node, nativePath);
}

void MemoryDisk::rewritePicked(const std::string& nativePath, const std::string& content) {
    picked[nativePath] = content;
    const auto open = openedPicked_.find(nativePath);
    if (open == openedPicked_.end()) return;
    open->second->content = content;
    written(*open->second, nativePath);
}

MemoryDisk::Handle MemoryDisk::createPicked(const std::string& nativePath) {
    call();
    return handleOf(created_[nativePath] = std::make_shared<Node>(Kind::File), nativePath);
}

std::optional<std::string> MemoryDisk::created(const std::string& nativePath) const {
    const auto found = created_.find(nativePath);
    return found == created_.end() ? std::nullopt : std::optional(found->second->content);
}

MemoryDisk::Opened& MemoryDisk::at(Handle file) {
    const auto found = handles_.find(file);
    if (found == handles_.end()) throw DiskFault(EBADF);
    return found->second;
}

std::size_t MemoryDisk::read(Handle file, std::int64_t from, char* to, std::size_t count) {
    call();
    const std::string& content = at(file).node->content;
    const std::size_t start = std::min(static_cast<std::size_t>(from), content.size());
    return content.copy(to, count, start);
}

void MemoryDisk::write(Handle file, std::int64_t to, std::string_view bytes) {
    const Opened& opened = at(file);
    const auto put = [&](std::string_view part) {
        std::string& content = opened.node->content;
        const std::size_t start = static_cast<std::size_t>(to);
        if (content.size() < start + part.size()) content.resize(start + part.size());
        content.replace(start, part.size(), part);
        written(*opened.node, opened.path);
    };
    const bool alive = !died_;
    try {
        change();
    } catch (const RuntimeError&) {
        if (alive) put(bytes.substr(0, bytes.size() / 2));
        throw;
    }
    put(bytes);
}

std::int64_t MemoryDisk::size(Handle file) {
    call();
    return static_cast<std::int64_t>(at(file).node->content.size());
}

std::uint64_t MemoryDisk::version(Handle file) {
    call();
    return at(file).node->version;
}

void MemoryDisk::truncate(Handle file, std::int64_t size) {
    change();
    const Opened& opened = at(file);
    opened.node->content.resize(static_cast<std::size_t>(size));
    written(*opened.node, opened.path);
}

void MemoryDisk::flush(Handle file) {
    change();
    Node& node = *at(file).node;
    node.flushedContent = node.content;
}

void MemoryDisk::close(Handle file) {
    handles_.erase(file);
    call();
}

DiskDriver::Status MemoryDisk::status(const std::string& path) {
    call();
    const NodeOf node = look(path);
    return node ? statusOf(*node) : Status{};
}

std::string MemoryDisk::linkTarget(const std::string& path) {
    call();
    const NodeOf node = look(path);
    if (!node || node->kind != Kind::Link) throw DiskFault(EINVAL);
    return node->content;
}

std::vector<DiskDriver::Entry> MemoryDisk::list(const std::string& path, Detail detail) {
    call();
    std::vector<Entry> entries;
    for (const auto& [name, node] : folder(path).entries)
        entries.push_back({name, detail == Detail::All ? statusOf(*node) : Status{node->kind, 0, {}}});
    return entries;
}

std::unique_ptr<FolderWatch> MemoryDisk::watch(const std::string& path) {
    call();
    folder(path);
    const auto watched = std::make_shared<Watched>(Watched{path, {}});
    watched_.push_back(watched);
    return std::make_unique<Watch>(watched);
}

void MemoryDisk::flushFolder(const std::string& path) {
    change();
    Node& node = folder(path);
    node.flushedEntries = node.entries;
}

void MemoryDisk::makeFolder(const std::string& path) {
    change();
    const bool made =
        folder(folderOf(path)).entries.try_emplace(nameOf(path), std::make_shared<Node>(Kind::Folder)).second;
    if (!made) throw DiskFault(EEXIST);
}

void MemoryDisk::rename(const std::string& from, const std::string& to) {
    Node& target = folder(folderOf(to));
    target.entries[nameOf(to)] = take(from);
    happened(to);
}

void MemoryDisk::remove(const std::string& path) {
    if (existing(path)->kind == Kind::Folder) throw DiskFault(EISDIR);
    take(path);
}

// A machine without a desktop.
void MemoryDisk::moveToWaste(const std::string& path) {
    WasteFolder(*this).keep(path);
}

std::int64_t MemoryDisk::freeSpace() {
    call();
    return free;
}

std::string MemoryDisk::nativePath(const std::string& path) const {
    return joinNative("/disk", path);
}

}  // namespace talvora
