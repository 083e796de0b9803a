#pragma once
// What the robot tells its volunteers: one line a call, by subject, of what happens to it and of what goes
// through it; never what users write.

#include <functional>
#include <string>

namespace talvora {

enum class LogSubject { Session, Mail, Announcements, Store };

using RobotLog = std::function<void(LogSubject subject, const std::string& line)>;

}  // namespace talvora
