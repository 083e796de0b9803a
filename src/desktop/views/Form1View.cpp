#include "desktop/views/Form1View.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProxyStyle>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/IconLabel.h"
#include "desktop/NickDrag.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/AnnouncementPanel.h"
#include "desktop/views/MailArea.h"
#include "desktop/views/Pictures.h"
#include "desktop/views/UserListTree.h"
#include "desktop/views/UserTreeArea.h"

namespace talvora {

namespace {

constexpr QSize MainSize{400, 640};
constexpr int WindowColumn = 175;  // pixels
constexpr int ChannelColumn = 130;
constexpr int WindowsHeight = 190;
constexpr int UsersColumn = 50;

// All tabs are to be read in a window that is narrow.
class NarrowTabs final : public QProxyStyle {
  public:
    explicit NarrowTabs(QObject* owner) : QProxyStyle(QApplication::style()->name()) { setParent(owner); }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        constexpr int space = 16;  // pixels, on both sides of a name together
        return metric == PM_TabBarTabHSpace ? space : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

// What a stranger writes does not decide how wide the window is.
void letShrink(QLabel& label) {
    label.setMinimumWidth(1);
}

QVBoxLayout* rowsIn(QWidget* widget) {
    auto* rows = new QVBoxLayout(widget);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(theme::Small);
    return rows;
}

}  // namespace

Form1View::Form1View(Form1& form, picAnn& announcement, const ViewSite& site)
    : FormView(form, site, "Main", MainSize), form_(form), announcement_(announcement) {
    site.Face.SetMainWindow(*this);
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addWidget(makeHeader());
    rows->addWidget(makeTrouble());
    if (form_.Mail != nullptr) rows->addWidget(makeUnread());
    auto* lists = new QSplitter(Qt::Vertical, this);
    if (form_.Windows) lists->addWidget(makeWindows());
    lists->addWidget(makePeople());
    lists->setChildrenCollapsible(false);
    lists->setStretchFactor(lists->count() - 1, 1);
    lists->setSizes({WindowsHeight, height() - WindowsHeight});
    rows->addWidget(lists, 1);
    rows->addWidget(makeFooter());
}

// ---- Who and how

QWidget* Form1View::makeHeader() {
    auto* header = new QWidget(this);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme::Medium);

    QToolButton* state = theme::iconButton(QStringLiteral("state-3"), tr("Change your state"), header);
    state->setIconSize({32, 32});
    attach(on_, form_.Presence.imgState, *state, picturesOf(Pictures::States));
    row->addWidget(state);

    auto* names = new QVBoxLayout;
    names->setSpacing(0);
    auto* nick = new QLabel(header);
    nick->setFont(theme::titleFont());
    nick->setIndent(theme::Small);
    letShrink(*nick);
    attach(on_, form_.Presence.lblNick, *nick);
    auto* stateName = new QToolButton(header);
    stateName->setAutoRaise(true);
    stateName->setToolTip(tr("Change your state"));
    const auto show = [stateName](const std::string& text) {
        stateName->setAccessibleName(tr("Your state: %1").arg(toQString(text)));
        stateName->setText(caption(text) + QStringLiteral(" \u25BE"));
    };
    show(form_.Presence.Label18.Caption);
    on_ += form_.Presence.Label18.Caption.Changed.connect(show);
    connect(stateName, &QToolButton::clicked, this, [this] { form_.Presence.Label18.Click.raise(); });
    names->addWidget(nick);
    names->addWidget(stateName, 0, Qt::AlignLeft);
    row->addLayout(names, 1);

    QToolButton* menu = theme::iconButton(QStringLiteral("menu"), tr("Menu"), header);
    connect(menu, &QToolButton::clicked, this, [this, menu] {
        auto* entries = new QMenu(this);
        entries->setAttribute(Qt::WA_DeleteOnClose);
        fillMain(*entries);
        entries->popup(menu->mapToGlobal(QPoint(0, menu->height())));
    });
    row->addWidget(menu, 0, Qt::AlignTop);
    return header;
}

QWidget* Form1View::makeSession() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme::Small);
    const auto picture = [&](Image& model, const QString& name, const PictureOf& of) {
        auto* label = new IconLabel(theme::SmallIcon, line);
        label->setToolTip(name);
        label->setAccessibleName(name);
        attach(on_, model, *label, of);
        row->addWidget(label);
    };
    picture(form_.Session.imgStat, tr("Connection"), picturesOf(Pictures::Sessions));
    follow(on_, form_.Session.imgStat.Picture,
           [this](int now) { Site().Face.ShowOnLine(now == SessionPicture::OnLine); });
    auto* session = new QLabel(line);
    letShrink(*session);
    attach(on_, form_.Session.Label8, *session);
    row->addWidget(session, 1);
    picture(form_.Session.imgMailOK, tr("The mail service is there"),
            [](int) { return theme::icon(QStringLiteral("mail-ok")); });
    picture(form_.Session.imgMailErr, tr("The mail service is not there"),
            [](int) { return theme::icon(QStringLiteral("mail-error")); });
    return line;
}

QWidget* Form1View::makeTrouble() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme::Medium);
    auto* picture = new IconLabel(theme::SmallIcon, line);
    picture->setIcon(theme::icon(QStringLiteral("warning")));
    row->addWidget(picture, 0, Qt::AlignTop);
    auto* label = new QLabel(line);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    letShrink(*label);
    attach(on_, form_.Trouble.lblTrouble, *label);
    row->addWidget(label, 1);
    attachVisible(on_, form_.Trouble.lblTrouble.Visible, *line);
    on_ += form_.Trouble.lblTrouble.Caption.Changed.connect([label](const std::string&) {
        QAccessibleEvent alert(label, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    });
    return line;
}

