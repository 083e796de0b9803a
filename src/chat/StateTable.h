#pragma once
// The table of the states that a user can be in: a line a state, `tag|description|icon`, lines ended by
// CR LF. What stands behind a tag is checked by who reads it, since the user edits the table by hand.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Text.h"

namespace talvora {

class StateTable {
  public:
    StateTable() = default;
    explicit StateTable(std::string_view text);

    // The fields of the first line with that tag, however many there are; nothing if there is none. Case and
    // blanks around it don't matter.
    const std::vector<std::string>* find(std::string_view tag) const;

  private:
    using Fields = std::vector<std::string>;
    std::unordered_map<std::string, Fields, TextHash, TextEqual> states_;  // by tag
};

}  // namespace talvora
