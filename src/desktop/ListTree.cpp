#include "desktop/ListTree.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include "desktop/EmptyText.h"
#include "desktop/Hands.h"

namespace talvora {

ListTree::ListTree(ListView& list, const ListModel::Look& look, const QString& accessibleName,
                   QWidget* parent)
    : QTreeView(parent), list_(list), model_(list, look) {
    setModel(&model_);
    setAccessibleName(accessibleName);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideRight);
    setHeaderHidden(model_.columnCount() == 1);
    if (look.CarriesNicks) setDragEnabled(true);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    connect(this, &QTreeView::doubleClicked, this, [this] { open(); });
    on_ += list_.Refreshing.connect([this] {
        byCode_ = true;
        setAutoScroll(false);
        scroll_ = verticalScrollBar()->value();
    });
    on_ += list_.Refreshed.connect([this] { showRefreshed(); });
    followHeads(look.ClickableHeads);
}

void ListTree::followHeads(bool clickable) {
    header()->setSectionsClickable(clickable);
    if (!clickable) return;
    connect(header(), &QHeaderView::sectionClicked, this,
            [this](int head) { list_.ColumnClick.raise(head + 1); });
    showSorting();
    on_ += list_.Sorted.Changed.connect([this](bool) { showSorting(); });
    on_ += list_.InOrder.Changed.connect([this](bool) { showSorting(); });
    on_ += list_.SortKey.Changed.connect([this](int) { showSorting(); });
    on_ += list_.SortOrder.Changed.connect([this](SortOrder) { showSorting(); });
}

void ListTree::showSorting() {
    header()->setSortIndicatorShown(list_.Sorted || list_.InOrder);
    header()->setSortIndicator(
        list_.SortKey, list_.SortOrder == SortOrder::Ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void ListTree::showRefreshed() {
    setCurrentIndex(list_.SelectedItem == nullptr ? QModelIndex() : model_.indexOf(*list_.SelectedItem));
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scroll_);
    setAutoScroll(true);
    byCode_ = false;
}

void ListTree::open() {
    if (list_.SelectedItem != nullptr) list_.DblClick.raise();
}

void ListTree::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    ListItem* row = model_.item(current);
    // The toolkit moves the current row by itself when it goes; that is no click.
    if (row != nullptr && hasFocus() && !byCode_) list_.userClicks(*row);
}

// The toolkit makes a row current so that the keyboard has a place; that is no click either.
void ListTree::focusInEvent(QFocusEvent* event) {
    byCode_ = true;
    QTreeView::focusInEvent(event);
    byCode_ = false;
}

QPoint ListTree::menuPlace() const {
    return viewport()->mapToGlobal(visualRect(currentIndex()).center());
}

void ListTree::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    ListItem* row = model_.item(indexAt(event->position().toPoint()));
    if (row == nullptr) return;
    if (list_.SelectedItem != row) list_.userClicks(*row);
    // The menu of the right button waits for contextMenuEvent, which the keyboard raises too.
    if (event->button() == Qt::RightButton) return;
    raiseMouseUp(event->button(), event->modifiers(), event->position().toPoint());
}

void ListTree::contextMenuEvent(QContextMenuEvent* event) {
    const QPoint at =
        event->reason() == QContextMenuEvent::Mouse ? event->pos() : visualRect(currentIndex()).center();
    ListItem* row = model_.item(indexAt(at));
    if (row == nullptr) return;
    list_.userClicks(*row);
    event->accept();
    raiseMouseUp(Qt::RightButton, event->modifiers(), at);
}

void ListTree::raiseMouseUp(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint at) {
    list_.MouseUp.raise(numberOf(button), shiftOf(modifiers), at.x(), at.y());
}

void ListTree::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QTreeView::keyPressEvent(event);
        return;
    }
    ListItem* row = model_.item(currentIndex());
    if (row == nullptr) return;
    list_.userClicks(*row);
    open();
}

void ListTree::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() == 0) paintEmptyText(*viewport(), emptyText_);
}

}  // namespace talvora
