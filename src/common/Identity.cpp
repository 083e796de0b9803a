#include "common/Identity.h"

#include <algorithm>

#include "platform/Text.h"

namespace talvora {

namespace {

// What no server takes in a nick, and the bracket that begins a state.
constexpr std::string_view NotInNicks = " ,:!@*?#[";

}  // namespace

std::string NickProblem(const std::string& nick) {
    if (Trim(nick).empty()) return "The nickname is empty.";
    const bool taken = nick.find_first_of(NotInNicks) == std::string::npos && nick[0] != '-' &&
                       !(nick[0] >= '0' && nick[0] <= '9');
    if (taken) return {};
    return "The nickname " + nick +
           " cannot be taken: it must not begin with a digit or \"-\", nor hold a "
           "blank, \"[\" or any of , : ! @ * ? #";
}

std::string PathProblem(const std::string& path) {
    if (Trim(path).empty()) return "The location path is empty.";
    const auto steps = Split(path, ".");
    if (std::ranges::none_of(steps, [](const auto& name) { return Trim(name).empty(); })) return {};
    return "The location path " + path + " has an empty step between its dots.";
}

}  // namespace talvora
