#include "robot/RobotLog.h"

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

constexpr std::size_t LongestLogLine = 500;

// Those of 0x80 to 0x9F that the code page leaves free come out as control characters, which steer a
// terminal, too.
bool isUnprintable(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 || code == 0x7F || (code >= 0x80 && code < 0xA0 && toUtf8({&c, 1}).front() == '\xC2');
}

}  // namespace

std::string LogLine(std::string_view text) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string line;
    for (const char c : text.substr(0, LongestLogLine)) {
        if (!isUnprintable(c)) {
            line += c;
            continue;
        }
        const auto code = static_cast<unsigned char>(c);
        line.append("\\x").append(1, digits[code / 16]).append(1, digits[code % 16]);
    }
    return line;
}

}  // namespace talvora
