#pragma once
// A folder of its own for a test of the real disk, gone with its owner, and a disk that is soon full. The
// folder is in memory where the system has such a place: what a killed process wrote is safe there too, and
// it is quick.

#include <sys/resource.h>
#include <sys/stat.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <csignal>
#include <fstream>
#include <iterator>
#include <string>

namespace talvora::test {

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
    QTemporaryDir folder_{(QFile::exists("/dev/shm") ? "/dev/shm" : QDir::tempPath()) + "/test-XXXXXX"};
};

// Runs `call` while no file may grow beyond so many bytes.
template <class Call>
void onAFullDisk(rlim_t size, Call call) {
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{size, before.rlim_max};
    const auto action = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    call();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, action);
}

}  // namespace talvora::test
