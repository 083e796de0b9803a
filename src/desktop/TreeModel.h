#pragma once
// The nodes of a TreeView for the toolkit's views.

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>

#include "platform/TreeView.h"

namespace talvora {

class TreeModel final : public QAbstractItemModel {
  public:
    using IconOf = std::function<QIcon(int image)>;

    TreeModel(TreeView& tree, IconOf iconOf);

    // Null for an index of no node.
    static Node* node(const QModelIndex& index);
    QModelIndex indexOf(const Node& node) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    void arranged();

    TreeView& tree_;
    IconOf iconOf_;
    Subscriptions on_;
};

}  // namespace talvora
