#include "desktop/views/MsgBoxView.h"

#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/IconLabel.h"
#include "desktop/QtText.h"
#include "desktop/TextNote.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

// The image list of the form.
QString noteIcon(int picture) {
    switch (picture) {
        case 1:
            return QStringLiteral("warning");
        case 2:
            return QStringLiteral("error");
        case 3:
            return QStringLiteral("question");
        default:
            return QStringLiteral("info");
    }
}

}  // namespace

MsgBoxView::MsgBoxView(frmMsgBox& form, const ViewSite& site) : FormView(form, site, "MsgBox", {380, 1}) {
    setWindowFlags(Qt::Dialog);
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* icon = new IconLabel(theme::BoxIcon, this);
    attach(on_, form.Image2, *icon, [](int number) { return theme::icon(noteIcon(number)); });

    auto* text = new TextNote(this);
    text->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    text->setAccessibleName(tr("Note"));
    const auto note = [this, text](const std::string& caption) {
        text->setNote(toQString(caption));
        setAccessibleDescription(text->Note());
    };
    note(form.Label1.Caption);
    on_ += form.Label1.Caption.Changed.connect(note);

    auto* button = new QPushButton(this);
    button->setAutoDefault(true);
    const auto caption = [button](const std::string& label) { button->setText(toQString(label)); };
    caption(form.Label2.Caption);
    on_ += form.Label2.Caption.Changed.connect(caption);
    attach(on_, form.Picture1, *button);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });

    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Large);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(text, 1, Qt::AlignVCenter);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(2 * theme::Medium, 2 * theme::Medium, 2 * theme::Medium, theme::Large);
    rows->setSpacing(2 * theme::Medium);
    rows->addLayout(row);
    rows->addWidget(button, 0, Qt::AlignRight);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    button->setFocus();
}

}  // namespace talvora
