#pragma once
// A disk in memory for tests: case-sensitive, knows links, remembers what was flushed, can fail at any call
// and die at any change. It follows no link, so that a layer above that does not resolve one is found out.
//
// A test lays files out by `put` and `makeLink`, hands the disk to `Files`, and looks at the result by
// `content`.

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DiskDriver.h"

namespace talvora {

class MemoryDisk final : public DiskDriver {
  public:
    // What a restart finds: what was flushed (lost power), or everything that was done before the disk died
    // (a killed process), with half of the bytes of the write that was under way.
    enum class Survived { Flushed, Everything };

    MemoryDisk();
    ~MemoryDisk() override;

    // A file as if it had always been there; folders on the way are made.
    void put(const std::string& path, std::string_view content);
    void makeLink(const std::string& path, const std::string& target);
    // What a program would read now; nothing if there is no such file.
    std::optional<std::string> content(const std::string& path) const;
    // All files and links, as paths in order.
    std::vector<std::string> paths() const;

    // The n-th call from now, counted from 0, faults with this errno. Once.
    void failAt(int call, int errorNumber);
    bool failed() const { return failed_; }
    // The n-th change from now, counted from 0, and everything behind it faults and is lost. A flush is a
    // change.
    void dieAtWrite(int change);
    bool died() const { return died_; }
    // From the n-th change on, counted from 0, each one faults with this errno, as on a full or a read-only
    // disk; 0 ends that.
    void refuseChanges(int errorNumber, int change = 0);
    bool refuses() const { return refusal_ != 0 && changesToRefusal_ < 0; }
    void restart(Survived survived = Survived::Flushed);

    std::map<std::string, std::string> picked;  // what `openPicked` finds, by native path
    std::int64_t free = std::int64_t{1} << 40;  // what `freeSpace` tells
    // Writes such a file anew, also for who has it open.
    void rewritePicked(const std::string& nativePath, const std::string& content);
    // What was written by `createPicked`, by native path; nothing if nothing was.
    std::optional<std::string> created(const std::string& nativePath) const;
    int openHandles() const { return static_cast<int>(handles_.size()); }

    Handle open(const std::string& path, Access access) override;
    Handle openPicked(const std::string& nativePath) override;
    Handle createPicked(const std::string& nativePath) override;
    std::size_t read(Handle file, std::int64_t at, char* to, std::size_t count) override;
    void write(Handle file, std::int64_t at, std::string_view bytes) override;
    std::int64_t size(Handle file) override;
    std::uint64_t version(Handle file) override;
    void truncate(Handle file, std::int64_t size) override;
    void flush(Handle file) override;
    void close(Handle file) override;
    Status status(const std::string& path) override;
    std::string linkTarget(const std::string& path) override;
    std::vector<Entry> list(const std::string& folder, Detail detail) override;
    std::unique_ptr<FolderWatch> watch(const std::string& folder) override;
    void flushFolder(const std::string& folder) override;
    void makeFolder(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void moveToWaste(const std::string& path) override;
    std::int64_t freeSpace() override;
    std::string nativePath(const std::string& path) const override;

  private:
    struct Node;
    using NodeOf = std::shared_ptr<Node>;
    struct Opened {
        NodeOf node;
        std::string path;
    };
    // What the watchers of folders have not been told yet; a watch that went is forgotten with it.
    class Watch;
    struct Watched {
        std::string folder;
        std::vector<std::string> names;
    };

    void call();
    void change();
    void happened(const std::string& path);
    void written(Node& node, const std::string& path);
    static Status statusOf(const Node& node);
    Opened& at(Handle file);
    NodeOf look(const std::string& path) const;
    NodeOf existing(const std::string& path) const;
    NodeOf take(const std::string& path);
    Node& folder(const std::string& path) const;
    Node& makeFolders(const std::string& path);
    Handle handleOf(NodeOf node, const std::string& path);

    std::uint64_t versions_ = 0;
    std::vector<std::weak_ptr<Watched>> watched_;
    NodeOf root_;
    std::map<Handle, Opened> handles_;
    std::map<std::string, NodeOf> openedPicked_;
    std::map<std::string, NodeOf> created_;  // outside, by native path
    Handle nextHandle_ = 1;
    int callsToFault_ = -1;
    int faultNumber_ = 0;
    bool failed_ = false;
    int refusal_ = 0;
    int changesToRefusal_ = 0;
    int changesToDeath_ = -1;
    bool died_ = false;
};

}  // namespace talvora
