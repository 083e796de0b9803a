#include "desktop/views/UserTreeArea.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "desktop/NodeTree.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"

namespace talvora {

UserTreeArea::UserTreeArea(UserTree& users, QWidget* parent)
    : QWidget(parent),
      box_(new QLineEdit(this)),
      tree_(new NodeTree(users.TreeView1, picturesOf(Pictures::Users), tr("Users on line"), this)) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, theme::Small, 0, 0);
    rows->setSpacing(theme::Small);
    box_->setPlaceholderText(tr("Find a nick"));
    box_->setAccessibleName(tr("Find a nick"));
    box_->setClearButtonEnabled(true);
    box_->addAction(theme::icon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    box_->installEventFilter(this);
    rows->addWidget(box_);
    tree_->carryNicks(UserTree::NickOf);
    tree_->setEmptyText(tr("Nobody on line is called so."));
    rows->addWidget(tree_, 1);
    connect(box_, &QLineEdit::textChanged, this, [this](const QString& text) { tree_->setFilter(text); });
}

void UserTreeArea::startFinding() {
    box_->setFocus(Qt::ShortcutFocusReason);
    box_->selectAll();
}

void UserTreeArea::takeFiles(TakeFiles take) {
    tree_->takeFiles(std::move(take));
}

bool UserTreeArea::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && keyInBox(static_cast<QKeyEvent*>(event)->key())) return true;
    return QWidget::eventFilter(watched, event);
}

bool UserTreeArea::keyInBox(int key) {
    switch (key) {
        case Qt::Key_Down:
            tree_->setFocus(Qt::TabFocusReason);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!box_->text().isEmpty()) tree_->openCurrent();
            return true;
        case Qt::Key_Escape:
            if (box_->text().isEmpty()) return false;
            box_->clear();
            return true;
        default:
            return false;
    }
}

}  // namespace talvora
