#include "platform/ListView.h"

#include <algorithm>
#include <utility>

#include "platform/RuntimeError.h"

namespace talvora {
namespace {

[[noreturn]] void outOfBounds() {
    throw RuntimeError(35600, "Index out of bounds");
}

void become(ListItem& item, const ListRow& row) {
    item.SetKey(row.Key);
    item.SetTag(row.Tag);
    item.SetText(row.Text);
    item.SetSmallIcon(row.SmallIcon);
    item.SetBold(row.Bold);
    item.SetToolTipText(row.ToolTipText);
    for (std::size_t column = 0; column < row.SortTexts.size(); ++column)
        item.SetSortText(column, row.SortTexts[column]);
    for (std::size_t column = 1; column <= std::max(row.SubItems.size(), item.Columns()); ++column) {
        item.SetSubItem(column, column <= row.SubItems.size() ? row.SubItems[column - 1] : std::string());
    }
}

}  // namespace

ListItem::ListItem(ListItems& owner, std::string key, std::string text, std::size_t slot)
    : owner_(owner), slot_(slot), key_(std::move(key)), text_(std::move(text)) {}

const std::string& ListItem::SubItems(std::size_t column) const {
    static const std::string none;
    return column >= 1 && column <= subItems_.size() ? subItems_[column - 1] : none;
}

const std::string& ListItem::SortText(std::size_t column) const {
    if (column < sortTexts_.size() && !sortTexts_[column].empty()) return sortTexts_[column];
    return column == 0 ? text_ : SubItems(column);
}

int ListItem::Index() const {
    return static_cast<int>(owner_.order_.rankOf(slot_));
}

void ListItem::changed() {
    owner_.RowChanged.raise(*this);
}

void ListItem::SetText(std::string text) {
    if (text == text_) return;
    text_ = std::move(text);
    changed();
}

void ListItem::SetSmallIcon(int icon) {
    if (icon < 0 || icon > owner_.images_) outOfBounds();
    if (std::exchange(smallIcon_, icon) != icon) changed();
}

void ListItem::SetChecked(bool checked) {
    if (std::exchange(checked_, checked) != checked) changed();
}

void ListItem::SetBold(bool bold) {
    if (std::exchange(bold_, bold) != bold) changed();
}

void ListItem::SetToolTipText(std::string text) {
    if (text == toolTip_) return;
    toolTip_ = std::move(text);
    changed();
}

void ListItem::SetSubItem(std::size_t column, std::string text) {
    if (column == 0) throw RuntimeError(Fault::InvalidProcedureCall);
    if (SubItems(column) == text) return;
    if (subItems_.size() < column) subItems_.resize(column);
    subItems_[column - 1] = std::move(text);
    changed();
}

void ListItem::SetSortText(std::size_t column, std::string text) {
    if (sortTexts_.size() <= column) sortTexts_.resize(column + 1);
    if (sortTexts_[column] == text) return;
    sortTexts_[column] = std::move(text);
    changed();
}

ListItem& ListItems::Add(std::string key, std::string text) {
    ListItem& row = *slots_.emplace_back(new ListItem(*this, std::move(key), std::move(text), slots_.size()));
    order_.append();
    RowInserted.raise(Count());
    return row;
}

ListItem& ListItems::Insert(int index, std::string key, std::string text) {
    if (index == Count() + 1) return Add(std::move(key), std::move(text));
    if (index < 1 || index > Count()) outOfBounds();
    const auto before = static_cast<std::size_t>(index) - 1;
    std::size_t slot = before == 0 ? 0 : order_.slotOf(before) + 1;
    if (slots_[slot] != nullptr) {
        openHoles(before);
        slot = before;
    }
    slots_[slot].reset(new ListItem(*this, std::move(key), std::move(text), slot));
    order_.fill(slot);
    RowInserted.raise(index);
    return *slots_[slot];
}

// Behind the first `before` rows. So many that this is done for one insertion in as many as there are holes.
void ListItems::openHoles(std::size_t before) {
    std::erase(slots_, nullptr);
    const std::size_t holes = 16 + slots_.size() / 8;
    std::vector<std::unique_ptr<ListItem>> wide;
    wide.reserve(slots_.size() + holes);
    order_.clear();
    const auto append = [&](std::unique_ptr<ListItem> row) {
        if (row != nullptr) row->slot_ = wide.size();
        order_.append();
        if (row == nullptr) order_.vacate(wide.size());
        wide.push_back(std::move(row));
    };
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        for (std::size_t n = 0; i == before && n < holes; ++n) append(nullptr);
        append(std::move(slots_[i]));
    }
    slots_ = std::move(wide);
}

void ListItems::Remove(const ListItem& row) {
    if (row.slot_ >= slots_.size() || slots_[row.slot_].get() != &row) outOfBounds();
    const int index = row.Index();
    const std::unique_ptr<ListItem> removed = std::move(slots_[row.slot_]);
    order_.vacate(row.slot_);
    // Who listens may still ask before which rows it stood, so the places change only behind that.
    RowRemoved.raise(index, *removed);
    if (slots_.size() > 2 * order_.taken() + 16) closeHoles();
}

// Done once in as many removals as there are rows, so that it costs none of them.
void ListItems::closeHoles() {
    std::erase(slots_, nullptr);
    order_.clear();
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
        slots_[slot]->slot_ = slot;
        order_.append();
    }
}

void ListItems::Clear() {
    if (Count() == 0) return;
    Cleared.raise();
    order_.clear();
    slots_.clear();
}

ListItem& ListItems::operator()(int index) const {
    if (index < 1 || index > Count()) outOfBounds();
    return *slots_[order_.slotOf(static_cast<std::size_t>(index))];
}

ListView::ListView() {
    on_ += ListItems.Cleared.connect([this] { SelectedItem = nullptr; });
    on_ += ListItems.RowRemoved.connect([this](int, const ListItem& row) {
        if (SelectedItem == &row) SelectedItem = nullptr;
    });
}

void ListView::Refresh(const std::vector<ListRow>& rows) {
    const std::string key = SelectedItem != nullptr ? SelectedItem->Key() : std::string();
    const int place = SelectedItem != nullptr ? SelectedItem->Index() : 0;
    const int count = static_cast<int>(rows.size());
    Refreshing.raise();
    while (ListItems.Count() > count) ListItems.Remove(ListItems(ListItems.Count()));
    for (int i = 1; i <= count; ++i) {
        const ListRow& row = rows[static_cast<std::size_t>(i - 1)];
        become(i > ListItems.Count() ? ListItems.Add(row.Key, row.Text) : ListItems(i), row);
    }
    if (place != 0) selectAgain(key, place);
    Refreshed.raise();
}

void ListView::Append(const ListRow& row) {
    become(ListItems.Add(row.Key, row.Text), row);
}

void ListView::selectAgain(const std::string& key, int place) {
    int found = std::min(place, ListItems.Count());
    const auto isMeant = [&](int i) { return ListItems(i).Key() == key; };
    if (!key.empty() && found != 0 && !isMeant(found)) {
        int i = 1;
        while (i <= ListItems.Count() && !isMeant(i)) ++i;
        if (i <= ListItems.Count()) found = i;
    }
    SelectedItem = found == 0 ? nullptr : &ListItems(found);
}

void ListView::userClicks(ListItem& row) {
    userSelects(row);
    ItemClick.raise(row);
}

void ListView::userTicks(ListItem& row, bool checked) {
    if (row.Checked() == checked) return;
    row.SetChecked(checked);
    ItemCheck.raise(row);
}

}  // namespace talvora
