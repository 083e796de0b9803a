#include "desktop/NodeTree.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <utility>

#include "desktop/EmptyText.h"
#include "desktop/Hands.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

// The number of a group stands at the end of its row, where numbers can be compared at a glance.
class CountDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const QString count = index.data(TreeModel::CountRole).toString();
        if (count.isEmpty()) return;
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        painter->setFont(option.font);
        painter->setPen(
            option.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
        painter->drawText(option.rect.adjusted(0, 0, -theme::Medium, 0), Qt::AlignRight | Qt::AlignVCenter,
                          count);
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const QString count = index.data(TreeModel::CountRole).toString();
        if (count.isEmpty()) return;
        const int taken = option->decorationSize.width() + 4 * theme::Medium;
        const int room = option->rect.width() - taken - option->fontMetrics.horizontalAdvance(count);
        option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight, room);
    }
};

}  // namespace

NodeTree::NodeTree(TreeView& tree, TreeModel::IconOf iconOf, const QString& accessibleName, QWidget* parent)
    : QTreeView(parent), tree_(tree), model_(tree, std::move(iconOf)) {
    setModel(&model_);
    setAccessibleName(accessibleName);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(true);
    setItemDelegate(new CountDelegate(this));
    connect(this, &QTreeView::doubleClicked, this, [this] {
        if (tree_.SelectedItem != nullptr) tree_.DblClick.raise();
    });
    followFolding();
}

void NodeTree::show(const Node& node, bool open) {
    byCode_ = true;
    setExpanded(model_.indexOf(node), open);
    byCode_ = false;
}

// For the toolkit a node without children is not unfolded, whatever it has been told.
void NodeTree::showFolding() {
    for (int i = 1; i <= tree_.Nodes.Count(); ++i) {
        const Node& node = tree_.Nodes(i);
        if (node.Children() == 0) continue;
        const QModelIndex index = model_.indexOf(node);
        const bool open = node.Expanded() || model_.isFiltered();
        if (index.isValid() && open != isExpanded(index)) show(node, open);
    }
}

void NodeTree::followFolding() {
    showFolding();
    on_ += tree_.Nodes.NodeExpanded.connect([this](Node& node) {
        if (!model_.isFiltered()) show(node, node.Expanded());
    });
    on_ += tree_.Nodes.Arranged.connect([this] { showFolding(); });
    const auto fold = [this](const QModelIndex& index, bool open) {
        if (!byCode_ && !model_.isFiltered()) TreeModel::node(index)->SetExpanded(open);
    };
    connect(this, &QTreeView::expanded, this, [fold](const QModelIndex& index) { fold(index, true); });
    connect(this, &QTreeView::collapsed, this, [fold](const QModelIndex& index) { fold(index, false); });
}

void NodeTree::carryNicks(TreeModel::NickOf nickOf) {
    model_.carryNicks(std::move(nickOf));
    setDragEnabled(true);
}

void NodeTree::takeFiles(TakeFiles take) {
    talvora::takeFiles(*viewport(), std::move(take),
                       [this](QPoint at) { return model_.nickAt(indexAt(at)); });
}

void NodeTree::setFilter(const QString& text) {
    byCode_ = true;
    collapseAll();  // the toolkit would remember for good each unfolded node that is hidden now
    model_.setFilter(fromQString(text));
    showFolding();
    byCode_ = true;
    if (model_.isFiltered()) setCurrentIndex(model_.firstFound());
    byCode_ = false;
    if (currentIndex().isValid()) scrollTo(currentIndex());
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
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || !currentIndex().isValid()) {
        QTreeView::keyPressEvent(event);
        return;
    }
    openCurrent();
}

void NodeTree::openCurrent() {
    Node* node = TreeModel::node(currentIndex());
    if (node == nullptr) return;
    tree_.userClicks(*node);
    if (tree_.SelectedItem == node) tree_.DblClick.raise();
}

void NodeTree::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() == 0) paintEmptyText(*viewport(), emptyText_);
}

}  // namespace talvora
