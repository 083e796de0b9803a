#include "desktop/views/SendFileView.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/FileDrop.h"
#include "desktop/Theme.h"
#include "desktop/views/TransferButtons.h"

namespace talvora {

namespace {

constexpr QSize SendFileSize{440, 380};

}  // namespace

SendFileView::SendFileView(frmSendFile& form, const ViewSite& site)
    : FormView(form, site, "SendFile", SendFileSize), form_(form) {
    setWindowIcon(theme::icon(QStringLiteral("file-out")));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Large, theme::Large, theme::Large, theme::Large);
    rows->setSpacing(theme::Large);
    rows->addWidget(makeMachine());
    rows->addWidget(makeFiles(), 1);
    rows->addLayout(makeButtons());
    takeFiles(
        *this, [&form](const std::string&, const std::vector<std::string>& paths) { form.AddFiles(paths); },
        [](QPoint) { return std::optional<std::string>(""); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

QWidget* SendFileView::makeMachine() {
    auto* frame = new QGroupBox(tr("Remote machine"), this);
    auto* row = new QFormLayout(frame);
    row->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    auto* address = new QComboBox(frame);
    address->setAccessibleName(tr("IP / Host name"));
    attach(on_, form_.Text1, *address);
    auto* label = new QLabel(frame);
    label->setBuddy(address);
    attach(on_, form_.Label1, *label);
    row->addRow(label, address);
    return frame;
}

QWidget* SendFileView::makeFiles() {
    auto* frame = new QGroupBox(tr("Send file list"), this);
    auto* list = new QListWidget(frame);
    list->setAccessibleName(tr("Send file list"));
    list->setTextElideMode(Qt::ElideMiddle);
    attach(on_, form_.List1, *list);
    QPushButton* add = button(form_.Command1, QKeySequence(QKeySequence::Open));
    QPushButton* remove = button(form_.Command2, QKeySequence());
    remove->setToolTip(QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText));
    auto* erase = new QShortcut(Qt::Key_Delete, list);
    erase->setContext(Qt::WidgetShortcut);
    connect(erase, &QShortcut::activated, remove, [remove] { remove->click(); });

    auto* side = new QVBoxLayout;
    for (QPushButton* one : {add, remove, button(form_.Command3, QKeySequence())}) side->addWidget(one);
    side->addStretch(1);
    auto* hint = new QLabel(tr("Files can be dropped here, too."), frame);
    hint->setFont(theme::smallFont());
    auto* left = new QVBoxLayout;
    left->addWidget(list, 1);
    left->addWidget(hint);
    auto* across = new QHBoxLayout(frame);
    across->addLayout(left, 1);
    across->addLayout(side);
    return frame;
}

QBoxLayout* SendFileView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    QPushButton* send = button(form_.Command4, QKeySequence(Qt::CTRL | Qt::Key_Return));
    send->setIcon(theme::icon(QStringLiteral("send")));
    row->addWidget(send);
    row->addWidget(button(form_.Command5, QKeySequence()));
    return row;
}

QPushButton* SendFileView::button(CommandButton& model, const QKeySequence& keys) {
    return transferButton(on_, model, keys, this);
}

}  // namespace talvora
