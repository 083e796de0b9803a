#pragma once
// The open chat windows in the main window: a row a window, with what was said last and whether it is new.

#include <string>

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

    // Redraws the list and the windows' title bars before the user could see that it is old. However many
    // lines arrive, it is done at most once in a while.
    void RefreshWindows();
    Timer tmrRedraw;

  private:
    void redraw();
    void put(int row, const ChatWindow& window, const std::string& name, int picture);
    ChatWindow* windowOf(const ListItem& row) const;
    void ListView1_DblClick();

    GlobError& globError_;
    ChatSurroundings& chat_;
    modChanWinManager& channels_;
    modWinManager& privates_;
    Subscriptions on_;
};

}  // namespace talvora
