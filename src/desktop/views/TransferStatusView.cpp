#include "desktop/views/TransferStatusView.h"

#include <QVBoxLayout>

#include "desktop/Theme.h"
#include "desktop/views/TransferButtons.h"
#include "desktop/views/TransferPanel.h"

namespace talvora {

namespace {

constexpr QSize StatusSize{440, 220};

}  // namespace

TransferStatusView::TransferStatusView(frmTransferStatus& form, const ViewSite& site)
    : FormView(form, site, "SendStatus", StatusSize) {
    setWindowIcon(theme::icon(QStringLiteral("file-out")));
    auto* panel =
        new TransferPanel({form, form.Label2, form.Label4, form.Label5, form.Meter}, site.Face, this);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(transferButton(on_, form.Command2, QKeySequence(Qt::ALT | Qt::Key_R), this));
    buttons->addWidget(transferButton(on_, form.Command1, QKeySequence(Qt::ALT | Qt::Key_A), this));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Large, theme::Large, theme::Large, theme::Large);
    rows->setSpacing(theme::Large);
    rows->addWidget(panel, 1);
    rows->addLayout(buttons);
}

}  // namespace talvora
