// A line from a stranger at the gate: whatever it holds, it is a message or an error, and a message that is
// written and read again is the same message.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "gate/GateJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace talvora;
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    const GateLine read = readMessage(line);
    if (read.Message.has_value() != read.Error.empty()) std::abort();
    std::string written;
    if (!read.Message) {
        appendError(written, read.Error);
        if (readError(written) != read.Error) std::abort();
        return 0;
    }
    appendMessage(written, *read.Message);
    if (written.find_first_of("\r\n") != std::string::npos) std::abort();
    if (peekMsgID(written) != read.Message->MsgID) std::abort();
    const GateLine again = readMessage(written);
    if (written.size() > GateLineLimit) return 0;  // escapes have made it longer
    if (!again.Message || again.Message->ToID != read.Message->ToID ||
        again.Message->Tag != read.Message->Tag || again.Message->Data != read.Message->Data ||
        again.Message->Extra != read.Message->Extra) {
        std::abort();
    }
    return 0;
}
