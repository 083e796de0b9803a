#pragma once
// The bar above the upper edge of the primary screen, at its right end. A pointer that rests in that corner
// slides it out: a button a window. What has not been read hangs down into the screen by itself. There is one
// bar, from the start to the end. Lengths are in twips.
//
// Where the desktop lets nobody place a window, the bar is a window that stays where the user puts it, and
// shows itself only when it is asked for.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "notify/BarWindows.h"
#include "notify/HButton.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Timer.h"

namespace talvora {

// The pictures of the bar: each has its grey twin three places further on.
namespace BarPicture {
inline constexpr int Private = 1;
inline constexpr int Channel = 2;
inline constexpr int Count = 3;
inline constexpr int greyTwin(int picture) {
    return picture + Count;
}
}  // namespace BarPicture

class frmPopup final : public Form {
  public:
    // A box that holds the buttons of a section. What does not fit into its height is scrolled to.
    struct Box {
        Property<int> Top{0};
        Property<int> Height{0};
        Property<bool> Visible{true};
    };
    using Buttons = ControlArray<HButton>;

    frmPopup(Platform& platform, GlobError& reporter, ComponentSettings& settings, BarWindows& windows);

    Label Label3{"      Active windows"};
    Box Picture1;
    Buttons Wins;  // a button a window without unread text; number 0 is always loaded
    Label Label1{" Talvora Messenger - Notice"};
    Box Picture2;
    Buttons WinNotice;  // the same for windows with unread text, with that text
    Timer Timer1;       // looks where the pointer is, as long as it is of interest
    Timer tmrShowDelay;
    Timer tmrSlide;

    static constexpr std::uint16_t NoButton = 65535;
    std::uint16_t HotWin = NoButton;  // the button of `Wins` under the pointer
    std::uint16_t HotNotice = NoButton;
    bool BarOut = false;  // the whole bar is out
    // It was opened by hand, and the keyboard is in it.
    Property<bool> TakesKeyboard{false};

    // Once, before it is shown.
    void Form_Load();
    // Rebuilds the buttons from the window tables.
    void RefreshWins();
    // Places the bar so that only what needs attention shows.
    void Notice();
    // Slides the whole bar out.
    void ShowAll();
    // Shows the form without taking the focus from the active window.
    void Display();
    void Form_Click() { RefreshWins(); }
    // The pointer is on what is to be seen of the bar.
    void PointerEnters() { wake(); }

    // Opens it for the keyboard, or puts it away again.
    void Toggle();
    void PutAway();

    static constexpr int HeadHeight = 360;
    static constexpr int RowHeight = 420;
    static constexpr int BarWidth = 4800;

  protected:
    // The close box of a bar that stands in a window.
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;
    void Form_Unload() override;

  private:
    // An array with what goes with it.
    struct Side {
        Buttons& Array;
        std::uint16_t& Hot;
        int Count = 0;                     // of the buttons in use
        std::vector<Subscriptions> Hands;  // of each button that is loaded
    };

    void load(Side& side, int index);
    void place(Side& side, const BarWindows::Entry& window, const std::string& caption);
    void shorten(Side& side);
    void arrange();
    void clicked(const HButton& button);
    void hovered(Side& side, int index);
    void coolDown(Side& side);
    void coolDownAll();

    void Timer1_Timer();
    void tmrShowDelay_Timer();
    void tmrSlide_Timer();
    void wake();
    void rest();
    void placeAt(int top);
    void openByHand();
    void Screen_Changed();
    bool isShownInWindow() const { return !platform_.Screen.PlacesWindows(); }
    bool isInCorner() const;
    bool isPointedAt() const;
    bool isOn(std::string_view setting) const;

    Platform& platform_;
    GlobError& globError_;
    ComponentSettings& settings_;
    BarWindows& windows_;
    int looksUntilWorkedIn_ = 0;  // the desktop takes its time to give it the keyboard
    Side wins_{Wins, HotWin, 0, {}};
    Side notices_{WinNotice, HotNotice, 0, {}};
    Subscriptions on_;
};

}  // namespace talvora
