#include "desktop/views/ChannelView.h"

#include "desktop/Theme.h"
#include "desktop/views/UserListTree.h"

namespace talvora {

namespace {

constexpr QSize ChannelSize{720, 460};
constexpr int UsersWidth = 170;

}  // namespace

ChannelView::ChannelView(frmChanChat& window, const ViewSite& site)
    : ChatView(window, site, "Channel", ChannelSize), window_(window) {
    setWindowIcon(theme::icon(QStringLiteral("channel")));
    ListTree* users = makeUserListTree(window.UserList1, tr("Users of the channel"), this);
    addBeside(users, UsersWidth);
    if (!window_.mnuSendFileUser.Visible) return;
    const TakeFiles offer = [&window](const std::string& nick, const std::vector<std::string>& paths) {
        window.OfferFiles(nick, paths);
    };
    takeDropped(offer);
    takeFilesForUsers(*users, offer, "");
}

void ChannelView::fillMenu(QMenu& menu, Menu& model) {
    if (&model == &window_.pop) {
        addEntry(menu, window_.mnuPM);
        addEntry(menu, window_.mnuInfo);
        if (window_.mnuSendFile.Visible)
            addEntry(menu, window_.mnuSendFile)->setIcon(theme::icon(QStringLiteral("file-out")));
        menu.addSeparator();
        addCommands(menu, window_.Commands);
        return;
    }
    if (&model != &window_.mnuCheck) return;
    for (Menu* check : {&window_.mnuChkshow, &window_.mnuChkBeep, &window_.mnuChkFlash, &window_.mnuNoFocus,
                        &window_.mnuPopup, &window_.mnuTimeStamp}) {
        addEntry(menu, *check, true);
    }
    menu.addSeparator();
    if (window_.mnuSendFileUser.Visible) {
        addEntry(menu, window_.mnuSendFileUser)->setIcon(theme::icon(QStringLiteral("file-out")));
        menu.addSeparator();
    }
    for (Menu* entry : {&window_.mnuScripts, &window_.mnuPart, &window_.mnuClose, &window_.mnuHide})
        addEntry(menu, *entry);
}

}  // namespace talvora
