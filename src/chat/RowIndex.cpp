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

void RowIndex::enter(std::string_view name, ListItem& row) {
    Rows& rows = rows_[std::string(name)];
    if (rows.first == nullptr) {
        rows.first = &row;
        return;
    }
    ListItem* other = &row;
    if (row.Index() < rows.first->Index()) std::swap(rows.first, other);
    rows.others.insert(placeOf(rows.others, *other), other);
}

void RowIndex::leave(std::string_view name, const ListItem& row) {
    const auto found = rows_.find(name);
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
    }
}

bool RowIndex::holds(std::string_view name, const ListItem& row) const {
    const auto found = rows_.find(name);
    if (found == rows_.end()) return false;
    const auto& [first, others] = found->second;
    return first == &row || std::find(others.begin(), others.end(), &row) != others.end();
}

}  // namespace talvora
