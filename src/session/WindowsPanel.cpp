#include "session/WindowsPanel.h"

namespace talvora {

namespace {

constexpr int redrawDelay = 40;  // milliseconds

}  // namespace

WindowsPanel::WindowsPanel(Platform& platform, GlobError& globError, const ChatWindowTables& chat)
    : Check1(chat.Around.gHideInactive),
      tmrRedraw(platform, redrawDelay),
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
            window->Caption = "Chat - " + (window->UserGone ? "Disconnected" : window->UserName);
            put(++row, *window, "Chat - " + window->UserName,
                window->HasNews ? WindowPicture::PrivateNews : WindowPicture::Private);
        }
        for (frmChanChat* window : channels_.Table().Windows()) {
            window->Caption = "Channel - " + window->ChannelName;
            put(++row, *window, "Channel - " + window->ChannelName,
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

void WindowsPanel::ListView1_DblClick() {
    trapped(globError_, "ListView1_DblClick", [&](Trap&) {
        if (ListView1.SelectedItem == nullptr) return;
        const int row = ListView1.SelectedItem->Index();
        std::vector<ChatWindow*> windows;
        for (frmPM* window : privates_.Table().Windows()) windows.push_back(window);
        for (frmChanChat* window : channels_.Table().Windows()) windows.push_back(window);
        if (row < 1 || row > static_cast<int>(windows.size())) return;
        ChatWindow& window = *windows[static_cast<std::size_t>(row) - 1];
        window.WindowState = FormState::Normal;
        window.Show();
        chat_.ThePlatform.Screen.SetForegroundWindow(window);
    });
}

}  // namespace talvora
