#include "desktop/TreeModel.h"

#include <utility>

#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr std::size_t LongestNode = 300;  // that a node shows

}  // namespace

TreeModel::TreeModel(TreeView& tree, IconOf iconOf) : tree_(tree), iconOf_(std::move(iconOf)) {
    Nodes& nodes = tree.Nodes;
    on_ += nodes.Arranging.connect([this] { Q_EMIT layoutAboutToBeChanged(); });
    on_ += nodes.Arranged.connect([this] { arranged(); });
    on_ += nodes.NodeChanged.connect(
        [this](const Node& node) { Q_EMIT dataChanged(indexOf(node), indexOf(node)); });
}

// However much has come, gone and moved: the views lay themselves out once.
void TreeModel::arranged() {
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
    return createIndex(node.Place() - 1, 0, &node);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    const Node& node = parent.isValid() ? TreeModel::node(parent)->Child(row + 1) : tree_.Nodes.Root(row + 1);
    return createIndex(row, column, &node);
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
    const Node* above = index.isValid() ? node(index)->Parent() : nullptr;
    return above != nullptr ? indexOf(*above) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
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
        case Qt::DecorationRole:
            return iconOf_ && shown.Image() != 0 ? QVariant(iconOf_(shown.Image())) : QVariant();
        default:
            return {};
    }
}

}  // namespace talvora
