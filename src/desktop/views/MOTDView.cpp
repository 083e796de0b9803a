#include "desktop/views/MOTDView.h"

#include <QCheckBox>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/RichTextView.h"
#include "desktop/Theme.h"

namespace talvora {

MOTDView::MOTDView(frmMOTD& form, const ViewSite& site) : FormView(form, site, "MOTD", {620, 420}) {
    setWindowIcon(theme::icon(QStringLiteral("app")));
    RichTextView* text = addRichText(form.IRCWin1.RichTextBox1);
    text->setAccessibleName(tr("Message of the day"));
    auto* check = new QCheckBox(this);
    attach(on_, form.Check1, *check);
    auto* button = new QPushButton(tr("&Close"), this);
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this] { close(); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });

    auto* row = new QHBoxLayout;
    row->addWidget(check, 1);
    row->addWidget(button);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addWidget(text, 1);
    rows->addLayout(row);
    button->setFocus();
}

}  // namespace talvora
