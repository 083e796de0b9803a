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
    addBeside(makeUserListTree(window.UserList1, tr("Users of the channel"), this), UsersWidth);
}

void ChannelView::fillMenu(QMenu& menu, Menu& model) {
    if (&model == &window_.pop) {
        addEntry(menu, window_.mnuPM);
        addEntry(menu, window_.mnuInfo);
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
    for (Menu* entry : {&window_.mnuScripts, &window_.mnuPart, &window_.mnuClose, &window_.mnuHide})
        addEntry(menu, *entry);
}

}  // namespace talvora
