#pragma once
// The model of a list view: rows with an icon, sub-items and a check box. It tells its view which rows came,
// changed or went, so that a list of ten thousand rows is never rebuilt for one.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/Property.h"

namespace talvora {

class ListItems;

class ListItem {
  public:
    const std::string& Key() const { return key_; }
    const std::string& Text() const { return text_; }
    const std::string& Tag() const { return tag_; }
    int SmallIcon() const { return smallIcon_; }
    bool Checked() const { return checked_; }
    // Columns behind the first, counted from 1; an absent one is empty.
    const std::string& SubItems(std::size_t column) const;

    void SetTag(std::string tag) { tag_ = std::move(tag); }
    void SetSmallIcon(int icon);
    // By code: raises no event of the list.
    void SetChecked(bool checked);
    void SetSubItem(std::size_t column, std::string text);

  private:
    friend class ListItems;
    friend class ListView;
    ListItem(ListItems& owner, std::string key, std::string text);
    void changed();

    ListItems& owner_;
    std::string key_;
    std::string text_;
    std::string tag_;
    std::vector<std::string> subItems_;
    int smallIcon_ = 0;
    bool checked_ = false;
};

// The rows, counted from 1.
class ListItems {
  public:
    ListItem& Add(std::string key, std::string text);
    void Clear();
    int Count() const { return static_cast<int>(rows_.size()); }
    // Faults with 35600 if there is no such row.
    ListItem& operator()(int index) const;

    Event<int> RowInserted;
    Event<const ListItem&> RowChanged;
    Event<> Cleared;

  private:
    friend class ListItem;
    std::vector<std::unique_ptr<ListItem>> rows_;
};

class ListView {
  public:
    talvora::ListItems ListItems;
    ListItem* SelectedItem = nullptr;  // nothing while no row is selected

    Event<ListItem&> ItemCheck;  // the user ticked or unticked a row
    Event<> DblClick;            // on the selected row

    // What the user's hands do.
    void userSelects(ListItem& row) { SelectedItem = &row; }
    void userTicks(ListItem& row, bool checked);

    ListView();

  private:
    Subscription cleared_;
};

}  // namespace talvora
