#pragma once
// The model of a list view: rows with an icon, sub-items and a check box. It tells its view which rows came,
// changed or went, so that a list of ten thousand rows is never rebuilt for one. To reach, add or remove a
// row costs hardly more in a long list than in a short one.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "platform/Property.h"
#include "platform/RankTree.h"

namespace talvora {

class ListItems;

class ListItem {
  public:
    const std::string& Key() const { return key_; }
    const std::string& Text() const { return text_; }
    const std::string& Tag() const { return tag_; }
    int SmallIcon() const { return smallIcon_; }
    bool Checked() const { return checked_; }
    bool Bold() const { return bold_; }
    // Empty: what the row shows.
    const std::string& ToolTipText() const { return toolTip_; }
    // Columns behind the first, counted from 1; an absent one is empty.
    const std::string& SubItems(std::size_t column) const;
    // What a list that is sorted by that column goes by; the column's text unless it is told.
    const std::string& SortText(std::size_t column) const;
    // How many of them there are.
    std::size_t Columns() const { return subItems_.size(); }
    // Which row of the list this is, counted from 1.
    int Index() const;
    // Whether this row stands in front of another one of its list.
    bool StandsBefore(const ListItem& other) const { return slot_ < other.slot_; }

    // Neither is shown.
    void SetKey(std::string key) { key_ = std::move(key); }
    void SetTag(std::string tag) { tag_ = std::move(tag); }
    void SetText(std::string text);
    // 0 is no icon. Faults with 35600 if the image list has no such image.
    void SetSmallIcon(int icon);
    // By code: raises no event of the list.
    void SetChecked(bool checked);
    void SetBold(bool bold);
    void SetToolTipText(std::string text);
    void SetSubItem(std::size_t column, std::string text);
    // 0 is the row's text, then come the sub-items.
    void SetSortText(std::size_t column, std::string text);

  private:
    friend class ListItems;
    friend class ListView;
    ListItem(ListItems& owner, std::string key, std::string text, std::size_t slot);
    void changed();

    ListItems& owner_;
    std::size_t slot_;
    std::string key_;
    std::string text_;
    std::string tag_;
    std::vector<std::string> subItems_;
    std::vector<std::string> sortTexts_;  // from column 0 on; an empty one is not told
    int smallIcon_ = 0;
    bool checked_ = false;
    bool bold_ = false;
    std::string toolTip_;
};

// A row as a value, for a list that is drawn anew from its source.
struct ListRow {
    std::string Key;
    std::string Text;
    std::vector<std::string> SubItems;  // the columns behind the first
    int SmallIcon = 0;
    std::string Tag;
    bool Bold = false;
    std::string ToolTipText;
    std::vector<std::string> SortTexts;  // from column 0 on; the column's text where it is empty
};

// The rows, counted from 1.
class ListItems {
  public:
    ListItem& Add(std::string key, std::string text);
    // In front of the row that stands at `index`, which may be one behind the last; faults with 35600 beyond.
    ListItem& Insert(int index, std::string key, std::string text);
    // Faults with 35600 if the row is not in the list.
    void Remove(const ListItem& row);
    void Clear();
    int Count() const { return static_cast<int>(order_.taken()); }
    // Faults with 35600 if there is no such row.
    ListItem& operator()(int index) const;

    Event<int> RowInserted;
    Event<const ListItem&> RowChanged;
    // Where the row stood; it is out of the list, but lives until all handlers have returned.
    Event<int, const ListItem&> RowRemoved;
    Event<> Cleared;

  private:
    friend class ListItem;
    friend class ListView;
    void closeHoles();
    void openHoles(std::size_t before);

    std::vector<std::unique_ptr<ListItem>> slots_;  // in order, with holes where rows went
    RankTree order_;
    int images_ = std::numeric_limits<int>::max();
};

enum class SortOrder { Ascending, Descending };

class ListView {
  public:
    talvora::ListItems ListItems;
    ListItem* SelectedItem = nullptr;  // nothing while no row is selected

    // The headings, if the form has a say in them; without them the view has its own.
    Property<std::vector<std::string>> ColumnHeaders;

    // Shows the rows by the sort text of a column, without regard to case; equal ones as they stand in the
    // list. The list itself, and so the index of a row, stays as it is.
    Property<bool> Sorted{false};
    Property<int> SortKey{0};  // 0 is the rows' text, then come the sub-items
    Property<talvora::SortOrder> SortOrder{talvora::SortOrder::Ascending};
    // The owner keeps the rows themselves in the order of SortKey and SortOrder; the heading shows it.
    Property<bool> InOrder{false};
    Event<int> ColumnClick;  // on the heading of a column, counted from 1

    // Makes the rows those of `rows`, with as few changes as there are differences by place: a list that is
    // read anew neither flickers nor loses its place on the screen. The selection stays with its key, or with
    // its place if it has none or the key is gone.
    void Refresh(const std::vector<ListRow>& rows);
    // One more row at the end.
    void Append(const ListRow& row);

    Event<ListItem&> ItemClick;
    Event<ListItem&> ItemCheck;  // the user ticked or unticked a row
    Event<> DblClick;            // on the selected row
    // Button 1 is the left, 2 the right, 4 the middle one; Shift adds up 1 Shift, 2 Ctrl and 4 Alt; X and Y
    // are pixels from the list's upper left corner.
    Event<int, int, int, int> MouseUp;

    // How many images the list's image list has; as many as one likes unless it is told.
    void SetSmallIcons(int images) { ListItems.images_ = images; }

    // What the user's hands do.
    void userSelects(ListItem& row) { SelectedItem = &row; }
    void userClicks(ListItem& row);
    void userTicks(ListItem& row, bool checked);

    // Around Refresh: what moves meanwhile is no hand's doing, and a view keeps its place.
    Event<> Refreshing;
    Event<> Refreshed;

    ListView();

  private:
    void selectAgain(const std::string& key, int place);

    Subscriptions on_;
};

}  // namespace talvora
