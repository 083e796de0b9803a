#include "desktop/views/AnnounceView.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "announce/StoredAnnouncement.h"
#include "desktop/Binding.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"

namespace talvora {

namespace {

constexpr QSize AnnounceSize{460, 320};
constexpr int HoursLetters = 8;

}  // namespace

AnnounceView::AnnounceView(frmAnnounce& form, const ViewSite& site)
    : FormView(form, site, "Announce", AnnounceSize), form_(form) {
    setWindowIcon(pictureOf(Pictures::Announcements, Category::Simple + 1));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Large, theme::Large, theme::Large, theme::Large);
    rows->setSpacing(theme::Medium);
    rows->addLayout(makeHead());
    rows->addWidget(makeText(), 1);
    rows->addLayout(makeButtons());
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

QFormLayout* AnnounceView::makeHead() {
    auto* head = new QFormLayout;
    auto* category = new QComboBox(this);
    category->setAccessibleName(tr("Category"));
    attach(on_, form_.Combo1, *category);
    for (int i = 0; i < category->count(); ++i)
        category->setItemIcon(i, pictureOf(Pictures::Announcements, i + 1));
    head->addRow(tr("&Category:"), category);

    auto* hours = new QLineEdit(this);
    hours->setFixedWidth(fontMetrics().averageCharWidth() * HoursLetters + 2 * theme::Large);
    hours->setAccessibleName(tr("Expires in hours"));
    attach(on_, form_.Text2, *hours);
    auto* allowed = new QLabel(this);
    allowed->setFont(theme::smallFont());
    allowed->setMinimumWidth(1);
    attach(on_, form_.Allowed, *allowed);
    auto* line = new QHBoxLayout;
    line->setSpacing(theme::Medium);
    line->addWidget(hours);
    line->addWidget(new QLabel(tr("hours"), this));
    line->addSpacing(theme::Medium);
    line->addWidget(allowed, 1);
    auto* expires = new QLabel(tr("&Expires in:"), this);
    expires->setBuddy(hours);
    head->addRow(expires, line);
    return head;
}

QWidget* AnnounceView::makeText() {
    auto* text = new QPlainTextEdit(this);
    text->setTabChangesFocus(true);
    text->setPlaceholderText(tr("What everybody on the network shall read"));
    text->setAccessibleName(tr("Text"));
    attach(on_, form_.Text1, *text);
    setFocusProxy(text);
    return text;
}

QBoxLayout* AnnounceView::makeButtons() {
    auto* row = new QHBoxLayout;
    auto* room = new QLabel(this);
    room->setMinimumWidth(1);
    attach(on_, form_.Room, *room);
    row->addWidget(room, 1);
    for (CommandButton* model : {&form_.Command1, &form_.Command2}) {
        auto* button = new QPushButton(this);
        attach(on_, *model, *button);
        row->addWidget(button);
    }
    return row;
}

}  // namespace talvora
