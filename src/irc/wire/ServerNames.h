#pragma once
// How the server spells the names that it has used: channels and nicks with letters beyond ASCII, which the
// server does not fold, while the engine writes them in proper case. Names of ASCII alone need no help and
// are not kept. Bounded: of each kind the names seen last are known. Text is in code page 1253.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Text.h"

namespace talvora {

class ServerNames {
  public:
    // Of channels and of nicks; twice as many are known at most.
    static constexpr std::size_t Most = 5000;
    static constexpr std::size_t LongestName = 200;

    // For a new connection.
    void reset();
    void learn(std::string_view name);
    // The nicks of a names list, each behind its ranks.
    void learnAll(std::string_view list);
    // The server's spelling if it differs in other letters than ASCII ones, else `name` itself. Valid until
    // the next name is learnt.
    std::string_view spelled(std::string_view name) const;

  private:
    using Names = std::unordered_map<std::string, std::string, TextHash, TextEqual>;
    // When `young` is full it becomes `old`, and what was old is forgotten.
    struct Kind {
        Names young;
        Names old;
    };
    static const std::string* find(const Kind& kind, std::string_view name);

    Kind channels_;
    Kind nicks_;
};

}  // namespace talvora
