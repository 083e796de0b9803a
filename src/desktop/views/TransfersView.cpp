#include "desktop/views/TransfersView.h"

#include <QHeaderView>
#include <QShortcut>
#include <QVBoxLayout>
#include <array>

#include "desktop/Follow.h"
#include "desktop/ListTree.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"
#include "desktop/views/TransferButtons.h"

namespace talvora {

namespace {

constexpr QSize TransfersSize{700, 320};
constexpr std::array<int, 3> TransferColumns = {230, 110, 190};

}  // namespace

TransfersView::TransfersView(frmTransfers& form, const ViewSite& site)
    : FormView(form, site, "Transfers", TransfersSize), form_(form) {
    setWindowIcon(theme::icon(QStringLiteral("file-in")));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(transferButton(on_, form_.Command1, QKeySequence(QKeySequence::Open), this));
    buttons->addWidget(transferButton(on_, form_.Command2, QKeySequence(Qt::ALT | Qt::Key_F), this));
    buttons->addStretch(1);
    buttons->addWidget(transferButton(on_, form_.Command3, QKeySequence(), this));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addWidget(makeList(), 1);
    rows->addLayout(buttons);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

QWidget* TransfersView::makeList() {
    ListModel::Look look;
    look.Icon = picturesOf(Pictures::Transfers);
    auto* list = new ListTree(form_.ListView1, look, tr("File transfers"), this);
    for (std::size_t column = 0; column < TransferColumns.size(); ++column)
        list->header()->resizeSection(static_cast<int>(column), TransferColumns[column]);
    follow(on_, form_.lblNone.Caption,
           [list](const std::string& text) { list->setEmptyText(toQString(text)); });
    return list;
}

}  // namespace talvora
