#include "orrery/Folders.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "gate/Places.h"
#include "gate/PrivateFolder.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

bool sameLetters(const std::string& a, const std::string& b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

// The entry of that name; if it is there only in another case, that one.
fs::path existing(const fs::path& folder, const std::string& name) {
    const fs::path exact = folder / name;
    if (fs::exists(fs::symlink_status(exact))) return exact;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (sameLetters(entry.path().filename().string(), name)) return entry.path();
    }
    return {};
}

void makeRoot(const fs::path& folder) {
    if (fs::is_directory(folder)) return keepPrivate(folder.string());
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
}

fs::path makeFolder(const fs::path& parent, const std::string& name) {
    const fs::path found = existing(parent, name);
    if (!found.empty()) return found;
    fs::create_directory(parent / name);
    fs::permissions(parent / name, fs::perms::owner_all);
    return parent / name;
}

// Beside first, then in one step under its name: a start that is killed leaves no half of a file.
void furnishFile(const fs::path& from, const fs::path& folder) {
    const std::string name = from.filename().string();
    if (!existing(folder, name).empty()) return;
    const fs::path beside = folder / (name + ".new");
    fs::copy_file(from, beside, fs::copy_options::overwrite_existing);
    fs::permissions(beside, fs::perms::owner_read | fs::perms::owner_write);
    fs::rename(beside, folder / name);
}

FolderError cannotFurnish(const fs::filesystem_error& error) {
    return FolderError(error.path1().string() + " cannot be furnished: " + error.code().message());
}

}  // namespace

Folders Folders::Choose(const CommandLine& line) {
    const auto absolute = [](const std::string& given, const std::string& standard) {
        return fs::absolute(given.empty() ? standard : given).lexically_normal().string();
    };
    Folders folders;
    folders.Config = absolute(line.Config, defaultConfigFolder());
    folders.Data = absolute(line.Data, defaultDataFolder());
    folders.Gate = absolute(line.Gate, defaultGatePath());
    folders.SettingsFile = fs::path(folders.Config) / "settings.db";
    folders.ProfileFile = absolute(line.Profile, fs::path(folders.Config) / "network.ini");
    return folders;
}

void Folders::MakeRoots() const {
    try {
        makeRoot(Config);
        makeRoot(Data);
    } catch (const fs::filesystem_error& error) {
        throw cannotFurnish(error);
    }
}

void Folders::Furnish(const std::string& defaults) const {
    MakeRoots();
    try {
        makeFolder(Data, "Mail");
        makeFolder(Data, "Received");
        const fs::path system = makeFolder(Data, "System");
        if (defaults.empty()) return;
        const fs::path profile = fs::path(defaults) / "network.ini";
        if (fs::exists(profile)) furnishFile(profile, Config);
        const fs::path lists = fs::path(defaults) / "System";
        if (!fs::is_directory(lists)) return;
        for (const fs::directory_entry& entry : fs::directory_iterator(lists)) {
            if (entry.is_regular_file()) furnishFile(entry.path(), system);
        }
    } catch (const fs::filesystem_error& error) {
        throw cannotFurnish(error);
    }
}

std::string InstalledDefaults(const std::string& executableFolder) {
    const fs::path folder = fs::path(executableFolder).parent_path() / "share" / "talvora";
    std::error_code ignored;
    return fs::is_directory(folder, ignored) ? folder.string() : std::string();
}

std::string InstalledPlugin(const std::string& executableFolder, const std::string& name) {
    const std::string file = "lib" + name + ".so";
    const fs::path beside = fs::path(executableFolder) / file;
    const fs::path installed = fs::path(executableFolder).parent_path() / "lib" / "talvora" / file;
    std::error_code ignored;
    return !fs::exists(beside, ignored) && fs::exists(installed, ignored) ? installed : beside;
}

}  // namespace talvora
