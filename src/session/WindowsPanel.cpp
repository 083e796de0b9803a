#include "session/WindowsPanel.h"

namespace talvora {

namespace {

constexpr int redrawDelay = 40;  // milliseconds

// What a window is called in the list.
std::string nameOf(const frmPM& window) {
    return "Chat - " + window.UserName;
}

std::string nameOf(const frmChanChat& window) {
    return "Channel - " + window.ChannelName;
}

}  // namespace

WindowsPanel::WindowsPanel(Platform& platform, Event<>& end, GlobError& globError,
                           const ChatWindowTables& chat)
    : Check1(chat.Around.gHideInactive),
      tmrRedraw(platform, end, redrawDelay),
      globError_(globError),
      chat_(chat.Around),
      channels_(chat.Channels),
      privates_(chat.Privates) {
    Check1.Caption = "Hide inactive windows";
    on_ += Check1.Click.connect([this] { chat_.gHideInactive = Check1.Value; });
    on_ += ListView1.DblClick.connect([this] { ListView1_DblClick(); });
    on_ += tmrRedraw.Tick.connect([this] {
        tmrRedraw.Enabled = false;
        redraw();
    });
}

void WindowsPanel::RefreshWindows() {
    tmrRedraw.Enabled = true;
}

void WindowsPanel::redraw() {
    trapped(globError_, "RefreshWindows", [&](Trap&) {
        int row = 0;
        for (frmPM* window : privates_.Table().Windows()) {
            window->Caption = window->UserGone ? "Chat - Disconnected" : nameOf(*window);
            put(++row, *window, nameOf(*window),
                window->HasNews ? WindowPicture::PrivateNews : WindowPicture::Private);
        }
        for (frmChanChat* window : channels_.Table().Windows()) {
            window->Caption = nameOf(*window);
            put(++row, *window, nameOf(*window),
                window->HasNews ? WindowPicture::ChannelNews : WindowPicture::Channel);
        }
        while (ListView1.ListItems.Count() > row) {
            ListView1.ListItems.Remove(ListView1.ListItems(ListView1.ListItems.Count()));
        }
    });
}

void WindowsPanel::put(int row, const ChatWindow& window, const std::string& name, int picture) {
    ListItems& rows = ListView1.ListItems;
    ListItem& item = row > rows.Count() ? rows.Add(name, name) : rows(row);
    item.SetKey(name);
    item.SetText(name);
    item.SetSmallIcon(picture);
    item.SetSubItem(1, window.LastText);
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
        ChatWindow* window = windowOf(*ListView1.SelectedItem);
        if (window == nullptr) return;
        window->WindowState = FormState::Normal;
        window->Show();
        chat_.ThePlatform.Screen.SetForegroundWindow(*window);
    });
}

}  // namespace talvora
