#include "desktop/ListModel.h"

#include <QFont>
#include <algorithm>
#include <utility>

#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr std::size_t longestText = 300;  // that a row shows

}  // namespace

ListModel::ListModel(ListView& list, Look look) : list_(list), look_(std::move(look)) {
    ListItems& rows = list.ListItems;
    on_ += rows.RowInserted.connect([this](int index) { inserted(index); });
    on_ += rows.RowChanged.connect([this](const ListItem& row) { changed(row); });
    on_ += rows.RowRemoved.connect([this](int index, const ListItem& row) { removed(index, row); });
    on_ += rows.Cleared.connect([this] { cleared(); });
    for (int i = 1; i <= rows.Count(); ++i) inserted(i);
}

// ---- Following the list

void ListModel::inserted(int index) {
    if (look_.Sorting == Order::ByName) {
        put(list_.ListItems(index));
        return;
    }
    beginInsertRows({}, index - 1, index - 1);
    ++count_;
    endInsertRows();
}

void ListModel::put(ListItem& row) {
    const QString name = toQString(row.Text()).toCaseFolded();
    const int place = placeFor(name, row);
    beginInsertRows({}, place, place);
    rows_.insert(rows_.begin() + place, &row);
    names_[&row] = name;
    ++count_;
    endInsertRows();
}

void ListModel::changed(const ListItem& row) {
    if (look_.Sorting == Order::ByName && names_[&row] != toQString(row.Text()).toCaseFolded()) {
        ListItem& moved = *rows_[static_cast<std::size_t>(placeOf(row))];
        removed(0, row);
        put(moved);
        return;
    }
    const int place = placeOf(row);
    Q_EMIT dataChanged(index(place, 0), index(place, columnCount() - 1));
}

void ListModel::removed(int index, const ListItem& row) {
    const int place = look_.Sorting == Order::ByName ? placeOf(row) : index - 1;
    leaving_ = &row;
    leavingPlace_ = place;
    beginRemoveRows({}, place, place);
    leaving_ = nullptr;
    if (look_.Sorting == Order::ByName) {
        rows_.erase(rows_.begin() + place);
        names_.erase(&row);
    }
    --count_;
    endRemoveRows();
}

void ListModel::cleared() {
    beginResetModel();
    rows_.clear();
    names_.clear();
    count_ = 0;
    endResetModel();
}

// ---- Places

int ListModel::placeFor(const QString& name, const ListItem& row) const {
    const auto before = [&](const ListItem* one, const QString& other) {
        const QString& own = names_.at(one);
        return own != other ? own < other : std::less<const ListItem*>()(one, &row);
    };
    return static_cast<int>(std::lower_bound(rows_.begin(), rows_.end(), name, before) - rows_.begin());
}

int ListModel::placeOf(const ListItem& row) const {
    return look_.Sorting == Order::ByName ? placeFor(names_.at(&row), row) : row.Index() - 1;
}

const ListItem* ListModel::rowAt(int place) const {
    if (place < 0 || place >= count_) return nullptr;
    if (look_.Sorting == Order::ByName) return rows_[static_cast<std::size_t>(place)];
    if (leaving_ != nullptr && place >= leavingPlace_) {
        return place == leavingPlace_ ? leaving_ : &list_.ListItems(place);
    }
    return place < list_.ListItems.Count() ? &list_.ListItems(place + 1) : nullptr;
}

ListItem* ListModel::item(const QModelIndex& index) const {
    const ListItem* row = index.isValid() ? rowAt(index.row()) : nullptr;
    return row == nullptr || row == leaving_ ? nullptr : &list_.ListItems(row->Index());
}

QModelIndex ListModel::indexOf(const ListItem& row) const {
    return index(placeOf(row), 0);
}

// ---- What the toolkit asks

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count_;
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(look_.Columns.size());
}

QVariant ListModel::shown(const ListItem& row, int column) const {
    const std::string& text = column == 0 ? row.Text() : row.SubItems(static_cast<std::size_t>(column));
    return oneLine(text, longestText);
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const ListItem* row = index.isValid() ? rowAt(index.row()) : nullptr;
    if (row == nullptr) return {};
    const bool first = index.column() == 0;
    switch (role) {
        case Qt::DisplayRole:
            return shown(*row, index.column());
        case Qt::ToolTipRole:
            return theme::plainToolTip(shown(*row, index.column()).toString());
        case Qt::AccessibleTextRole:
            if (!first || !look_.IsNews || !look_.IsNews(row->SmallIcon())) return {};
            return QString(shown(*row, 0).toString() + QStringLiteral(", new"));
        case Qt::DecorationRole:
            return first && look_.Icon && row->SmallIcon() != 0 ? QVariant(look_.Icon(row->SmallIcon()))
                                                                : QVariant();
        case Qt::CheckStateRole:
            if (!first || !look_.Checkable) return {};
            return row->Checked() ? Qt::Checked : Qt::Unchecked;
        case Qt::FontRole: {
            QFont font;
            font.setBold(look_.IsNews && look_.IsNews(row->SmallIcon()));
            return font.bold() ? QVariant(font) : QVariant();
        }
        default:
            return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= look_.Columns.size())
        return {};
    return look_.Columns[section];
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return look_.Checkable && index.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
}

bool ListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    ListItem* row = item(index);
    if (row == nullptr || role != Qt::CheckStateRole) return false;
    list_.userTicks(*row, value.toInt() == Qt::Checked);
    return true;
}

}  // namespace talvora
