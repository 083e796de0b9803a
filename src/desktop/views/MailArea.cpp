#include "desktop/views/MailArea.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/FormView.h"
#include "desktop/ListTree.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"

namespace talvora {

namespace {

// The columns as the list has them; on the screen what tells most stands first.
namespace MailColumn {
enum { Mark, Person, Received, Sent, Subject, Size, Last };
constexpr int fromLeft[] = {Mark, Person, Subject, Last, Size, Received, Sent};
}  // namespace MailColumn
constexpr int NarrowestSubject = 108;  // pixels of the subject
constexpr int MailProgressWidth = 72;

void letShrinkInArea(QLabel& label) {
    label.setMinimumWidth(1);
}

}  // namespace

MailArea::MailArea(MailPanel& panel, QWidget* parent)
    : QWidget(parent), panel_(panel), pages_(new QStackedWidget(this)) {
    auto* tabs = new QTabBar(this);
    tabs->setAccessibleName(tr("Mail"));
    tabs->setDrawBase(false);
    tabs->setExpanding(true);
    tabs->setElideMode(Qt::ElideRight);
    tabs->setUsesScrollButtons(false);
    attach(on_, panel_.MailBtn, *tabs);
    pages_->addWidget(makeMails());
    pages_->addWidget(new QWidget(pages_));
    follow(on_, panel_.picAnnVisible, [this](bool shown) { pages_->setCurrentIndex(shown ? 1 : 0); });

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, theme::Small, 0, 0);
    rows->setSpacing(theme::Small);
    rows->addWidget(tabs);
    rows->addWidget(pages_, 1);
    rows->addLayout(makeStatus());
    connectKeys();
}

void MailArea::setAnnouncements(QWidget* page) {
    delete pages_->widget(1);
    pages_->insertWidget(1, page);
    pages_->setCurrentIndex(panel_.picAnnVisible ? 1 : 0);
}

// ---- Parts

QWidget* MailArea::makeMails() {
    auto* part = new QWidget(pages_);
    auto* summary = new QLabel(part);
    summary->setIndent(theme::Small);
    letShrinkInArea(*summary);
    attach(on_, panel_.Label9, *summary);
    makeList();
    auto* rows = new QVBoxLayout(part);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(theme::Small);
    rows->addLayout(makeTools());
    rows->addWidget(summary);
    rows->addWidget(list_, 1);
    attachVisible(on_, panel_.ListView3Visible, *list_);
    return part;
}

QBoxLayout* MailArea::makeTools() {
    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Small);
    filter_ = new QLineEdit(this);
    filter_->setPlaceholderText(tr("Find in the list"));
    filter_->setAccessibleName(tr("Find in the list"));
    filter_->setClearButtonEnabled(true);
    filter_->addAction(theme::icon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    attach(on_, panel_.txtFilter, *filter_);
    row->addWidget(filter_, 1);

    QToolButton* drafts = theme::iconButton(QStringLiteral("draft"), {}, this);
    drafts->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(drafts);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        fillDrafts(*menu);
    });
    drafts->setMenu(menu);
    follow(on_, panel_.mnuDrafts.Caption, [drafts](const std::string& text) {
        const QString name = toQString(text).remove(QLatin1Char('&'));
        drafts->setToolTip(name);
        drafts->setAccessibleName(name);
    });
    attachVisible(on_, panel_.mnuDrafts.Visible, *drafts);
    row->addWidget(drafts);

    QToolButton* write = theme::iconButton(QStringLiteral("mail-new"), tr("New message (Ctrl+N)"), this);
    connect(write, &QToolButton::clicked, this, [this] { panel_.mnuNew.Click.raise(); });
    row->addWidget(write);
    return row;
}

void MailArea::makeList() {
    ListModel::Look look;
    for (int i = 0; i <= MailColumn::Last; ++i) look.Columns += QString();
    look.Icon = picturesOf(Pictures::Mails);
    look.ClickableHeads = true;
    list_ = new ListTree(panel_.ListView3, look, tr("Messages"), pages_);
    QHeaderView& head = *list_->header();
    head.setStretchLastSection(false);
    for (int place = 0; place <= MailColumn::Last; ++place)
        head.moveSection(head.visualIndex(MailColumn::fromLeft[place]), place);
    follow(on_, panel_.lblEmpty.Caption,
           [list = list_](const std::string& text) { list->setEmptyText(toQString(text)); });
    // Whoever waits in the other tab is told by words, and of a time nothing is known.
    follow(on_, panel_.ListView3.ColumnHeaders, [this](const std::vector<std::string>&) { widths(); });
    list_->viewport()->installEventFilter(this);
}

