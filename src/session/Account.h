#pragma once
// Where the user is and which network he is on: read at start-up, changed by the settings page. The host's
// composition owns it; the session reads it. His nick is UserState's.

#include <cstdint>
#include <string>

namespace talvora {

struct Account {
    std::string LocationPath;  // places the user in the tree of users, such as "Work.Thessaloniki.Pylea"
    std::string gServerHost;
    std::int32_t gServerPort = 0;
    std::string gSysChannel;
    std::string gSysChanKey;
    bool RobotOnly = false;         // the robot's verbs are taken from the robot alone
    bool gSettingsChanged = false;  // a setting that needs a new connection has changed
};

}  // namespace talvora
