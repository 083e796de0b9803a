#pragma once
// Where the robot's configuration is, and what it means in plain words.

#include <string>

#include "robot/RobotConfig.h"

namespace talvora {

// The file that `given` names, else the first of the usual places that has one. Throws ProfileError.
std::string ChooseConfigFile(const std::string& given);

// Throws ProfileError for a file that cannot be read or is wrong.
RobotConfig ReadConfigFile(const std::string& file);

// A few lines in UTF-8 that say what a robot of this configuration does. No password is in them.
std::string DescribeConfig(const RobotConfig& config);

}  // namespace talvora
