#pragma once
// Where the gate is unless the command line says otherwise; the host and `orreryctl` agree on it here.

#include <string>

namespace talvora {

// $XDG_DATA_HOME/talvora, or ~/.local/share/talvora. Native path.
std::string defaultDataFolder();
// $XDG_CONFIG_HOME/talvora, or ~/.config/talvora. Native path.
std::string defaultConfigFolder();
// $XDG_RUNTIME_DIR/talvora/gate, or `gate` in the default data folder. Native path.
std::string defaultGatePath();

}  // namespace talvora
