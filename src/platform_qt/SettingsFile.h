#pragma once
// The file of the settings database and its companions, as files: made for the owner alone, put aside when
// they are damaged. `SqliteSettings` owns it. Paths are native, UTF-8.

#include <string>
#include <utility>

#include "platform/RuntimeError.h"

namespace talvora {

class SettingsFile {
  public:
    explicit SettingsFile(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }
    std::string logPath() const { return path_ + "-wal"; }

    // Makes the file and its folder, or checks that the file can be written. An existing file is only looked
    // at and never opened, since closing it would give up the locks that another store of this process holds.
    void prepare() const;
    // The log belongs to an emptied database, can't be read to its end, or does not fit the database; and no
    // other process is writing it just now.
    bool isLogDamaged() const;
    bool hasLog() const;
    // Moves the database with its log to `<name>.damaged-<date>-<time>` and gives the new path.
    std::string putAside() const;
    // Moves the log alone there.
    std::string putLogAside() const;

    // A fault with a description for the user.
    RuntimeError fault(Fault number, const std::string& reason, int errorNumber = 0) const;

  private:
    RuntimeError systemFault(int errorNumber) const;
    bool isInUse() const;
    std::string asideName(const std::string& of) const;
    void create() const;

    std::string path_;
};

}  // namespace talvora
