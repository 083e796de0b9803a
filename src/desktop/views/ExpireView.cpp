#include "desktop/views/ExpireView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Theme.h"

namespace talvora {

ExpireView::ExpireView(frmExpire& form, const ViewSite& site) : FormView(form, site, "Expire", {380, 1}) {
    setWindowFlags(Qt::Dialog);
    setWindowModality(Qt::ApplicationModal);
    setWindowIcon(theme::icon(QStringLiteral("expiry")));
    auto* check = new QCheckBox(this);
    attach(on_, form.Check1, *check);
    auto* label = new QLabel(this);
    attach(on_, form.Label1, *label);
    auto* count = new QLineEdit(this);
    count->setAccessibleName(tr("How many"));
    count->setAlignment(Qt::AlignRight);
    count->setMaximumWidth(fontMetrics().averageCharWidth() * 10);
    attach(on_, form.Text1, *count);
    auto* unit = new QComboBox(this);
    unit->setAccessibleName(tr("Of what"));
    attach(on_, form.List1, *unit);
    auto* close = new QPushButton(this);
    close->setAutoDefault(true);
    attach(on_, form.Command1, *close);
    connect(count, &QLineEdit::returnPressed, close, [close] { close->click(); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { this->close(); });
    connect(check, &QCheckBox::toggled, count, [count](bool on) {
        if (on) count->setFocus();
        if (on) count->selectAll();
    });

    auto* time = new QHBoxLayout;
    time->setSpacing(theme::Medium);
    for (QWidget* widget :
         {static_cast<QWidget*>(label), static_cast<QWidget*>(count), static_cast<QWidget*>(unit)}) {
        time->addWidget(widget);
    }
    time->addStretch(1);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(2 * theme::Medium, 2 * theme::Medium, 2 * theme::Medium, theme::Large);
    rows->setSpacing(theme::Large);
    rows->addWidget(check);
    rows->addLayout(time);
    rows->addWidget(close, 0, Qt::AlignRight);
    rows->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace talvora
