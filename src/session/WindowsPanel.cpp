#include "session/WindowsPanel.h"

namespace talvora {

namespace {

constexpr int RedrawDelay = 40;  // milliseconds

// What a window is called in the list.
std::string nameOf(const frmPM& window) {
    return "Chat - " + window.UserName;
}

std::string nameOf(const frmChanChat& window) {
    return "Channel - " + window.ChannelName;
}

std::string captionOf(const frmPM& window) {
    return window.UserGone ? "Chat - Disconnected" : nameOf(window);
}

std::string captionOf(const frmChanChat& window) {
    return nameOf(window);
}

ListRow rowOf(const WindowsPanel::OpenWindow& open) {
    const bool news = open.Window->HasNews;
    ListRow row;
    row.Key = row.Text = open.Name;
    row.SubItems = {open.Window->LastText};
    row.SmallIcon = open.IsChannel ? (news ? WindowPicture::ChannelNews : WindowPicture::Channel)
                                   : (news ? WindowPicture::PrivateNews : WindowPicture::Private);
    row.Bold = news;
    return row;
}

}  // namespace

WindowsPanel::WindowsPanel(Platform& platform, Event<>& end, GlobError& globError,
                           const ChatWindowTables& chat)
    : Check1(chat.Around.gHideInactive),
      tmrRedraw(platform, end, RedrawDelay),
      globError_(globError),
      chat_(chat.Around),
      channels_(chat.Channels),
      privates_(chat.Privates) {
    Check1.Caption = "Hide inactive windows";
    on_ += Check1.Click.connect([this] { chat_.gHideInactive = Check1.Value; });
    on_ += ListView1.DblClick.connect([this] { ListView1_DblClick(); });
    on_ += tmrRedraw.Tick.connect([this] { RefreshWindowsNow(); });
}

void WindowsPanel::RefreshWindows() {
    tmrRedraw.Enabled = true;
}

void WindowsPanel::RefreshWindowsNow() {
    tmrRedraw.Enabled = false;
    redraw();
}

std::vector<WindowsPanel::OpenWindow> WindowsPanel::OpenWindows() const {
    std::vector<OpenWindow> open;
    const auto add = [&](const auto& table, bool isChannel) {
        for (int i = 0; i < table.Count(); ++i) {
            if (auto* window = table.At(i))
                open.push_back({window, isChannel, i, nameOf(*window), captionOf(*window)});
        }
    };
    add(privates_.Table(), false);
    add(channels_.Table(), true);
    return open;
}

void WindowsPanel::redraw() {
    trapped(globError_, "RefreshWindows", [&](Trap&) {
        std::vector<ListRow> rows;
        for (const OpenWindow& open : OpenWindows()) {
            open.Window->Caption = open.Caption;
            rows.push_back(rowOf(open));
        }
        ListView1.Refresh(rows);
        Redrawn.raise();
    });
}

// The window that the row was drawn for, whatever has come and gone since. Of several with one name it is the
// one whose turn it is.
ChatWindow* WindowsPanel::windowOf(const ListItem& row) const {
    int turn = 0;
    for (int i = 1; i <= row.Index(); ++i) turn += ListView1.ListItems(i).Text() == row.Text() ? 1 : 0;
    const auto isMeant = [&](const auto& window) { return nameOf(window) == row.Text() && --turn == 0; };
    ChatWindow* window = privates_.Table().Find(isMeant);
    return window != nullptr ? window : channels_.Table().Find(isMeant);
}

void WindowsPanel::ListView1_DblClick() {
    trapped(globError_, "ListView1_DblClick", [&](Trap&) {
        if (ListView1.SelectedItem == nullptr) return;
        bringUp(windowOf(*ListView1.SelectedItem));
    });
}

void WindowsPanel::BringUp(bool isChannel, int index) {
    trapped(globError_, "BringUp", [&](Trap&) {
        ChatWindow* window = privates_.Table().At(index);
        if (isChannel) window = channels_.Table().At(index);
        bringUp(window);
    });
}

void WindowsPanel::bringUp(ChatWindow* window) {
    if (window == nullptr) return;
    window->WindowState = FormState::Normal;
    window->Show();
    chat_.ThePlatform.Screen.SetForegroundWindow(*window);
}

}  // namespace talvora
