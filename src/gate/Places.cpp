#include "gate/Places.h"

#include <cstdlib>
#include <string_view>

namespace talvora {
namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

// A variable that holds no absolute path counts as unset.
std::string baseFolder(const char* name, std::string_view below) {
    std::string folder = variable(name);
    if (folder.starts_with('/')) return folder;
    return variable("HOME") + '/' + std::string(below);
}

}  // namespace

std::string defaultDataFolder() {
    return baseFolder("XDG_DATA_HOME", ".local/share") + "/talvora";
}

std::string defaultConfigFolder() {
    return baseFolder("XDG_CONFIG_HOME", ".config") + "/talvora";
}

std::string defaultGatePath() {
    const std::string runtime = variable("XDG_RUNTIME_DIR");
    return (runtime.starts_with('/') ? runtime + "/talvora" : defaultDataFolder()) + "/gate";
}

}  // namespace talvora
