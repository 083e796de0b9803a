#pragma once
// The open chat windows in the main window: a row a window, with what was said last and whether it is new.

#include <string>
#include <vector>

#include "chat/modChanWinManager.h"
#include "chat/modWinManager.h"
#include "common/Trap.h"
#include "platform/Controls.h"
#include "platform/ListView.h"
#include "platform/Timer.h"

namespace talvora {

// The pictures of ListView1.
namespace WindowPicture {
inline constexpr int Private = 1;
inline constexpr int PrivateNews = 2;
inline constexpr int Channel = 3;
inline constexpr int ChannelNews = 4;
}  // namespace WindowPicture

struct ChatWindowTables {
    ChatSurroundings& Around;
    modChanWinManager& Channels;
    modWinManager& Privates;
};

class WindowsPanel {
  public:
    WindowsPanel(Platform& platform, Event<>& end, GlobError& globError, const ChatWindowTables& chat);

    ListView ListView1;  // the name of a window, and in column 1 its last text
    CheckBox Check1;     // "Hide inactive windows": a private window's close box only hides it

    // An open window as whoever shows the windows needs it.
    struct OpenWindow {
        ChatWindow* Window;
        bool IsChannel;
        int Index;            // its slot in the table of its kind; it moves down when one in front of it goes
        std::string Name;     // in the list
        std::string Caption;  // of its title bar
    };
    // First the private windows, then the channels, each in the order of its table.
    std::vector<OpenWindow> OpenWindows() const;
    // Brings up the window of a slot, if there is one.
    void BringUp(bool isChannel, int index);

    // Redraws the list and the windows' title bars before the user could see that it is old. However many
    // lines arrive, it is done at most once in a while.
    void RefreshWindows();
    // The same before it returns.
    void RefreshWindowsNow();
    // The list and the title bars are as the windows are.
    Event<> Redrawn;
    Timer tmrRedraw;

  private:
    void redraw();
    ChatWindow* windowOf(const ListItem& row) const;
    void bringUp(ChatWindow* window);
    void ListView1_DblClick();

    GlobError& globError_;
    ChatSurroundings& chat_;
    modChanWinManager& channels_;
    modWinManager& privates_;
    Subscriptions on_;
};

}  // namespace talvora
