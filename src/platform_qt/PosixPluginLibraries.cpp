#include "platform_qt/PosixPluginLibraries.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/CodePage1253.h"
#include "platform/RuntimeError.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

RuntimeError refusal(const std::string& path, const std::string& why, Fault fault = Fault::PermissionDenied,
                     int errorNumber = 0) {
    return {static_cast<int>(fault), fromUtf8(path + " " + why), "Talvora", errorNumber};
}

RuntimeError unreadable(const std::string& path, int errorNumber) {
    return refusal(path, std::string("can't be read: ") + std::strerror(errorNumber),
                   Fault::PathFileAccessError, errorNumber);
}

void requireOwn(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) throw unreadable(path, errno);
    if (found.st_uid != ::geteuid()) throw refusal(path, "does not belong to the user.");
    if ((found.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        throw refusal(path, "can be written by others (chmod go-w mends it).");
}

void requireInFolder(const fs::path& file, const fs::path& folder) {
    std::error_code error;
    const fs::path target = fs::canonical(file, error);
    const fs::path home = error ? fs::path() : fs::canonical(folder, error);
    if (error) throw unreadable(file, error.value());
    if (target.parent_path() != home) throw refusal(file, "is a link that leads out of the folder.");
    if (!fs::is_regular_file(target, error)) throw refusal(file, "is no file.");
}

}  // namespace

PosixPluginLibraries::PosixPluginLibraries(const std::string& root)
    : root_(root), folder_(fs::path(root) / "Plugins") {}

std::vector<std::string> PosixPluginLibraries::List() {
    std::vector<std::string> names;
    std::error_code error;
    const fs::file_status status = fs::symlink_status(folder_, error);
    if (status.type() == fs::file_type::not_found) return names;
    if (!fs::is_directory(status)) throw refusal(folder_, "is no folder.", Fault::PathFileAccessError);
    requireOwn(root_);
    requireOwn(folder_);
    fs::directory_iterator entry(folder_, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() == ".so") names.push_back(entry->path().filename());
    }
    if (error) throw unreadable(folder_, error.value());
    std::sort(names.begin(), names.end());
    return names;
}

PluginLibraries::Exports PosixPluginLibraries::Load(const std::string& fileName) {
    const std::string path = fs::path(folder_) / fileName;
    requireInFolder(path, folder_);
    requireOwn(path);
    // What a library makes (objects, faults, captured functions) may outlive every use of it, so it stays.
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) {
        const char* const reason = ::dlerror();
        throw RuntimeError(static_cast<int>(Fault::InternalError),
                           fromUtf8(reason == nullptr ? "unknown reason" : reason));
    }
    return [library](const char* name) { return reinterpret_cast<Function>(::dlsym(library, name)); };
}

}  // namespace talvora
