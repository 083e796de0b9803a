#pragma once
// The nodes of a TreeView for the toolkit's views: all, or those with a key whose names hold a text, and what
// they stand below.

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/TreeView.h"

namespace talvora {

class TreeModel final : public QAbstractItemModel {
  public:
    using IconOf = std::function<QIcon(int image)>;
    using NickOf = std::function<std::string(const Node&)>;

    // Of a node without a key: how many with one are shown below it, folded or not.
    static constexpr int CountRole = Qt::UserRole;

    TreeModel(TreeView& tree, IconOf iconOf);

    // Null for an index of no node.
    static Node* node(const QModelIndex& index);
    // None for a node that is not shown.
    QModelIndex indexOf(const Node& node) const;

    // An empty text shows all.
    void setFilter(const std::string& text);
    bool isFiltered() const { return !filter_.empty(); }
    // The first node with a key that is found; none without a filter.
    QModelIndex firstFound() const;

    // Makes nodes with a key something that can be dragged away.
    void carryNicks(NickOf nickOf) { nickOf_ = std::move(nickOf); }
    // Of such a node.
    std::optional<std::string> nickAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

  private:
    // A node that the filter lets through.
    struct Found {
        int place = 0;  // among what is shown, counted from 0
        int keys = 0;   // nodes with a key that are shown below it
        std::vector<Node*> children;
    };

    void arranged();
    void find();
    const std::vector<Node*>& foundBelow(const QModelIndex& parent) const;
    int countOf(const Node& group) const;
    QString accessibleText(const Node& shown) const;

    TreeView& tree_;
    IconOf iconOf_;
    NickOf nickOf_;
    std::string filter_;
    std::unordered_map<const Node*, Found> found_;  // while there is a filter; the roots below null
    Node* firstFound_ = nullptr;
    Subscriptions on_;
};

}  // namespace talvora
