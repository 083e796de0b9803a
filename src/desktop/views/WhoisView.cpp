#include "desktop/views/WhoisView.h"

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr QSize WhoisSize{480, 420};

QLabel* copyable(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

}  // namespace

WhoisView::WhoisView(frmWhois& form, const ViewSite& site) : FormView(form, site, "Whois", WhoisSize) {
    setWindowIcon(theme::icon(QStringLiteral("person")));
    auto* fields = new QFormLayout;
    fields->setHorizontalSpacing(theme::Large);
    fields->setVerticalSpacing(theme::Medium);
    addRow(*fields, tr("Nickname :"), form.lblNick);
    addRow(*fields, tr("Location :"), form.lblLocation);
    addRow(*fields, tr("Access point :"), form.lblAP);
    addRow(*fields, tr("Address :"), form.lblAddr);
    addRow(*fields, tr("Channels :"), form.lblChans);
    addRow(*fields, tr("Server :"), form.lblServer);
    addRow(*fields, tr("User Away :"), form.lblAway);
    addRow(*fields, tr("Idle time :"), form.lblIdle, &form.IdleWords);
    addRow(*fields, tr("Signon time :"), form.lblSignon, &form.SignonWords);
    addRow(*fields, tr("User type :"), form.lblType);

    auto* note = copyable(this);
    note->setFont(theme::smallFont());
    attach(on_, form.Label2, *note);
    auto* questions = new QHBoxLayout;
    for (CommandButton* model : {&form.Command2, &form.Command3, &form.Command4, &form.Command5}) {
        auto* button = new QPushButton(this);
        attach(on_, *model, *button);
        questions->addWidget(button);
    }
    auto* answer = new QFormLayout;
    answer->setHorizontalSpacing(theme::Large);
    addRow(*answer, tr("Ctcp reply:"), form.lblCtcp);
    auto* close = new QPushButton(this);
    attach(on_, form.Command1, *close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { this->close(); });

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Large, theme::Large, theme::Large, theme::Large);
    rows->setSpacing(theme::Medium);
    rows->addLayout(fields);
    rows->addStretch(1);
    rows->addWidget(note);
    rows->addLayout(questions);
    rows->addLayout(answer);
    rows->addWidget(close, 0, Qt::AlignRight);
    close->setFocus();
}

// An answer comes late, but it was asked for: it shows, and leaves the keyboard where it is by then.
void WhoisView::comeForward() {
    if (Ended()) return;
    if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    FormView::comeForward();
}

void WhoisView::addRow(QFormLayout& rows, const QString& title, Label& text, Label* words) {
    auto* name = new QLabel(title, this);
    name->setFont(theme::smallFont());
    auto* shown = copyable(this);
    shown->setAccessibleName(title);
    attach(on_, text, *shown);
    auto* line = new QHBoxLayout;
    line->addWidget(shown, 1);
    if (words != nullptr) {
        auto* beside = copyable(this);
        attach(on_, *words, *beside);
        line->addWidget(beside, 2);
    }
    rows.addRow(name, line);
}

}  // namespace talvora
