#pragma once
// Which letters of a channel's MODE take a word, and of what kind. The usual ones are known from the start; a
// server that tells its own (CHANMODES and PREFIX of 005) is believed for the rest of the connection.

#include <array>
#include <cstdint>
#include <string_view>

namespace talvora {

class ModeLetters {
  public:
    enum class Kind : std::uint8_t {
        Plain,    // no word
        Nick,     // a nick, such as +o
        List,     // an entry of a list, such as +b
        Word,     // a word, set or taken back, such as +k
        WordSet,  // a word when it is set, such as +l
    };

    ModeLetters();

    Kind kindOf(char letter) const;
    // One word of 005, such as PREFIX=(ov)@+; others are ignored.
    void learn(std::string_view word);

  private:
    void mark(std::string_view letters, Kind kind);
    void learnKinds(std::string_view lists);
    void learnNicks(std::string_view letters);

    std::array<Kind, 128> kinds_{};
};

}  // namespace talvora
