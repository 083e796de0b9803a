#include "chat/RowIndex.h"

#include <algorithm>
#include <utility>

namespace talvora {
namespace {

// Where a row stands, or belongs, among rows in the list's order.
auto placeOf(std::vector<ListItem*>& rows, const ListItem& row) {
    const auto before = [](const ListItem* other, int index) { return other->Index() < index; };
    return std::lower_bound(rows.begin(), rows.end(), row.Index(), before);
}

}  // namespace

ListItem* RowIndex::find(std::string_view name) const {
    const auto found = rows_.find(name);
    return found == rows_.end() ? nullptr : found->second.first;
}

void RowIndex::enter(ListItem& row) {
    const auto place = rows_.try_emplace(nameOf_(row.Key())).first;
    Rows& rows = place->second;
    if (rows.first == nullptr) {
        rows.first = &row;
        return;
    }
    ListItem* other = &row;
    const bool before = row.Index() < rows.first->Index();
    if (before) std::swap(rows.first, other);
    rows.others.insert(placeOf(rows.others, *other), other);
    if (before) rename(place);
}

void RowIndex::rename(Map::iterator place) {
    auto node = rows_.extract(place);
    node.key() = nameOf_(node.mapped().first->Key());
    rows_.insert(std::move(node));
}

void RowIndex::leave(const ListItem& row) {
    const auto found = rows_.find(nameOf_(row.Key()));
    if (found == rows_.end()) return;
    Rows& rows = found->second;
    if (rows.first != &row) {
        const auto place = placeOf(rows.others, row);
        if (place != rows.others.end() && *place == &row) rows.others.erase(place);
    } else if (rows.others.empty()) {
        rows_.erase(found);
    } else {
        rows.first = rows.others.front();
        rows.others.erase(rows.others.begin());
        rename(found);
    }
}

bool RowIndex::holds(std::string_view name, const ListItem& row) const {
    const auto found = rows_.find(name);
    if (found == rows_.end()) return false;
    const auto& [first, others] = found->second;
    return first == &row || std::find(others.begin(), others.end(), &row) != others.end();
}

}  // namespace talvora
