#pragma once
// Finds the rows of a list by a name, without regard to case. Several rows can have one name; the one that
// stands first in the list is the one that is found. Names are not copied: each is a part of its row's key,
// which stays as it is while the row is entered.

#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/ListView.h"
#include "platform/Text.h"

namespace talvora {

class RowIndex {
  public:
    using NameOf = std::string_view (*)(std::string_view key);
    explicit RowIndex(NameOf nameOf) : nameOf_(nameOf) {}

    // Nothing if no row has the name.
    ListItem* find(std::string_view name) const;
    void enter(ListItem& row);
    // While the row is still in its list.
    void leave(const ListItem& row);
    // Also of a row that is no more; it is compared only as an address.
    bool holds(std::string_view name, const ListItem& row) const;
    void clear() { rows_.clear(); }

  private:
    // In the list's order. A second row is rare and kept apart, so that the first needs no memory of its own.
    struct Rows {
        ListItem* first = nullptr;
        std::vector<ListItem*> others;
    };

    using Map = std::unordered_map<std::string_view, Rows, TextHash, TextEqual>;
    // The name in the map is that of the first row.
    void rename(Map::iterator place);

    NameOf nameOf_;
    Map rows_;
};

}  // namespace talvora
