#include "chat/RowIndex.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/Text.h"

namespace talvora {
namespace {

constexpr std::size_t FewestPlaces = 16;

// Where a row stands, or belongs, among rows in the list's order.
auto placeAmong(std::vector<ListItem*>& rows, const ListItem& row) {
    const auto before = [](const ListItem* one, const ListItem* other) { return one->StandsBefore(*other); };
    return std::lower_bound(rows.begin(), rows.end(), &row, before);
}

// The lower bits choose the place, so all bits of the text's hash go into them.
std::uint32_t hashOf(std::string_view name) {
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U;
    return static_cast<std::uint32_t>(TextHash{}(name)*spread >> 32);
}

}  // namespace

// Nowhere if no row has the name.
std::size_t RowIndex::placeOf(std::string_view name, std::uint32_t hash) const {
    if (places_.empty()) return Nowhere;
    for (std::size_t i = home(hash); places_[i].first != nullptr; i = next(i)) {
        if (places_[i].hash == hash && EqualText(nameOf_(places_[i].first->Key()), name)) return i;
    }
    return Nowhere;
}

ListItem* RowIndex::find(std::string_view name) const {
    const std::size_t place = placeOf(name, hashOf(name));
    return place == Nowhere ? nullptr : places_[place].first;
}

void RowIndex::enter(ListItem& row) {
    const std::string_view name = nameOf_(row.Key());
    const std::uint32_t hash = hashOf(name);
    const std::size_t place = placeOf(name, hash);
    if (place != Nowhere) return enterBeside(places_[place], row);
    expect(1);
    put({&row, hash, false});
    ++taken_;
}

void RowIndex::put(Place entry) {
    std::size_t i = home(entry.hash);
    while (places_[i].first != nullptr) i = next(i);
    places_[i] = entry;
}

void RowIndex::expect(std::size_t rows) {
    const std::size_t wanted = std::max(FewestPlaces, 2 * (taken_ + rows));
    if (wanted > places_.size()) growTo(std::bit_ceil(wanted));
}

void RowIndex::fit() {
    const std::size_t needed = std::bit_ceil(std::max(FewestPlaces, 2 * taken_));
    if (places_.size() >= 4 * needed) growTo(needed);
}

void RowIndex::growTo(std::size_t places) {
    std::vector<Place> wider(places);
    wider.swap(places_);
    for (const Place& entry : wider) {
        if (entry.first != nullptr) put(entry);
    }
}

void RowIndex::enterBeside(Place& place, ListItem& row) {
    std::vector<ListItem*> others;
    if (place.more) others = std::move(others_.extract(place.first).mapped());
    ListItem* other = &row;
    if (row.StandsBefore(*place.first)) std::swap(place.first, other);
    others.insert(placeAmong(others, *other), other);
    others_.emplace(place.first, std::move(others));
    place.more = true;
}

void RowIndex::leave(const ListItem& row) {
    const std::string_view name = nameOf_(row.Key());
    const std::size_t i = placeOf(name, hashOf(name));
    if (i == Nowhere) return;
    Place& place = places_[i];
    if (!place.more) {
        if (place.first == &row) vacate(i);
        return;
    }
    std::vector<ListItem*> others = std::move(others_.extract(place.first).mapped());
    if (place.first == &row) {
        place.first = others.front();
        others.erase(others.begin());
    } else {
        const auto at = placeAmong(others, row);
        if (at != others.end() && *at == &row) others.erase(at);
    }
    place.more = !others.empty();
    if (place.more) others_.emplace(place.first, std::move(others));
}

// What stands behind moves up, unless it would then be in front of where its search begins.
void RowIndex::vacate(std::size_t place) {
    --taken_;
    std::size_t hole = place;
    for (std::size_t i = next(hole); places_[i].first != nullptr; i = next(i)) {
        const std::size_t mask = places_.size() - 1;
        const bool mayMove = ((i - home(places_[i].hash)) & mask) >= ((i - hole) & mask);
        if (!mayMove) continue;
        places_[hole] = places_[i];
        hole = i;
    }
    places_[hole] = Place{};
}

bool RowIndex::holds(std::string_view name, const ListItem& row) const {
    const std::size_t i = placeOf(name, hashOf(name));
    if (i == Nowhere) return false;
    if (places_[i].first == &row) return true;
    if (!places_[i].more) return false;
    const std::vector<ListItem*>& others = others_.at(places_[i].first);
    return std::find(others.begin(), others.end(), &row) != others.end();
}

void RowIndex::clear() {
    places_ = {};
    others_.clear();
    taken_ = 0;
}

}  // namespace talvora
