#pragma once
// A file of lines behind a table of the settings page. It is read once; what could not be read is never
// written over.

#include <optional>
#include <string>
#include <vector>

#include "common/Trap.h"
#include "platform/Files.h"

namespace talvora {

class LineFile {
  public:
    LineFile(Files& files, std::string path) : files_(files), path_(std::move(path)) {}

    // The lines without their ends; none if there is no such file. A fault is kept for `Write`, and thrown.
    std::vector<std::string> Read();
    // Lines with their ends, CR LF.
    void Write(const std::string& text);

  private:
    Files& files_;
    const std::string path_;
    std::optional<RuntimeError> unreadable_;
};

}  // namespace talvora
