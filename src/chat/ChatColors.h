#pragma once
// The colours of the chat windows' lines, the same for all windows of a component: the component owns them
// and hands them to its windows by reference. Each is a colour byte as `IRCWin::AddIRCLine` takes it, the
// number of a palette colour + 2.

#include <cstdint>

namespace talvora {

struct ChatColors {
    std::uint8_t ChatForeColor = 3;  // other people's lines: black
    std::uint8_t ChatBackColor = 2;
    std::uint8_t PluginForeColor = 6;  // lines from a plug-in: red
    std::uint8_t PluginBackColor = 2;
    std::uint8_t ActionForeColor = 8;  // action lines: purple
    std::uint8_t ActionBackColor = 2;
    std::uint8_t OwnForeColor = 16;  // the user's own lines: dark grey
    std::uint8_t OwnBackColor = 2;
};

}  // namespace talvora
