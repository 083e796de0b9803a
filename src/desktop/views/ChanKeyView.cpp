#include "desktop/views/ChanKeyView.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/IconLabel.h"
#include "desktop/QtText.h"
#include "desktop/TextNote.h"
#include "desktop/Theme.h"

namespace talvora {

ChanKeyView::ChanKeyView(frmChanKey& form, const ViewSite& site) : FormView(form, site, "ChanKey", {380, 1}) {
    setWindowFlags(Qt::Dialog);
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* question = new TextNote(this);
    auto* answer = new QLineEdit(this);
    answer->setMinimumWidth(fontMetrics().averageCharWidth() * 44);
    const auto ask = [question, answer](const std::string& text) {
        question->setNote(toQString(text));
        answer->setAccessibleName(toQString(text));
    };
    ask(form.Label1.Caption);
    on_ += form.Label1.Caption.Changed.connect(ask);
    attach(on_, form.Text1, *answer);
    connect(answer, &QLineEdit::returnPressed, this, [&form] { form.Text1.userPresses(Key::Return); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            [&form] { form.Text1.userPresses(Key::Escape); });

    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Large);
    const auto show = [&](Image& model, const QString& name) {
        auto* picture = new IconLabel(theme::BoxIcon, this);
        picture->setIcon(theme::icon(name));
        row->addWidget(picture, 0, Qt::AlignTop);
        attachVisible(on_, model.Visible, *picture);
    };
    show(form.Image2, QStringLiteral("key"));
    show(form.Image3, QStringLiteral("channel-new"));
    auto* column = new QVBoxLayout;
    column->setSpacing(theme::Medium);
    column->addWidget(question);
    column->addWidget(answer);
    row->addLayout(column, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    for (auto which : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel})
        buttons->button(which)->setAutoDefault(true);
    attach(on_, form.Picture1[0], *buttons->button(QDialogButtonBox::Ok));
    attach(on_, form.Picture1[1], *buttons->button(QDialogButtonBox::Cancel));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(2 * theme::Medium, 2 * theme::Medium, 2 * theme::Medium, theme::Large);
    rows->setSpacing(2 * theme::Medium);
    rows->addLayout(row);
    rows->addWidget(buttons);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    answer->setFocus();
}

}  // namespace talvora
