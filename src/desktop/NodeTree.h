#pragma once
// The widget of a TreeView. It passes the user's hands on to the model. A tree that is refreshed keeps
// its place on the screen, and what is selected or folded if it is still there.

#include <QTreeView>

#include "desktop/TreeModel.h"

namespace talvora {

class NodeTree final : public QTreeView {
  public:
    NodeTree(TreeView& tree, TreeModel::IconOf iconOf, const QString& accessibleName,
             QWidget* parent = nullptr);

    // Where a menu that the keyboard opens belongs, on the screen.
    QPoint menuPlace() const;

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

  private:
    void followFolding();

    TreeView& tree_;
    TreeModel model_;
    bool byCode_ = false;  // what happens to the widget now is no hand's doing
    Subscriptions on_;
};

}  // namespace talvora
