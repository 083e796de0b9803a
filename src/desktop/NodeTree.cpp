#include "desktop/NodeTree.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>
#include <utility>

#include "desktop/Hands.h"

namespace talvora {

NodeTree::NodeTree(TreeView& tree, TreeModel::IconOf iconOf, const QString& accessibleName, QWidget* parent)
    : QTreeView(parent), tree_(tree), model_(tree, std::move(iconOf)) {
    setModel(&model_);
    setAccessibleName(accessibleName);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(true);
    connect(this, &QTreeView::doubleClicked, this, [this] {
        if (tree_.SelectedItem != nullptr) tree_.DblClick.raise();
    });
    followFolding();
    on_ += tree_.Nodes.Clearing.connect([this] { remember(); });
}

void NodeTree::followFolding() {
    const auto show = [this](const Node& node) {
        byCode_ = true;
        setExpanded(model_.indexOf(node), node.Expanded());
        byCode_ = false;
    };
    for (int i = 1; i <= tree_.Nodes.Count(); ++i) show(tree_.Nodes(i));
    on_ += tree_.Nodes.NodeExpanded.connect([show](Node& node) { show(node); });
    // A node that has been unfolded before it had children is unfolded for the toolkit with its first.
    on_ += tree_.Nodes.NodeAdded.connect([show](Node& node) {
        if (node.Place() == 1 && node.Parent() != nullptr && node.Parent()->Expanded()) show(*node.Parent());
    });
    const auto fold = [this](const QModelIndex& index, bool open) {
        if (!byCode_) TreeModel::node(index)->SetExpanded(open);
    };
    connect(this, &QTreeView::expanded, this, [fold](const QModelIndex& index) { fold(index, true); });
    connect(this, &QTreeView::collapsed, this, [fold](const QModelIndex& index) { fold(index, false); });
}

// ---- A tree that is filled anew

void NodeTree::remember() {
    if (scroll_ >= 0) return;
    scroll_ = verticalScrollBar()->value();
    selected_ = currentIndex().isValid() ? TreeModel::node(currentIndex())->Key() : std::string();
    QTimer::singleShot(0, this, [this] { restore(); });
}

void NodeTree::restore() {
    byCode_ = true;
    for (int i = 1; i <= tree_.Nodes.Count() && !selected_.empty(); ++i) {
        Node& node = tree_.Nodes(i);
        if (node.Key() != selected_) continue;
        tree_.SelectedItem = &node;
        setCurrentIndex(model_.indexOf(node));
        break;
    }
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scroll_);
    scroll_ = -1;
    byCode_ = false;
}

// ---- Hands

void NodeTree::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    // The toolkit moves the current node by itself too; that is no click.
    if (current.isValid() && hasFocus() && !byCode_) tree_.userClicks(*TreeModel::node(current));
}

void NodeTree::focusInEvent(QFocusEvent* event) {
    byCode_ = true;
    QTreeView::focusInEvent(event);
    byCode_ = false;
}

QPoint NodeTree::menuPlace() const {
    return viewport()->mapToGlobal(visualRect(currentIndex()).center());
}

void NodeTree::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    const QPoint at = event->position().toPoint();
    Node* node = TreeModel::node(indexAt(at));
    if (node == nullptr) return;
    if (tree_.SelectedItem != node) tree_.userClicks(*node);
    // The menu of the right button waits for contextMenuEvent, which the keyboard raises too.
    if (event->button() == Qt::RightButton) return;
    tree_.MouseUp.raise(numberOf(event->button()), shiftOf(event->modifiers()), at.x(), at.y());
}

void NodeTree::contextMenuEvent(QContextMenuEvent* event) {
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const QPoint at = byMouse ? event->pos() : visualRect(currentIndex()).center();
    Node* node = TreeModel::node(indexAt(at));
    if (node == nullptr) return;
    tree_.userClicks(*node);
    event->accept();
    tree_.MouseUp.raise(numberOf(Qt::RightButton), shiftOf(event->modifiers()), at.x(), at.y());
}

void NodeTree::keyPressEvent(QKeyEvent* event) {
    Node* node = TreeModel::node(currentIndex());
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || node == nullptr) {
        QTreeView::keyPressEvent(event);
        return;
    }
    tree_.userClicks(*node);
    if (tree_.SelectedItem == node) tree_.DblClick.raise();
}

}  // namespace talvora
