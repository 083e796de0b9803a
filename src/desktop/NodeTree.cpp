#include "desktop/NodeTree.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
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
}

void NodeTree::followFolding() {
    const auto show = [this](const Node& node) {
        byCode_ = true;
        setExpanded(model_.indexOf(node), node.Expanded());
        byCode_ = false;
    };
    // For the toolkit a node without children is not unfolded, whatever it has been told.
    const auto showAll = [this, show] {
        for (int i = 1; i <= tree_.Nodes.Count(); ++i) {
            const Node& node = tree_.Nodes(i);
            if (node.Children() != 0 && node.Expanded() != isExpanded(model_.indexOf(node))) show(node);
        }
    };
    showAll();
    on_ += tree_.Nodes.NodeExpanded.connect([show](Node& node) { show(node); });
    on_ += tree_.Nodes.Arranged.connect(showAll);
    const auto fold = [this](const QModelIndex& index, bool open) {
        if (!byCode_) TreeModel::node(index)->SetExpanded(open);
    };
    connect(this, &QTreeView::expanded, this, [fold](const QModelIndex& index) { fold(index, true); });
    connect(this, &QTreeView::collapsed, this, [fold](const QModelIndex& index) { fold(index, false); });
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
