#include "desktop/TreeModel.h"

#include <utility>

#include "desktop/NickDrag.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::size_t LongestNode = 300;  // that a node shows

}  // namespace

TreeModel::TreeModel(TreeView& tree, IconOf iconOf) : tree_(tree), iconOf_(std::move(iconOf)) {
    Nodes& nodes = tree.Nodes;
    on_ += nodes.Arranging.connect([this] { Q_EMIT layoutAboutToBeChanged(); });
    on_ += nodes.Arranged.connect([this] { arranged(); });
    on_ += nodes.NodeChanged.connect([this](const Node& node) {
        const QModelIndex index = indexOf(node);
        if (index.isValid()) Q_EMIT dataChanged(index, index);
    });
}

// However much has come, gone and moved: the views lay themselves out once.
void TreeModel::arranged() {
    find();
    for (const QModelIndex& index : persistentIndexList()) {
        const Node& shown = *node(index);
        changePersistentIndex(index, shown.Place() != 0 ? indexOf(shown) : QModelIndex());
    }
    Q_EMIT layoutChanged();
}

Node* TreeModel::node(const QModelIndex& index) {
    return static_cast<Node*>(index.internalPointer());
}

QModelIndex TreeModel::indexOf(const Node& node) const {
    if (!isFiltered()) return createIndex(node.Place() - 1, 0, &node);
    const auto found = found_.find(&node);
    return found == found_.end() ? QModelIndex() : createIndex(found->second.place, 0, &node);
}

// ---- The filter

void TreeModel::setFilter(const std::string& text) {
    if (text == filter_) return;
    Q_EMIT layoutAboutToBeChanged();
    filter_ = text;
    arranged();
}

QModelIndex TreeModel::firstFound() const {
    return firstFound_ == nullptr ? QModelIndex() : indexOf(*firstFound_);
}

void TreeModel::find() {
    found_.clear();
    firstFound_ = nullptr;
    if (!isFiltered()) return;
    const Nodes& nodes = tree_.Nodes;
    for (int i = nodes.Count(); i > 0; --i) {
        Node& node = nodes(i);
        const bool itself = !node.Key().empty() && InStr(node.Name(), filter_, Compare::Text) != 0;
        if (itself) firstFound_ = &node;
        if (!itself && !found_.contains(&node)) continue;
        const int below = found_[&node].keys;
        found_[node.Parent()].keys += below + (itself ? 1 : 0);
    }
    for (int i = 1; i <= nodes.Count(); ++i) {
        const auto found = found_.find(&nodes(i));
        if (found == found_.end()) continue;
        std::vector<Node*>& siblings = found_[nodes(i).Parent()].children;
        found->second.place = static_cast<int>(siblings.size());
        siblings.push_back(&nodes(i));
    }
}

const std::vector<Node*>& TreeModel::foundBelow(const QModelIndex& parent) const {
    static const std::vector<Node*> none;
    const auto found = found_.find(parent.isValid() ? node(parent) : nullptr);
    return found == found_.end() ? none : found->second.children;
}

// ---- What the toolkit asks

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    if (isFiltered()) return createIndex(row, column, foundBelow(parent)[static_cast<std::size_t>(row)]);
    const Node& node = parent.isValid() ? TreeModel::node(parent)->Child(row + 1) : tree_.Nodes.Root(row + 1);
    return createIndex(row, column, &node);
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
    const Node* above = index.isValid() ? node(index)->Parent() : nullptr;
    return above != nullptr ? indexOf(*above) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
    if (isFiltered()) return static_cast<int>(foundBelow(parent).size());
    return parent.isValid() ? node(parent)->Children() : tree_.Nodes.Roots();
}

int TreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Node& shown = *node(index);
    switch (role) {
        case Qt::DisplayRole:
            return oneLine(shown.Text(), LongestNode);
        case Qt::ToolTipRole:
            return theme::plainToolTip(oneLine(shown.Text(), LongestNode));
        case Qt::AccessibleTextRole:
            return accessibleText(shown);
        case CountRole:
            return shown.Key().empty() ? QVariant(countOf(shown)) : QVariant();
        case Qt::DecorationRole:
            return iconOf_ && shown.Image() != 0 ? QVariant(iconOf_(shown.Image())) : QVariant();
        default:
            return {};
    }
}

int TreeModel::countOf(const Node& group) const {
    const auto found = found_.find(&group);
    return found == found_.end() ? group.KeysBelow() : found->second.keys;
}

QString TreeModel::accessibleText(const Node& shown) const {
    const QString text = oneLine(shown.Text(), LongestNode);
    return shown.Key().empty() ? tr("%1, %n users", nullptr, countOf(shown)).arg(text) : text;
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    return nickAt(index) ? flags | Qt::ItemIsDragEnabled : flags;
}

std::optional<std::string> TreeModel::nickAt(const QModelIndex& index) const {
    if (!nickOf_ || !index.isValid() || node(index)->Key().empty()) return std::nullopt;
    return nickOf_(*node(index));
}

QMimeData* TreeModel::mimeData(const QModelIndexList& indexes) const {
    const auto nick = indexes.isEmpty() ? std::nullopt : nickAt(indexes.first());
    return nick ? carryNick(*nick) : nullptr;
}

}  // namespace talvora
