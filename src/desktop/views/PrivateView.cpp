#include "desktop/views/PrivateView.h"

#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr QSize PrivateSize{560, 400};

}  // namespace

PrivateView::PrivateView(frmPM& window, const ViewSite& site)
    : ChatView(window, site, "Private", PrivateSize), window_(window) {
    setWindowIcon(theme::icon(QStringLiteral("private")));
    offerWords([&window](const std::string& typed) { return window.CommandsLike(typed); });
    if (window_.mnuSendFile.Visible) {
        takeDropped([&window](const std::string&, const std::vector<std::string>& paths) {
            window.OfferFiles(paths);
        });
    }
}

void PrivateView::fillMenu(QMenu& menu, Menu&) {
    for (Menu* check : {&window_.mnuPopup, &window_.mnuNoFocus, &window_.mnuTimeStamp}) {
        addEntry(menu, *check, true);
    }
    menu.addSeparator();
    addCommands(menu, window_.Commands);
    addEntry(menu, window_.mnuScripts);
    menu.addSeparator();
    if (window_.mnuSendFile.Visible) {
        addEntry(menu, window_.mnuSendFile)->setIcon(theme::icon(QStringLiteral("file-out")));
        menu.addSeparator();
    }
    for (Menu* entry : {&window_.mnuStopPM, &window_.mnuHide}) addEntry(menu, *entry);
}

}  // namespace talvora
