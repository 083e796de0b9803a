#pragma once
// Where the host keeps things, and how these folders are furnished at the first start. All paths are native.

#include <stdexcept>
#include <string>

#include "orrery/CommandLine.h"

namespace talvora {

// A folder or a default file cannot be made; the text is in UTF-8.
class FolderError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct Folders {
    std::string Config;  // holds settings.db and network.ini
    std::string Data;    // the program's folder
    std::string Gate;    // the gate's socket
    std::string SettingsFile;
    std::string ProfileFile;

    // What the command line says, else the user's standard folders. Absolute.
    static Folders Choose(const CommandLine& line);

    // The folders alone, still empty. Throws FolderError.
    void MakeRoots() const;
    // Creates what is missing, for the owner alone: the folders, and in them the files of `defaults` (empty
    // for none). What is there, in whatever case, is not touched, but for a list that is empty or no list: it
    // gives way to the default and is kept as `<name>.damaged`. Gives what the user is to know of that, in
    // UTF-8; mostly nothing. Lost power leaves each file as it was or whole. Throws FolderError.
    std::string Furnish(const std::string& defaults) const;
};

// The installed defaults: share/talvora beside the folder of the executable; empty if there is none.
std::string InstalledDefaults(const std::string& executableFolder);
// The library of a plug-in: beside the executable or in lib/talvora beside its folder. The first of these if
// it is nowhere.
std::string InstalledPlugin(const std::string& executableFolder, const std::string& name);

}  // namespace talvora
