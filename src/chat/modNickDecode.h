#pragma once
// A nick carries its user's state as a suffix in square brackets: `Maria[DND]`. This takes it apart, by the
// table of states in the program's folder. A change of the file takes effect at the next start.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

#include "chat/StateTable.h"
#include "chat/UserMemory.h"
#include "common/Trap.h"

namespace talvora {

class Files;

// The bare nick: the text in front of the first "[". That of `[afk]` is empty, and an ordinary nick.
inline std::string_view bareNickOf(std::string_view nick) {
    return nick.substr(0, nick.find('['));
}
inline std::string TruncNick(std::string_view nick) {
    return std::string(bareNickOf(nick));
}

class modNickDecode {
  public:
    // The icon of a user who is on line in no known state, and of one who has none.
    static constexpr std::uint8_t OnlineIcon = 3;

    modNickDecode(GlobError& globError, Files& files) : globError_(globError), files_(files) {}

    // Once, at the start.
    void LoadPerflixes();
    // Leaves the bare nick in `Nick`. Where the state's line lacks a field or its icon is no byte, `Desc` and
    // `Icon` are as far as they could be read; that is told of once a line.
    void GetNickDesc(std::string& Nick, std::string& Desc, std::uint8_t& Icon);

    UserMemory ListMemory;

  private:
    GlobError& globError_;
    Files& files_;
    StateTable PerflixList_;
    std::unordered_set<const void*> told_;  // faulty lines of the table
};

}  // namespace talvora