QBoxLayout* MailArea::makeStatus() {
    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Medium);
    MailStatus& status = panel_.Status;
    auto* doing = new QLabel(this);
    doing->setFont(theme::smallFont());
    doing->setIndent(theme::Small);
    letShrinkInArea(*doing);
    attach(on_, status.Label7, *doing);
    row->addWidget(doing, 1);
    auto* bar = new QProgressBar(this);
    bar->setAccessibleName(tr("How far the message is"));
    bar->setFixedSize(MailProgressWidth, theme::Medium);
    bar->setTextVisible(false);
    attach(on_, status.Picture2, *bar);
    attachVisible(on_, status.Image8.Visible, *bar);
    row->addWidget(bar);
    return row;
}

// ---- Widths

void MailArea::widths() {
    const bool outgoing = panel_.MailFolder == MailPanel::Outgoing;
    const int letter = list_->fontMetrics().averageCharWidth();
    QHeaderView& head = *list_->header();
    const auto set = [&](int column, int letters) { head.resizeSection(column, letters * letter + 12); };
    set(MailColumn::Mark, 4);
    set(MailColumn::Person, 13);
    set(MailColumn::Last, outgoing ? 38 : 7);
    set(MailColumn::Size, 8);
    set(MailColumn::Received, outgoing ? 9 : 20);
    set(MailColumn::Sent, outgoing ? 6 : 20);
    fitSubject();
}

// The subject has what the others leave; in a narrow window, what those in front of the dates leave.
void MailArea::fitSubject() {
    QHeaderView& head = *list_->header();
    const int room = list_->viewport()->width() - head.length() + head.sectionSize(MailColumn::Subject);
    const int dates = head.sectionSize(MailColumn::Received) + head.sectionSize(MailColumn::Sent);
    head.resizeSection(MailColumn::Subject,
                       room >= NarrowestSubject ? room : std::max(NarrowestSubject, room + dates));
}

bool MailArea::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) fitSubject();
    return QWidget::eventFilter(watched, event);
}

// As mails come they stand below each other.
void MailArea::showNewest() {
    if (!panel_.ListView3.InOrder) list_->scrollToBottom();
}

void MailArea::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!std::exchange(seen_, true)) showNewest();
}

// ---- Keys and menus

void MailArea::connectKeys() {
    const auto key = [](const QKeySequence& keys, QWidget* where, auto act) {
        auto* shortcut = new QShortcut(keys, where);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, where, act);
    };
    key(QKeySequence(Qt::Key_Delete), list_, [this] { panel_.mnuDelMsg.Click.raise(); });
    key(QKeySequence(Qt::CTRL | Qt::Key_R), this, [this] { panel_.mnuReply.Click.raise(); });
    key(QKeySequence(QKeySequence::Find), this, [this] { filter_->setFocus(); });
    key(QKeySequence(Qt::Key_Escape), filter_, [this] { list_->setFocus(); });
    auto* write = new QShortcut(QKeySequence(QKeySequence::New), window());
    connect(write, &QShortcut::activated, this, [this] { panel_.mnuNew.Click.raise(); });
}

void MailArea::fillMenu(QMenu& menu, const Menu& model) {
    if (&model != &panel_.popMail) return;
    menu.setDefaultAction(FormView::addEntry(menu, panel_.mnuView));
    FormView::addEntry(menu, panel_.mnuReply)->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    menu.addSeparator();
    FormView::addEntry(menu, panel_.mnuDelMsg)->setShortcut(QKeySequence(Qt::Key_Delete));
    FormView::addEntry(menu, panel_.mnuDelAll);
    menu.addSeparator();
    fillMain(menu);
}

void MailArea::fillMain(QMenu& menu) {
    QAction* write = FormView::addEntry(menu, panel_.mnuNew);
    write->setIcon(theme::icon(QStringLiteral("mail-new")));
    write->setShortcut(QKeySequence(QKeySequence::New));
}

// The drafts may be others while the menu is open: an entry is found again by its number.
void MailArea::fillDrafts(QMenu& menu) {
    constexpr std::size_t longest = 60;
    for (int i = 0; i <= panel_.mnuDraft.UBound(); ++i) {
        QAction* entry = menu.addAction(oneLine(panel_.mnuDraft(i).Caption.get(), longest)
                                            .replace(QLatin1Char('&'), QStringLiteral("&&")));
        connect(entry, &QAction::triggered, this, [this, i] {
            if (i <= panel_.mnuDraft.UBound()) panel_.mnuDraft(i).Click.raise();
        });
    }
}

void MailArea::showIncoming() {
    panel_.MailBtn.userClicks(MailPanel::Incoming);
    showNewest();
    list_->setFocus();
}

}  // namespace talvora