// What has come while nobody looked stands where trouble would, and leads to the mails.
QPushButton* Form1View::makeUnread() {
    auto* line = new QPushButton(this);
    line->setFlat(true);
    line->setIcon(theme::icon(QStringLiteral("mail-unread")));
    line->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    follow(on_, form_.Mail->UnreadCount, [this, line](int count) {
        line->setText(count == 1 ? tr("1 unread message") : tr("%1 unread messages").arg(count));
        line->setVisible(count > 0);
        Site().Face.ShowUnread(count);
    });
    connect(line, &QPushButton::clicked, this, [this] {
        tabs_->setCurrentWidget(mail_);
        mail_->showIncoming();
    });
    return line;
}

QWidget* Form1View::makeFooter() {
    auto* footer = new QWidget(this);
    QVBoxLayout* rows = rowsIn(footer);
    rows->addWidget(makeSession());
    auto* row = new QHBoxLayout;
    for (Label* model : {&form_.Session.Label20, &form_.Users.Label21, &form_.Friends.Label22}) {
        auto* label = new QLabel(footer);
        label->setFont(theme::smallFont());
        letShrink(*label);
        attach(on_, *model, *label);
        row->addWidget(label);
    }
    row->addStretch(1);
    rows->addLayout(row);
    return footer;
}

// ---- The lists

QWidget* Form1View::makeWindows() {
    auto* part = new QWidget(this);
    QVBoxLayout* rows = rowsIn(part);
    ListModel::Look look;
    look.Columns = {tr("Open windows"), tr("Last text")};
    look.Icon = picturesOf(Pictures::Windows);
    auto* list = new ListTree(form_.Windows->ListView1, look, tr("Open windows"), part);
    list->header()->resizeSection(0, WindowColumn);
    list->setEmptyText(tr("Nothing is open. Double-click a channel or a user to talk."));
    rows->addWidget(list, 1);
    auto* hide = new QCheckBox(part);
    attach(on_, form_.Windows->Check1, *hide);
    rows->addWidget(hide);
    return part;
}

QTabWidget* Form1View::makePeople() {
    auto* tabs = new QTabWidget(this);
    tabs->setDocumentMode(true);
    tabs->setUsesScrollButtons(false);
    tabs->setElideMode(Qt::ElideRight);
    tabs->tabBar()->setStyle(new NarrowTabs(tabs));
    // A nick on its way to the friends opens the tab over which it rests.
    tabs->tabBar()->setChangeCurrentOnDrag(true);
    ListTree* friends =
        addUsers(*tabs, form_.UserList2, tr("Friends"),
                 tr("You have no friends here yet. Drag a user here, or add him in his menu."));
    new NickDrop(*friends->viewport(), [this](const std::string& nick) { befriend(nick); });
    everybody_ = new UserTreeArea(form_.Users.UserTree1, tabs);
    tabs->addTab(everybody_, tr("Online"));
    tabs->addTab(makeChannels(), tr("Channels"));
    ListTree* users = addUsers(*tabs, form_.UserList1, tr("Users"), tr("Nobody is in your channels."));
    addUsers(*tabs, form_.UserList3, tr("Ignored"), tr("You ignore nobody."));
    for (ListTree* list : {users, friends}) takeFilesForUsers(*list, offerFiles(), std::nullopt);
    everybody_->takeFiles(offerFiles());
    tabs_ = tabs;
    if (form_.Mail != nullptr) addMail();
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        tabs_->setCurrentWidget(everybody_);
        everybody_->startFinding();
    });
    return tabs;
}

ListTree* Form1View::addUsers(QTabWidget& tabs, UserList& users, const QString& name,
                              const QString& emptyText) {
    ListTree* list = makeUserListTree(users, name, &tabs);
    list->setEmptyText(emptyText);
    tabs.addTab(list, name);
    return list;
}

// As the entry of the menu does, which acts on whoever has been picked.
void Form1View::befriend(const std::string& nick) {
    form_.Presence.Select(nick);
    form_.Friends.popULAddFriends.Click.raise();
}

void Form1View::addMail() {
    mail_ = new MailArea(*form_.Mail, tabs_);
    mail_->setAnnouncements(new AnnouncementPanel(announcement_, Site().ThePlatform, mail_));
    tabs_->addTab(mail_, QString());
    follow(on_, form_.Mail->UnreadCount, [this](int count) {
        tabs_->setTabText(tabs_->indexOf(mail_), count > 0 ? tr("Mail (%1)").arg(count) : tr("Mail"));
    });
}

QWidget* Form1View::makeChannels() {
    auto* part = new QWidget(this);
    QVBoxLayout* rows = rowsIn(part);
    ListModel::Look look;
    look.Columns = {tr("Channel"), tr("Users"), tr("Topic")};
    look.Icon = picturesOf(Pictures::Channels);
    look.Checkable = true;
    auto* list = new ListTree(form_.Channels.ListView2, look, tr("Channels"), part);
    list->header()->resizeSection(0, ChannelColumn);
    list->header()->resizeSection(1, UsersColumn);
    // The stretched last column asks for its own width too before it is cut.
    list->header()->resizeSection(2, UsersColumn);
    list->setEmptyText(tr("No channels yet."));
    rows->addWidget(list, 1);
    return part;
}

TakeFiles Form1View::offerFiles() {
    return [this](const std::string& nick, const std::vector<std::string>& paths) {
        form_.OfferFiles(nick, paths);
    };
}

// A window that nothing could bring back stays in the task bar.
void Form1View::closeBox() {
    if (Site().Face.HasTray()) {
        FormView::closeBox();
        return;
    }
    showMinimized();
    Site().Face.TellOfMinimizing();
}

}  // namespace talvora
