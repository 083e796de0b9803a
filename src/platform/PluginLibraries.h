#pragma once
// The port to the shared libraries in the folder Plugins of the program's folder. A platform implements it;
// the component only looks exported functions up by their names. What is loaded stays for the life of the
// process, because objects and faults made by a library outlive any one window.

#include <functional>
#include <string>
#include <vector>

namespace talvora {

class PluginLibraries {
  public:
    using Function = void (*)();
    // The function that a library exports by this name; a null pointer if there is none.
    using Exports = std::function<Function(const char* name)>;

    virtual ~PluginLibraries() = default;

    // The file names of the libraries, in UTF-8 and in order; none if there is no such folder. Throws
    // RuntimeError if the folder can't be read or others could put libraries there.
    virtual std::vector<std::string> List() = 0;
    // Throws RuntimeError with the reason if the library can't be loaded, or if it is not the user's own and
    // his alone.
    virtual Exports Load(const std::string& fileName) = 0;
};

}  // namespace talvora
