#include "desktop/views/AnnouncementsView.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>
#include <array>

#include "chat/Links.h"
#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/LinkNote.h"
#include "desktop/ListTree.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"

namespace talvora {

namespace {

constexpr QSize AnnouncementsSize{680, 480};
constexpr int AnnouncementsHeight = 290;
constexpr std::array<int, 5> AnnouncementColumns = {130, 150, 90, 200, 70};

}  // namespace

AnnouncementsView::AnnouncementsView(frmAnnouncements& form, const ViewSite& site)
    : FormView(form, site, "Announcements", AnnouncementsSize), form_(form) {
    setWindowIcon(pictureOf(Pictures::Announcements, Category::Simple + 1));
    auto* filter = new QLineEdit(this);
    filter->setPlaceholderText(tr("Show only what holds this text"));
    filter->setClearButtonEnabled(true);
    filter->setAccessibleName(tr("Filter"));
    filter->addAction(theme::icon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    attach(on_, form_.Filter, *filter);

    auto* parts = new QSplitter(Qt::Vertical, this);
    parts->addWidget(makeList());
    parts->addWidget(makeText());
    parts->setChildrenCollapsible(false);
    parts->setStretchFactor(0, 1);
    parts->setSizes({AnnouncementsHeight, AnnouncementsSize.height() - AnnouncementsHeight});
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addWidget(filter);
    rows->addWidget(parts, 1);
    rows->addLayout(makeButtons());
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

// What is left in a person's words stands beside the system's, in front of the text, which takes what room
// there is.
QWidget* AnnouncementsView::makeList() {
    ListModel::Look look;
    look.Icon = picturesOf(Pictures::Announcements);
    look.ClickableHeads = true;
    auto* list = new ListTree(form_.ListView1, look, tr("Announcements"), this);
    for (int column = 0; column < list->header()->count(); ++column)
        list->header()->resizeSection(column, AnnouncementColumns[static_cast<std::size_t>(column)]);
    list->header()->moveSection(static_cast<int>(frmAnnouncements::WordsColumn),
                                static_cast<int>(frmAnnouncements::TextColumn));
    follow(on_, form_.Nothing.Caption, [list](const std::string& text) {
        list->setEmptyText(toQString(text));
        list->viewport()->update();
    });
    return list;
}

QWidget* AnnouncementsView::makeText() {
    auto* text = new LinkNote(this);
    text->setAccessibleName(tr("Text of the announcement"));
    text->setPlaceholderText(tr("Choose an announcement to read it."));
    follow(on_, form_.Text1.Text, [text](const std::string& shown) { text->setNote(shown); });
    on_ += text->LinkClicked.connect([this](const std::string& link) { OpenLink(Site().ThePlatform, link); });
    return text;
}

QBoxLayout* AnnouncementsView::makeButtons() {
    auto* row = new QHBoxLayout;
    const auto button = [&](CommandButton& model) {
        auto* made = new QPushButton(this);
        made->setAutoDefault(true);
        attach(on_, model, *made);
        row->addWidget(made);
    };
    button(form_.Command2);
    button(form_.Command3);
    row->addStretch(1);
    button(form_.Command1);
    return row;
}

}  // namespace talvora
