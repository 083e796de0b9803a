#include "desktop/views/ReceiveFileView.h"

#include <QAccessible>
#include <QLabel>
#include <QVBoxLayout>

#include "desktop/Follow.h"
#include "desktop/IconLabel.h"
#include "desktop/Theme.h"
#include "desktop/views/TransferButtons.h"
#include "desktop/views/TransferPanel.h"

namespace talvora {

namespace {

constexpr QSize ReceiveSize{460, 230};

}  // namespace

ReceiveFileView::ReceiveFileView(frmReceiveFile& form, const ViewSite& site)
    : FormView(form, site, "ReceiveFile", ReceiveSize), form_(form) {
    setWindowIcon(theme::icon(QStringLiteral("file-in")));
    QWidget* question = makeQuestion();
    QWidget* progress = makeProgress();
    follow(on_, form_.Picture1.Visible, [question, progress](bool asks) {
        question->setVisible(asks);
        progress->setVisible(!asks);
    });
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Large, theme::Large, theme::Large, theme::Large);
    rows->setSpacing(theme::Large);
    rows->addWidget(question, 1);
    rows->addWidget(progress, 1);
    rows->addLayout(makeButtons());
}

QWidget* ReceiveFileView::makeQuestion() {
    auto* part = new QWidget(this);
    auto* words = new QVBoxLayout;
    words->setSpacing(theme::Medium);
    const auto add = [&](Label& model, const QString& name) {
        auto* label = new QLabel(part);
        label->setWordWrap(true);
        label->setMinimumWidth(1);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        label->setAccessibleName(name);
        attach(on_, model, *label);
        words->addWidget(label);
        return label;
    };
    QLabel* question = add(form_.Label6, tr("Question"));
    add(form_.lblFrom, tr("From where, and room"));
    words->addStretch(1);
    follow(on_, form_.Picture1.Visible, [question](bool asks) {
        if (!asks) return;
        question->setFocus();
        QAccessibleEvent alert(question, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    });
    auto* picture = new IconLabel(theme::BoxIcon, part);
    picture->setIcon(theme::icon(QStringLiteral("file-in")));
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme::Large);
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addLayout(words, 1);
    return part;
}

QWidget* ReceiveFileView::makeProgress() {
    auto* part = new QWidget(this);
    auto* rows = new QVBoxLayout(part);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(theme::Medium);
    auto* stored = new QLabel(part);
    stored->setWordWrap(true);
    stored->setMinimumWidth(1);
    attach(on_, form_.lblStored, *stored);
    rows->addWidget(
        new TransferPanel({form_, form_.Label2, form_.Label4, form_.Label5, form_.Meter}, Site().Face, part),
        1);
    rows->addWidget(stored);
    return part;
}

QBoxLayout* ReceiveFileView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(transferButton(on_, form_.Command2, QKeySequence(Qt::ALT | Qt::Key_C), this));
    row->addWidget(transferButton(on_, form_.Command1, QKeySequence(Qt::ALT | Qt::Key_A), this));
    return row;
}

}  // namespace talvora
