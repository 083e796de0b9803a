#pragma once
// What the robot tells its volunteers: one line a call, by subject, of what happens to it and of what goes
// through it; never what users write.

#include <functional>
#include <string>
#include <string_view>

namespace talvora {

enum class LogSubject { Session, Mail, Announcements, Store };

using RobotLog = std::function<void(LogSubject subject, const std::string& line)>;

// What strangers chose may stand in a line: it is cut to a bearable length, and a control character becomes
// its number (`\x1B`), so that no line can steer the terminal on which it is read.
std::string LogLine(std::string_view text);

}  // namespace talvora
