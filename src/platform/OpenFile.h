#pragma once
// What stands behind an open `File`: the driver's handle, the position and the read buffer. `File` owns it,
// `Files` keeps a list of all, so that it can close them. Inside platform/ only.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/DiskDriver.h"
#include "platform/File.h"

namespace talvora {

struct OpenFile {
    OpenFile(DiskDriver& disk, Files& files, DiskDriver::Handle handle, FileMode mode, std::string path);
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool isOpen() const { return owner != nullptr; }
    void close();

    // Where the next sequential read begins.
    std::int64_t tell() const;
    void seek(std::int64_t to);
    // Makes sure that a byte stands ready in the buffer; false at the end of the file.
    bool fill();
    // Appends to `line` what the buffer holds of it; true when its end was met and taken.
    bool takeLine(std::string& line);
    std::string readAt(std::int64_t from, std::size_t count) const;
    void append(std::string_view bytes);
    void flush();

    DiskDriver& driver;
    Files* owner;  // null once it is closed
    DiskDriver::Handle handle;
    FileMode mode;
    std::string nativePath;
    std::optional<std::string> unflushedFolder;  // that holds the name of the new file
    std::int64_t end = 0;                        // where `append` writes
    bool flushFailed = false;
    bool picked = false;  // by the user, from outside: for reading only

  private:
    std::string buffer_;
    std::size_t taken_ = 0;       // of the buffer
    std::int64_t bufferEnd_ = 0;  // where in the file the buffer ends
};

}  // namespace talvora
