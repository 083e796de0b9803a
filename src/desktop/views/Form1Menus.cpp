// The menus of the main window: of its lists, of the user's state, and the main menu itself.

#include <QMenu>

#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/Form1View.h"
#include "desktop/views/MailArea.h"
#include "desktop/views/Pictures.h"

namespace talvora {

void Form1View::fillMenu(QMenu& menu, Menu& model) {
    if (&model == &form_.Presence.popState) fillStates(menu);
    if (&model == &form_.popUserList) fillUsers(menu);
    if (mail_ != nullptr) mail_->fillMenu(menu, model);
    if (&model != &form_.Channels.popChannel) return;
    for (Menu* entry :
         {&form_.Channels.popChanJoin, &form_.Channels.popChanPart, &form_.Channels.popChanKey}) {
        addEntry(menu, *entry);
    }
}

// The table of states may be read anew while the menu is open: an entry is found again by its number.
void Form1View::fillStates(QMenu& menu) {
    addEntry(menu, form_.Presence.popOnline)->setIcon(pictureOf(Pictures::States, modNickDecode::OnlineIcon));
    menu.addSeparator();
    const auto& states = form_.Presence.popStat;
    for (int i = 1; i <= states.UBound(); ++i) {
        const Menu& state = states(i);
        QAction* action =
            menu.addAction(pictureOf(Pictures::States, state.Picture), caption(state.Caption.get()));
        connect(action, &QAction::triggered, this, [this, i] {
            if (i <= form_.Presence.popStat.UBound()) form_.Presence.popStat(i).Click.raise();
        });
    }
}

void Form1View::fillUsers(QMenu& menu) {
    addEntry(menu, form_.popULChat);
    addEntry(menu, form_.popULInfo);
    addEntry(menu, form_.popULSendFile)->setIcon(theme::icon(QStringLiteral("file-out")));
    menu.addSeparator();
    for (Menu* entry : {&form_.Friends.popULAddFriends, &form_.Friends.popULRemFriends})
        if (entry->Visible) addEntry(menu, *entry);
    addEntry(menu, form_.Presence.mnuIgnore);
    addEntry(menu, form_.Presence.mnuUnignore);
    menu.addSeparator();
    addEntry(menu, form_.popULRefresh);
}

void Form1View::fillMain(QMenu& menu) {
    addEntry(menu, form_.Channels.popChanNew)->setIcon(theme::icon(QStringLiteral("channel-new")));
    addEntry(menu, form_.Channels.popChanList);
    addEntry(menu, form_.popULRefresh);
    addEntry(menu, form_.mnuBar)->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
    menu.addSeparator();
    if (mail_ != nullptr) mail_->fillMain(menu);
    for (Label* link : {&announcement_.Label15, &announcement_.PostNew}) {
        QAction* entry = menu.addAction(caption(link->Caption.get()));
        connect(entry, &QAction::triggered, this, [link] { link->Click.raise(); });
    }
    menu.addSeparator();
    addEntry(menu, form_.mnuTransfers)->setIcon(theme::icon(QStringLiteral("file-in")));
    addEntry(menu, form_.mnuScripts)->setIcon(theme::icon(QStringLiteral("script")));
    QAction* settings = menu.addAction(theme::icon(QStringLiteral("settings")), tr("&Settings..."));
    connect(settings, &QAction::triggered, this, [this] { Site().Face.ShowSettings(); });
    QAction* about = menu.addAction(tr("&About..."));
    connect(about, &QAction::triggered, this, [this] { Site().Face.ShowAbout(); });
    menu.addSeparator();
    QAction* quit = menu.addAction(tr("&Quit"));
    connect(quit, &QAction::triggered, this, [this] { Site().Face.Quit(); });
}

}  // namespace talvora
