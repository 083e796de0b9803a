#pragma once
// Host messages as the gate writes and reads them: one JSON object a line, in UTF-8.
//
//     {"MsgID":1005,"FromID":1,"ToID":-1,"Tag":"IRC","Data":["#thes","Nikos","hello"],"Extra":0}
//
// Inside, text is in code page 1253. Any byte of it survives the way out and back in; control characters are
// written as \u00XX, so that a line can be printed on a terminal. What is read may lack all fields but MsgID.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/HostMessages.h"

namespace talvora {

// A line, without its end, is at most so long.
constexpr std::size_t GateLineLimit = std::size_t{1} << 20;
// Arrays in arrays: the outermost has depth 1.
constexpr int GateArrayDepth = 32;

// The complaint about a line without anything in it. `orreryctl` provokes it to learn that all before it is
// done.
inline constexpr std::string_view GateEmptyLine = "empty line";

// Appends the object, without a line end. An array that is nested too deep and a number that is none are
// written as null.
void appendMessage(std::string& to, const HostMessage& message);
// Appends {"error":"..."} without a line end. `reason` is in code page 1253.
void appendError(std::string& to, std::string_view reason);

struct GateLine {
    std::optional<HostMessage> Message;  // with FromID 0: who sends is not the sender's to say
    std::string Error;                   // why there is no message
};
GateLine readMessage(std::string_view line);

// A single JSON value; nothing if it is none or one that a message cannot carry.
std::optional<HostValue> readValue(std::string_view json);
// The reason, if the line is {"error":"..."}.
std::optional<std::string> readError(std::string_view line);
// The number of a message that `appendMessage` wrote, without reading the rest.
std::optional<std::int32_t> peekMsgID(std::string_view line);

}  // namespace talvora
