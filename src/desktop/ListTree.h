#pragma once
// The widget of a ListView: rows with an icon, columns and perhaps check boxes. It passes the user's hands on
// to the model.

#include <QTreeView>

#include "desktop/ListModel.h"

namespace talvora {

class ListTree final : public QTreeView {
  public:
    ListTree(ListView& list, const ListModel::Look& look, const QString& accessibleName,
             QWidget* parent = nullptr);

    // What stands in the list while it has no rows.
    void setEmptyText(const QString& text) {
        emptyText_ = text;
        viewport()->update();
    }
    // Null where there is none; a place of the viewport.
    const ListItem* rowAt(QPoint at) const { return model_.item(indexAt(at)); }
    // Where a menu that the keyboard opens belongs, on the screen.
    QPoint menuPlace() const;
    // Shows at once what would be shown a little later.
    void settle() { model_.settle(); }

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void raiseMouseUp(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint at);
    void open();
    void followHeads(bool clickable);
    void showSorting();
    void showRefreshed();

    ListView& list_;
    ListModel model_;
    QString emptyText_;
    bool byCode_ = false;  // what is made current now is no click
    int scroll_ = 0;       // of before a refresh
    Subscriptions on_;
};

}  // namespace talvora
