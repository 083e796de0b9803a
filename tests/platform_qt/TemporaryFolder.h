#pragma once
// A folder of its own for a test of the real disk; gone with its owner.

#include <sys/stat.h>

#include <QtCore/QTemporaryDir>
#include <fstream>
#include <iterator>
#include <string>

namespace talvora {

class TemporaryFolder {
  public:
    std::string path(const std::string& name = "") const {
        return folder_.path().toStdString() + (name.empty() ? "" : "/" + name);
    }
    void put(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
    }
    std::string content(const std::string& name) const {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    // The permission bits; -1 if there is no such file.
    int mode(const std::string& name) const {
        struct stat found {};
        return ::lstat(path(name).c_str(), &found) == 0 ? static_cast<int>(found.st_mode & 07777) : -1;
    }

  private:
    QTemporaryDir folder_;
};

}  // namespace talvora
