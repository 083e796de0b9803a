#pragma once
// The widget of a TreeView, with the number of users beside each group. It passes the user's hands on to the
// model. A tree that is refreshed keeps its place on the screen, and what is selected or folded if it is
// still there. While it is filtered all is unfolded, and what hands fold then is forgotten with the filter.

#include <QTreeView>

#include "desktop/FileDrop.h"
#include "desktop/TreeModel.h"

namespace talvora {

class NodeTree final : public QTreeView {
  public:
    NodeTree(TreeView& tree, TreeModel::IconOf iconOf, const QString& accessibleName,
             QWidget* parent = nullptr);

    // Lets the nicks of users be dragged to where nicks are taken.
    void carryNicks(TreeModel::NickOf nickOf);
    // Lets files fall on users whose nicks it carries.
    void takeFiles(TakeFiles take);
    // Shows whose names hold the text, and makes the first of them current, which is no click. An empty text
    // shows all.
    void setFilter(const QString& text);
    // What stands in the tree while it shows nothing.
    void setEmptyText(const QString& text) { emptyText_ = text; }
    // As a double click on the current node.
    void openCurrent();
    // Where a menu that the keyboard opens belongs, on the screen.
    QPoint menuPlace() const;

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void followFolding();
    void show(const Node& node, bool open);
    void showFolding();

    TreeView& tree_;
    TreeModel model_;
    QString emptyText_;
    bool byCode_ = false;  // what happens to the widget now is no hand's doing
    Subscriptions on_;
};

}  // namespace talvora
