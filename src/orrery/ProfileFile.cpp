#include "orrery/ProfileFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform_qt/Descriptor.h"
#include "profile/ProfileWriter.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

// A longer one is refused by its reader.
constexpr std::size_t LongestProfile = std::size_t{64} << 10;

std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(LongestProfile + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (!file.is_open() || file.bad() || fs::is_directory(path)) {
        throw ProfileError(path, 1, "this file cannot be read; it must be a network profile");
    }
    return text;
}

std::string cannotWrite(const std::string& path, const std::string& reason) {
    return path + " cannot be written: " + reason;
}

// The file may be reached by a link, and is replaced where it really is.
fs::path placeOf(const std::string& path) {
    std::error_code error;
    const fs::path place = fs::weakly_canonical(path, error);
    return error ? fs::path(path) : place;
}

void flushFolder(const fs::path& folder) {
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.get() >= 0) ::fsync(opened.get());
}

}  // namespace

NetworkProfile readProfile(const std::string& file, bool mustExist) {
    if (!mustExist && !fs::exists(file)) return {};
    return parseNetworkProfile(textOf(file), file);
}

void saveProfile(const std::string& file, const NetworkProfile& profile) {
    std::string text;
    try {
        text = withProfile(fs::exists(file) ? textOf(file) : std::string(), profile);
        parseNetworkProfile(text, file);  // what could not be read again is not written
    } catch (const ProfileError& error) {
        throw ProfileFileError(cannotWrite(file, error.what()));
    }
    const fs::path place = placeOf(file);
    QSaveFile saved(QString::fromStdString(place.string()));
    const bool written =
        saved.open(QIODevice::WriteOnly) &&
        // It may hold the key of the channel, and a file that was there would hand on its own rights.
        saved.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
        saved.write(text.data(), static_cast<qint64>(text.size())) == static_cast<qint64>(text.size()) &&
        saved.flush() && ::fsync(saved.handle()) == 0 && saved.commit();
    if (!written) throw ProfileFileError(cannotWrite(file, saved.errorString().toStdString()));
    flushFolder(place.parent_path());
}

std::string whyNotWritable(const std::string& file) {
    const fs::path place = placeOf(file);
    // The file is replaced by a new one beside it.
    const bool folderYields = ::access(place.parent_path().c_str(), W_OK) == 0;
    if (folderYields && (::access(place.c_str(), W_OK) == 0 || errno == ENOENT)) return {};
    return cannotWrite(file, std::strerror(errno));
}

}  // namespace talvora
