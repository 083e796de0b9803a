#pragma once
// A lock that a process holds on a file for as long as it lives: the system gives it up when the process
// ends, however it ends. Keeps two hosts from one gate and from one folder of settings.

#include <string>
#include <string_view>

namespace talvora {

class FileLock {
  public:
    FileLock() = default;
    ~FileLock() { unlock(); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Creates the file (native path) if it is missing. False if another holds the lock.
    // Throws std::system_error if the file cannot be opened.
    bool tryLock(const std::string& path);
    void unlock();
    // What others may read in the file while the lock is held; without the lock nothing is written.
    void write(std::string_view text) const;

  private:
    int file_ = -1;
};

}  // namespace talvora
