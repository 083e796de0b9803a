#pragma once
// Finds the rows of a list by a name, without regard to case. Several rows can have one name; the one that
// stands first in the list is the one that is found. Names are not copied: each is a part of its row's key,
// which stays as it is while the row is entered.
//
// A table of its own, since a list of ten thousand comes in one turn of the loop: it needs no memory for a
// single row, and remembers the hash of each.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/ListView.h"

namespace talvora {

class RowIndex {
  public:
    using NameOf = std::string_view (*)(std::string_view key);
    explicit RowIndex(NameOf nameOf) : nameOf_(nameOf) {}

    // Nothing if no row has the name.
    ListItem* find(std::string_view name) const;
    void enter(ListItem& row);
    // Makes room for so many more rows, so that none of them waits while the table grows.
    void expect(std::size_t rows);
    // Gives up room that was made for rows that did not come.
    void fit();
    // What room for a row costs at most, in bytes.
    static constexpr std::size_t RoomCost = 64;
    // While the row is still in its list.
    void leave(const ListItem& row);
    // Also of a row that is no more; it is compared only as an address.
    bool holds(std::string_view name, const ListItem& row) const;
    void clear();

  private:
    // The first row of a name. An empty place ends the search for those whose hash leads in front of it.
    struct Place {
        ListItem* first = nullptr;
        std::uint32_t hash = 0;
        bool more = false;  // whether others_ has rows of the same name
    };
    static constexpr std::size_t Nowhere = static_cast<std::size_t>(-1);

    std::size_t home(std::uint32_t hash) const { return hash & (places_.size() - 1); }
    std::size_t next(std::size_t place) const { return (place + 1) & (places_.size() - 1); }
    std::size_t placeOf(std::string_view name, std::uint32_t hash) const;
    void put(Place entry);
    void growTo(std::size_t places);
    void enterBeside(Place& place, ListItem& row);
    void vacate(std::size_t place);

    NameOf nameOf_;
    std::vector<Place> places_;  // none, or a power of two, at most half of them taken
    std::size_t taken_ = 0;
    // The rare rows behind a first one of the same name, in the list's order.
    std::unordered_map<const ListItem*, std::vector<ListItem*>> others_;
};

}  // namespace talvora
