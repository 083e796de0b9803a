#include "desktop/views/SelectUserView.h"

#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Theme.h"
#include "desktop/views/UserListTree.h"

namespace talvora {

SelectUserView::SelectUserView(frmSelectUser& form, const ViewSite& site)
    : FormView(form, site, "SelectUser", {300, 380}) {
    setWindowIcon(theme::icon(QStringLiteral("person")));
    auto* label = new QLabel(this);
    label->setWordWrap(true);
    attach(on_, form.Label1, *label);
    ListTree* users = makeUserListTree(form.UserList1, tr("Users"), this);
    users->setEmptyText(tr("Nobody is known yet."));
    auto* choose = new QPushButton(this);
    attach(on_, form.Command1, *choose);
    auto* cancel = new QPushButton(this);
    attach(on_, form.Command2, *cancel);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, cancel,
            [cancel] { cancel->click(); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(choose);
    buttons->addWidget(cancel);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addWidget(label);
    rows->addWidget(users, 1);
    rows->addLayout(buttons);
    users->setFocus();
}

}  // namespace talvora
