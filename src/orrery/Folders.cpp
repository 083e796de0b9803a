#include "orrery/Folders.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "gate/Places.h"
#include "gate/PrivateFolder.h"
#include "platform/CodePage1253.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"

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

std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// What each entry of a list is made of. A list of plug-ins may well be empty.
constexpr std::pair<std::string_view, std::string_view> marks[] = {
    {"emoticons.dat", ":=:"}, {"perflix.lst", "|"}, {"plugin.lst", ""}};

// A list as lost power or a stray program leaves it: empty, or no text, or without one entry.
bool isDamaged(std::string_view name, std::string_view list) {
    const auto isForeign = [](char c) { return c >= 0 && c < ' ' && c != '\r' && c != '\n' && c != '\t'; };
    const auto* const row = std::find_if(std::begin(marks), std::end(marks),
                                         [&](const auto& mark) { return mark.first == name; });
    return row != std::end(marks) && (list.find(row->second) == std::string_view::npos ||
                                      std::any_of(list.begin(), list.end(), isForeign));
}

// The program's folder while it is furnished. What is written there is on the disk when it returns.
class Furnishing {
  public:
    explicit Furnishing(const fs::path& root) : root_(root), disk_(root) {}

    void makeFolder(const std::string& name) {
        if (existing(root_, name).empty()) files_.MkDir(name);
    }
    // What can't be read is left alone: the component tells of it.
    void furnish(const fs::path& from, const std::string& folder) {
        const std::string name = from.filename();
        const fs::path found = existing(existing(root_, folder), name);
        const std::string path = (folder.empty() ? "" : folder + '\\') + name;
        std::string list;
        if (!found.empty()) {
            if (!read(path, list) || !isDamaged(name, list)) return;
            if (!list.empty()) files_.FileCopy(path, path + ".damaged");
            tell(found, list.empty());
        }
        files_.Rewrite(path, contentOf(from));
    }
    std::string told() const { return told_; }

  private:
    bool read(const std::string& path, std::string& to) {
        try {
            to = files_.ReadWhole(path);
            return true;
        } catch (const RuntimeError&) {
            return false;
        }
    }
    void tell(const fs::path& list, bool empty) {
        told_ += (told_.empty() ? "" : "\n") + list.string();
        told_ += empty
                     ? " was empty and has been replaced by the list that comes with Talvora."
                     : " was damaged and has been replaced by the list that comes with Talvora. The damaged "
                       "one is kept beside it.";
    }

    fs::path root_;
    PosixDisk disk_;
    Files files_{disk_};
    std::string told_;
};

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

std::string Folders::Furnish(const std::string& defaults) const {
    MakeRoots();
    try {
        Furnishing data(Data);
        for (const char* name : {"Mail", "Received", "System"}) data.makeFolder(name);
        if (defaults.empty()) return {};
        const fs::path profile = fs::path(defaults) / "network.ini";
        if (fs::exists(profile)) Furnishing(Config).furnish(profile, "");
        const fs::path lists = fs::path(defaults) / "System";
        if (!fs::is_directory(lists)) return {};
        for (const fs::directory_entry& entry : fs::directory_iterator(lists)) {
            if (entry.is_regular_file()) data.furnish(entry.path(), "System");
        }
        return data.told();
    } catch (const fs::filesystem_error& error) {
        throw cannotFurnish(error);
    } catch (const RuntimeError& fault) {
        throw FolderError(Data + " cannot be furnished: " + toUtf8(fault.Description));
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
