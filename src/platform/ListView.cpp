#include "platform/ListView.h"

#include <utility>

#include "platform/RuntimeError.h"

namespace talvora {

ListItem::ListItem(ListItems& owner, std::string key, std::string text)
    : owner_(owner), key_(std::move(key)), text_(std::move(text)) {}

const std::string& ListItem::SubItems(std::size_t column) const {
    static const std::string none;
    return column >= 1 && column <= subItems_.size() ? subItems_[column - 1] : none;
}

void ListItem::changed() {
    owner_.RowChanged.raise(*this);
}

void ListItem::SetSmallIcon(int icon) {
    if (std::exchange(smallIcon_, icon) != icon) changed();
}

void ListItem::SetChecked(bool checked) {
    if (std::exchange(checked_, checked) != checked) changed();
}

void ListItem::SetSubItem(std::size_t column, std::string text) {
    if (column == 0) throw RuntimeError(Fault::InvalidProcedureCall);
    if (SubItems(column) == text) return;
    if (subItems_.size() < column) subItems_.resize(column);
    subItems_[column - 1] = std::move(text);
    changed();
}

ListItem& ListItems::Add(std::string key, std::string text) {
    rows_.push_back(std::unique_ptr<ListItem>(new ListItem(*this, std::move(key), std::move(text))));
    RowInserted.raise(Count());
    return *rows_.back();
}

void ListItems::Clear() {
    if (rows_.empty()) return;
    Cleared.raise();
    rows_.clear();
}

ListItem& ListItems::operator()(int index) const {
    if (index < 1 || index > Count()) throw RuntimeError(35600, "Index out of bounds");
    return *rows_[static_cast<std::size_t>(index) - 1];
}

ListView::ListView() : cleared_(ListItems.Cleared.connect([this] { SelectedItem = nullptr; })) {}

void ListView::userTicks(ListItem& row, bool checked) {
    if (row.Checked() == checked) return;
    row.SetChecked(checked);
    ItemCheck.raise(row);
}

}  // namespace talvora
