#pragma once
// The files of the program's folder, and its confinement: the component reaches the disk through this class
// alone. One instance a component, owned by whoever composes the platform, over a driver that outlives it.
//
// Paths are the system's own, relative to the program's folder, in code page 1253 and with "\" between their
// parts. Existing names are found without regard to case, new ones made as given. A path that leaves the
// folder (see pathParts), also by a symbolic link, faults with 75 before anything is touched.
//
// In `Received\` nothing is created, opened for writing or deleted but while `AllowReceiving` stands (fault
// 70), no link is followed, and what would be emptied or deleted goes to the waste basket first.
//
// Every operation faults with RuntimeError: 53 no such file, 55 open already, 57 and 61 the device, 70 not
// permitted, 75 not a file, 76 no such folder. One thread only.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DiskDriver.h"
#include "platform/File.h"

namespace talvora {

class Files {
  public:
    explicit Files(DiskDriver& disk) : disk_(disk) {}
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    ~Files();

    // As the user accepts an offer of files, and as the offer ends.
    void AllowReceiving(bool allowed) { receiving_ = allowed; }

    // An output file is open alone; otherwise a file can be open several times.
    File Open(std::string_view path, FileMode mode);
    // A file that the user has picked, by its native path, which passes as it is; for reading, as Binary.
    File OpenPicked(const std::string& nativePath);
    // A file that the user has named to be written, likewise; created or emptied. It may be read by whomever
    // the machine's own habits allow.
    File CreatePicked(const std::string& nativePath);
    void CloseAll();

    bool Exists(std::string_view path);
    bool FolderExists(std::string_view path);
    // In bytes.
    std::int64_t FileLen(std::string_view path);
    // The names, in order, of the folder's plain files that fit `pattern` (see fitsPattern). A file whose
    // name has no form in the code page can't be opened and is not named.
    std::vector<std::string> List(std::string_view folder, std::string_view pattern = "*");
    // The first `count` bytes; fewer if the file is shorter.
    std::string ReadStart(std::string_view path, std::size_t count);

    // The path with the names as they stand on the disk, or would if it were made now.
    std::string StoredPath(std::string_view path);
    // Where the machine's other programs find it.
    std::string NativePath(std::string_view path) { return disk_.nativePath(find(path).native); }
    // Bytes that can still be written.
    std::int64_t FreeSpace() { return disk_.freeSpace(); }

    void MkDir(std::string_view path);
    void Kill(std::string_view path);
    // Deletes so that it can be had back: what goes because a stranger says so. The file goes to the
    // desktop's waste basket, or to a folder that keeps the last few (platform/WasteFolder.h).
    void Discard(std::string_view path);
    // 58 if there is a file of the new name.
    void Rename(std::string_view from, std::string_view to);

    // The following survive lost power as soon as they return, and a crash leaves the old or the new state.

    // `from`, which the caller has written, takes the place of `to`. For a content at hand there is
    // `Rewrite`.
    void Replace(std::string_view from, std::string_view to);
    void FileCopy(std::string_view from, std::string_view to);
    std::string ReadWhole(std::string_view path);
    // Writes beside, flushes, renames and flushes the folder.
    void Rewrite(std::string_view path, std::string_view content);
    // `record` and CR LF behind what is there; a torn record before it is dropped. Creates the file.
    void AppendRecord(std::string_view path, std::string_view record);
    // Cuts off what stands behind the last line end, since only a crash leaves such a record. True if there
    // was one. A tail of over 1 MiB is no record and stays.
    bool DropTornRecord(std::string_view path);

  private:
    friend struct OpenFile;
    friend class FolderLook;

    // A checked path and what stands there now.
    struct Place {
        std::string native;
        DiskDriver::Status found;
        bool received = false;        // in `Received\`
        bool receivedFolder = false;  // `Received\` itself
    };
    class Walk;

    Place find(std::string_view path);
    Place findFile(std::string_view path);
    Place findForWriting(std::string_view path);
    Place findForRemoval(std::string_view path);
    std::vector<DiskDriver::Entry> plainFiles(std::string_view folder, std::string_view pattern,
                                              DiskDriver::Detail detail);
    std::string existingName(const std::string& folder, const std::string& name);
    void requireReceiving(const Place& place) const;
    void requireClosed(const Place& place) const;
    void requireShareable(const Place& place, FileMode mode) const;

    DiskDriver::Access prepare(const Place& place, FileMode mode);
    File adopt(DiskDriver::Handle handle, FileMode mode, const std::string& path);
    File writeBeside(const Place& place);
    void copyInto(const Place& source, File& copy);
    void putInPlace(const Place& place, File beside);
    template <class Fill>
    void rewrite(const Place& place, Fill&& fill);
    void flushFolders(const std::string& from, const std::string& to);
    void remove(const Place& place);
    void forget(const OpenFile& file);

    DiskDriver& disk_;
    bool receiving_ = false;
    std::vector<OpenFile*> opened_;
};

}  // namespace talvora
