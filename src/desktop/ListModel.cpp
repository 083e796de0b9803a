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
constexpr int MostSingle = 50;            // rows that come to a sorted list one by one, until a pause
constexpr int TogetherAfter = 33;         // milliseconds

}  // namespace

ListModel::ListModel(ListView& list, Look look)
    : list_(list), look_(std::move(look)), sorted_(isToBeSorted()) {
    ListItems& rows = list.ListItems;
    on_ += rows.RowInserted.connect([this](int index) { inserted(index); });
    on_ += rows.RowChanged.connect([this](const ListItem& row) { changed(row); });
    on_ += rows.RowRemoved.connect([this](int index, const ListItem& row) { removed(index, row); });
    on_ += rows.Cleared.connect([this] { cleared(); });
    on_ += list.Refreshed.connect([this] { settle(); });
    on_ += list.Sorted.Changed.connect([this](bool) { resort(); });
    on_ += list.SortKey.Changed.connect([this](int) { resort(); });
    on_ += list.SortOrder.Changed.connect([this](SortOrder) { resort(); });
    on_ += list.ColumnHeaders.Changed.connect(
        [this](const std::vector<std::string>& heads) { showHeads(heads); });
    if (!list.ColumnHeaders.get().empty()) showHeads(list.ColumnHeaders);
    together_.setSingleShot(true);
    together_.setInterval(TogetherAfter);
    connect(&together_, &QTimer::timeout, this, [this] { settle(); });
    count_ = rows.Count();
    arrange();
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
        ListItem& row = list_.ListItems(index);
        if (!together_.isActive()) together_.start();
        // One that comes in the middle of the list does not belong behind those that wait.
        if (index < list_.ListItems.Count()) settle();
        if (coming_.empty() && ++single_ <= MostSingle) return put(row);
        coming_.push_back(&row);
        return;
    }
    beginInsertRows({}, index - 1, index - 1);
    ++count_;
    endInsertRows();
}

void ListModel::put(ListItem& row) {
    const Named& entry = note(row);
    const int place = placeFor(entry);
    beginInsertRows({}, place, place);
    rows_.insert(rows_.begin() + place, &entry);
    ++count_;
    endInsertRows();
}

const ListModel::Named& ListModel::note(ListItem& row) {
    return names_[&row] = {&row, nameOf(row)};
}

void ListModel::changed(const ListItem& row) {
    if (isComing(row)) return;
    if (sorted_ && names_.at(&row).Name != nameOf(row)) {
        ListItem& moved = *names_.at(&row).Row;
        removed(0, row);
        put(moved);
        return;
    }
    const int place = placeOf(row);
    Q_EMIT dataChanged(index(place, 0), index(place, columnCount() - 1));
}

void ListModel::removed(int index, const ListItem& row) {
    if (isComing(row)) return forgetComing(row);
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
    coming_.clear();
    count_ = 0;
    endResetModel();
}

// ---- Very many rows

void ListModel::forgetComing(const ListItem& row) {
    const auto isBefore = [](const ListItem* one, const ListItem* other) {
        return one->StandsBefore(*other);
    };
    coming_.erase(std::lower_bound(coming_.begin(), coming_.end(), &row, isBefore));
}

void ListModel::settle() {
    single_ = 0;
    const int first = count_;
    appendComing();
    if (first == 0 || first == count_) return;
    const auto isBefore = [this](const Named* one, const Named* other) { return before(*one, *other); };
    const auto middle = rows_.begin() + first;
    if (isBefore(middle[-1], *middle)) return;
    keepPlaces([&] { std::inplace_merge(rows_.begin(), middle, rows_.end(), isBefore); });
}

// Behind the others, in order among themselves.
void ListModel::appendComing() {
    if (coming_.empty()) return;
    const std::vector<const Named*> entries = takeComing();
    beginInsertRows({}, count_, count_ + static_cast<int>(entries.size()) - 1);
    rows_.insert(rows_.end(), entries.begin(), entries.end());
    count_ = static_cast<int>(rows_.size());
    endInsertRows();
}

std::vector<const ListModel::Named*> ListModel::takeComing() {
    std::vector<const Named*> entries;
    entries.reserve(coming_.size());
    names_.reserve(names_.size() + coming_.size());
    for (ListItem* row : coming_) entries.push_back(&note(*row));
    coming_.clear();
    std::sort(entries.begin(), entries.end(),
              [this](const Named* one, const Named* other) { return before(*one, *other); });
    return entries;
}

// ---- Places

QString ListModel::nameOf(const ListItem& row) const {
    const std::size_t column = list_.Sorted ? static_cast<std::size_t>(std::max(list_.SortKey.get(), 0)) : 0;
    const QString name = toQString(row.SortText(column)).toCaseFolded();
    return isLesser(row) ? BehindAll + name : name;
}

bool ListModel::before(const Named& one, const Named& other) const {
    const int order = QString::compare(one.Name, other.Name);
    if (order == 0) return one.Row->StandsBefore(*other.Row);
    const bool falls = list_.Sorted && list_.SortOrder == SortOrder::Descending;
    return falls ? order > 0 : order < 0;
}

int ListModel::placeFor(const Named& entry) const {
    const auto isBefore = [this](const Named* one, const Named& other) { return before(*one, other); };
    return static_cast<int>(std::lower_bound(rows_.begin(), rows_.end(), entry, isBefore) - rows_.begin());
}

void ListModel::resort() {
    appendComing();
    keepPlaces([this] {
        sorted_ = isToBeSorted();
        arrange();
    });
}

// What is current or selected stays so while the rows are put into another order.
void ListModel::keepPlaces(const std::function<void()>& move) {
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList old = persistentIndexList();
    std::vector<const ListItem*> kept;
    for (const QModelIndex& index : old) kept.push_back(rowAt(index.row()));
    move();
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
    for (int i = 1; i <= list_.ListItems.Count(); ++i) coming_.push_back(&list_.ListItems(i));
    rows_ = takeComing();
}

int ListModel::placeOf(const ListItem& row) const {
    return sorted_ ? placeFor(names_.at(&row)) : row.Index() - 1;
}

const ListItem* ListModel::rowAt(int place) const {
    if (place < 0 || place >= count_) return nullptr;
    if (sorted_) return rows_[static_cast<std::size_t>(place)]->Row;
    if (leaving_ != nullptr && place >= leavingPlace_) {
        return place == leavingPlace_ ? leaving_ : &list_.ListItems(place);
    }
    return place < list_.ListItems.Count() ? &list_.ListItems(place + 1) : nullptr;
}

ListItem* ListModel::item(const QModelIndex& index) const {
    const ListItem* row = index.isValid() ? rowAt(index.row()) : nullptr;
    return row == nullptr || row == leaving_ ? nullptr : &list_.ListItems(row->Index());
}

QModelIndex ListModel::indexOf(const ListItem& row) {
    if (isComing(row)) settle();
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
