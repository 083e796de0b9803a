#pragma once
// The rows of a ListView for the toolkit's views. It follows the list row by row; a row that comes, changes
// or goes costs hardly more in a long list than in a short one. Sorting is a matter of what is shown: the
// list itself keeps its order.

#include <QAbstractTableModel>
#include <QIcon>
#include <QTimer>
#include <functional>
#include <unordered_map>
#include <vector>

#include "platform/ListView.h"

namespace talvora {

class ListModel final : public QAbstractTableModel {
  public:
    enum class Order { AsListed, ByName };
    struct Look {
        QStringList Columns;  // the headings, unless the list has its own; empty ones are shown so
        std::function<QIcon(int icon)> Icon;
        Order Sorting = Order::AsListed;  // until the list says that it is sorted
        bool Checkable = false;
        bool ClickableHeads = false;
        // Rows that are less than others: behind them in a list by name, slanted and pale.
        std::function<bool(const ListItem&)> Lesser;
        bool CarriesNicks = false;  // the key of a row can be dragged to where nicks are taken
    };

    ListModel(ListView& list, Look look);

    // Null for an index of no row.
    ListItem* item(const QModelIndex& index) const;
    QModelIndex indexOf(const ListItem& row);
    // Shows at once what would be shown a little later.
    void settle();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

  private:
    void inserted(int index);
    void changed(const ListItem& row);
    void removed(int index, const ListItem& row);
    void cleared();
    void resort();
    void arrange();
    void showHeads(const std::vector<std::string>& heads);

    // A row of a sorted list, and what it is sorted by.
    struct Named {
        ListItem* Row = nullptr;
        QString Name;
    };

    bool isToBeSorted() const { return look_.Sorting == Order::ByName || list_.Sorted; }
    // What the row is sorted by.
    QString nameOf(const ListItem& row) const;
    bool before(const Named& one, const Named& other) const;
    int placeOf(const ListItem& row) const;
    int placeFor(const Named& entry) const;
    const Named& note(ListItem& row);
    void put(ListItem& row);
    bool isComing(const ListItem& row) const { return sorted_ && !names_.contains(&row); }
    void forgetComing(const ListItem& row);
    void appendComing();
    std::vector<const Named*> takeComing();
    void keepPlaces(const std::function<void()>& move);
    const ListItem* rowAt(int place) const;
    bool isLesser(const ListItem& row) const { return look_.Lesser && look_.Lesser(row); }
    QVariant shown(const ListItem& row, int column) const;
    QVariant fontOf(const ListItem& row) const;

    ListView& list_;
    Look look_;
    // Whether the order of the view is not the list's. Then the rows stand here in the view's, and by which
    // name each stands there.
    bool sorted_;
    std::vector<const Named*> rows_;
    std::unordered_map<const ListItem*, Named> names_;
    int count_ = 0;
    // Rows of a sorted list that are not shown yet, in the list's order, and how many were shown at once
    // since the last ones were shown together.
    std::vector<ListItem*> coming_;
    int single_ = 0;
    QTimer together_;
    // The list has lost this row already, and the toolkit has just been told that it is about to.
    const ListItem* leaving_ = nullptr;
    int leavingPlace_ = 0;
    Subscriptions on_;
};

}  // namespace talvora
