#include "desktop/ListModel.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "desktop/NickDrag.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr std::size_t LongestText = 300;  // that a row shows
constexpr QChar BehindAll(0xFFFF);        // no letter of a name

}  // namespace

ListModel::ListModel(ListView& list, Look look)
    : list_(list), look_(std::move(look)), sorted_(isToBeSorted()) {
    ListItems& rows = list.ListItems;
    on_ += rows.RowInserted.connect([this](int index) { inserted(index); });
    on_ += rows.RowChanged.connect([this](const ListItem& row) { changed(row); });
    on_ += rows.RowRemoved.connect([this](int index, const ListItem& row) { removed(index, row); });
    on_ += rows.Cleared.connect([this] { cleared(); });
    on_ += list.Sorted.Changed.connect([this](bool) { resort(); });
    on_ += list.SortKey.Changed.connect([this](int) { resort(); });
    on_ += list.SortOrder.Changed.connect([this](SortOrder) { resort(); });
    on_ += list.ColumnHeaders.Changed.connect(
        [this](const std::vector<std::string>& heads) { showHeads(heads); });
    if (!list.ColumnHeaders.get().empty()) showHeads(list.ColumnHeaders);
    for (int i = 1; i <= rows.Count(); ++i) inserted(i);
}

void ListModel::showHeads(const std::vector<std::string>& heads) {
    QStringList texts;
    for (const std::string& head : heads) texts += toQString(head);
    if (texts.size() != look_.Columns.size()) {
        beginResetModel();
        look_.Columns = texts;
        endResetModel();
        return;
    }
    look_.Columns = texts;
    if (!texts.isEmpty()) Q_EMIT headerDataChanged(Qt::Horizontal, 0, static_cast<int>(texts.size()) - 1);
}

// ---- Following the list

void ListModel::inserted(int index) {
    if (sorted_) {
        put(list_.ListItems(index));
        return;
    }
    beginInsertRows({}, index - 1, index - 1);
    ++count_;
    endInsertRows();
}

void ListModel::put(ListItem& row) {
    const QString name = nameOf(row);
    const int place = placeFor(name, row);
    beginInsertRows({}, place, place);
    rows_.insert(rows_.begin() + place, &row);
    names_[&row] = name;
    ++count_;
    endInsertRows();
}

void ListModel::changed(const ListItem& row) {
    if (sorted_ && names_[&row] != nameOf(row)) {
        ListItem& moved = *rows_[static_cast<std::size_t>(placeOf(row))];
        removed(0, row);
        put(moved);
        return;
    }
    const int place = placeOf(row);
    Q_EMIT dataChanged(index(place, 0), index(place, columnCount() - 1));
}

void ListModel::removed(int index, const ListItem& row) {
    const int place = sorted_ ? placeOf(row) : index - 1;
    leaving_ = &row;
    leavingPlace_ = place;
    beginRemoveRows({}, place, place);
    leaving_ = nullptr;
    if (sorted_) {
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

QString ListModel::nameOf(const ListItem& row) const {
    const std::size_t column = list_.Sorted ? static_cast<std::size_t>(std::max(list_.SortKey.get(), 0)) : 0;
    const QString name = toQString(row.SortText(column)).toCaseFolded();
    return isLesser(row) ? BehindAll + name : name;
}

bool ListModel::before(const ListItem& one, const QString& other, const ListItem& otherRow) const {
    const QString& own = names_.at(&one);
    if (own == other) return one.StandsBefore(otherRow);
    const bool falls = list_.Sorted && list_.SortOrder == SortOrder::Descending;
    return falls ? other < own : own < other;
}

int ListModel::placeFor(const QString& name, const ListItem& row) const {
    const auto isBefore = [&](const ListItem* one, const QString& other) { return before(*one, other, row); };
    return static_cast<int>(std::lower_bound(rows_.begin(), rows_.end(), name, isBefore) - rows_.begin());
}

// What is current or selected stays so.
void ListModel::resort() {
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList old = persistentIndexList();
    std::vector<const ListItem*> kept;
    for (const QModelIndex& index : old) kept.push_back(rowAt(index.row()));
    sorted_ = isToBeSorted();
    arrange();
    QModelIndexList moved;
    for (qsizetype i = 0; i < old.size(); ++i) {
        const ListItem* row = kept[static_cast<std::size_t>(i)];
        moved += row == nullptr ? QModelIndex() : index(placeOf(*row), old[i].column());
    }
    changePersistentIndexList(old, moved);
    Q_EMIT layoutChanged();
}

void ListModel::arrange() {
    rows_.clear();
    names_.clear();
    if (!sorted_) return;
    for (int i = 1; i <= list_.ListItems.Count(); ++i) {
        ListItem& row = list_.ListItems(i);
        names_[&row] = nameOf(row);
        rows_.push_back(&row);
    }
    std::sort(rows_.begin(), rows_.end(), [this](const ListItem* one, const ListItem* other) {
        return before(*one, names_.at(other), *other);
    });
}

int ListModel::placeOf(const ListItem& row) const {
    return sorted_ ? placeFor(names_.at(&row), row) : row.Index() - 1;
}

const ListItem* ListModel::rowAt(int place) const {
    if (place < 0 || place >= count_) return nullptr;
    if (sorted_) return rows_[static_cast<std::size_t>(place)];
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
    return oneLine(text, LongestText);
}

QVariant ListModel::fontOf(const ListItem& row) const {
    if (!row.Bold() && !isLesser(row)) return {};
    QFont font;
    font.setBold(row.Bold());
    font.setItalic(isLesser(row));
    return font;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const ListItem* row = index.isValid() ? rowAt(index.row()) : nullptr;
    if (row == nullptr) return {};
    const bool first = index.column() == 0;
    switch (role) {
        case Qt::DisplayRole:
            return shown(*row, index.column());
        case Qt::ToolTipRole:
            return theme::plainToolTip(row->ToolTipText().empty() ? shown(*row, index.column()).toString()
                                                                  : oneLine(row->ToolTipText(), LongestText));
        case Qt::AccessibleTextRole:
            if (!first || !row->Bold()) return {};
            return QString(shown(*row, 0).toString() + QStringLiteral(", new"));
        case Qt::DecorationRole:
            return first && look_.Icon && row->SmallIcon() != 0 ? QVariant(look_.Icon(row->SmallIcon()))
                                                                : QVariant();
        case Qt::CheckStateRole:
            if (!first || !look_.Checkable) return {};
            return row->Checked() ? Qt::Checked : Qt::Unchecked;
        case Qt::FontRole:
            return fontOf(*row);
        case Qt::ForegroundRole:
            return isLesser(*row) ? QVariant(QGuiApplication::palette().brush(QPalette::PlaceholderText))
                                  : QVariant();
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
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (look_.CarriesNicks && index.isValid()) flags |= Qt::ItemIsDragEnabled;
    return look_.Checkable && index.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
}

bool ListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    ListItem* row = item(index);
    if (row == nullptr || role != Qt::CheckStateRole) return false;
    list_.userTicks(*row, value.toInt() == Qt::Checked);
    return true;
}

QMimeData* ListModel::mimeData(const QModelIndexList& indexes) const {
    const ListItem* row = look_.CarriesNicks && !indexes.isEmpty() ? item(indexes.first()) : nullptr;
    return row == nullptr ? nullptr : carryNick(row->Key());
}

}  // namespace talvora
