// The line reader on any stream, cut as the input says: it never crashes, and a line that it takes apart has
// all its words.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "irc/LineBuffer.h"
#include "irc/ServerLine.h"
#include "platform/RuntimeError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t cut = 1 + data[0];
    const std::string_view stream(reinterpret_cast<const char*>(data) + 1, size - 1);
    talvora::LineBuffer buffer;
    talvora::ServerLine parts;
    std::string line;
    for (std::size_t at = 0; at < stream.size(); at += cut) {
        buffer.appendReceived(stream.substr(at, cut));
        while (buffer.takeLine(line)) {
            if (line.find_first_of("\r\n") != std::string::npos) __builtin_trap();
            try {
                parts.read(line);
            } catch (const talvora::RuntimeError&) {
                continue;
            }
            if (parts.Parameters.empty() || !parts.Parameters.back().empty()) __builtin_trap();
        }
        if (buffer.unfinished() > buffer.size()) __builtin_trap();
    }
    return 0;
}
