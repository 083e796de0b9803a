#pragma once
// The open chat windows as the bar at the edge of the screen sees them; the tables are somebody else's.

#include <string>
#include <vector>

namespace talvora {

class BarWindows {
  public:
    struct Entry {
        bool IsChannel = false;
        int Index = 0;  // its slot in the table of its kind
        bool HasNews = false;
        std::string Title;
        std::string LastText;
    };

    virtual ~BarWindows() = default;
    // First the private windows, then the channels, each in the order of its table.
    virtual std::vector<Entry> OpenWindows() const = 0;
    // Shows and activates the window of a slot, if there is one.
    virtual void BringUp(bool isChannel, int index) = 0;
};

}  // namespace talvora
