#include "notify/frmPopup.h"

#include <algorithm>

#include "notify/modTopMost.h"
#include "platform/Pointer.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int TwipsAPixel = 15;
constexpr int CornerHeight = 5;  // pixels
// While the pointer is of interest, and so no load: nobody sees that it isn't each millisecond.
constexpr int LookPeriod = 50;  // milliseconds
constexpr int ShowDelay = 500;  // milliseconds
// How long the desktop may take to give the keyboard to a bar that was opened by hand: two seconds.
constexpr int LooksUntilWorkedIn = 2000 / LookPeriod;
constexpr int SlideStep = 120;  // twips
constexpr int SlidePeriod = 4;  // milliseconds
constexpr char ChannelMark = 'C';

}  // namespace

frmPopup::frmPopup(Platform& platform, GlobError& reporter, ComponentSettings& settings, BarWindows& windows)
    : Timer1(platform, Ending, LookPeriod, true),
      tmrShowDelay(platform, Ending, ShowDelay),
      tmrSlide(platform, Ending, SlidePeriod),
      platform_(platform),
      globError_(reporter),
      settings_(settings),
      windows_(windows) {
    Caption = "Talvora windows";
    Width = BarWidth;
    Label1.Visible = false;
    Picture1.Top = HeadHeight;
    Picture2.Visible = false;
    for (Side* side : {&wins_, &notices_}) {
        load(*side, 0);
        side->Array(0).Visible = false;
    }
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    on_ += tmrShowDelay.Tick.connect([this] { tmrShowDelay_Timer(); });
    on_ += tmrSlide.Tick.connect([this] { tmrSlide_Timer(); });
    on_ += platform.Screen.ThePointer().Arrived.connect([this] { Timer1.Wake(); });
    on_ += platform.Screen.ScreenChanged.connect([this] { Screen_Changed(); });
}

void frmPopup::Form_Load() {
    trapped(globError_, "Form_Load", [&](Trap& step) {
        HotWin = HotNotice = NoButton;
        BarOut = false;
        step([&] { arrange(); });
        step([&] { Notice(); });
        step([&] { rest(); });
    });
}

// ---- The buttons

void frmPopup::load(Side& side, int index) {
    HButton& button = side.Array.Load(index, std::make_unique<HButton>(platform_, Ending));
    button.Width = BarWidth;
    button.Height = RowHeight;
    if (index > 0) button.Top = side.Array(index - 1).Top + side.Array(index - 1).Height;
    Subscriptions hands;
    hands += button.HOver.connect([this, &side, index] { hovered(side, index); });
    hands += button.Click.connect([this, &button] { clicked(button); });
    side.Hands.push_back(std::move(hands));
}

// The buttons that go on are those that a rebuilding from nothing would make; one that stands for another
// window than before is no longer hot.
void frmPopup::RefreshWins() {
    trapped(globError_, "RefreshWins", [&](Trap& step) {
        if (IsUnloaded()) return;
        wins_.Count = notices_.Count = 0;
        const std::vector<BarWindows::Entry> open = windows_.OpenWindows();
        for (const BarWindows::Entry& window : open) {
            step([&] {
                if (window.HasNews) {
                    place(notices_, window, window.Title + " : " + window.LastText);
                } else {
                    place(wins_, window, window.Title);
                }
            });
        }
        step([&] { shorten(wins_); });
        step([&] { shorten(notices_); });
        step([&] { arrange(); });
        step([&] { Notice(); });
    });
}

void frmPopup::place(Side& side, const BarWindows::Entry& window, const std::string& caption) {
    const int index = side.Count;
    if (index > side.Array.UBound()) load(side, index);
    HButton& button = side.Array(index);
    const std::string tag = (window.IsChannel ? std::string(1, ChannelMark) : "") + CStr(window.Index);
    if (side.Hot == index && button.Tag != tag) coolDown(side);
    const int picture = window.IsChannel ? BarPicture::Channel : BarPicture::Private;
    button.Tag = tag;
    button.Image = picture;
    button.imgActive.Picture = picture;
    button.InactiveImage = BarPicture::greyTwin(picture);
    button.imgInactive.Picture = BarPicture::greyTwin(picture);
    button.Caption = caption;
    button.Visible = true;
    ++side.Count;
}

void frmPopup::shorten(Side& side) {
    if (side.Hot != NoButton && side.Hot >= side.Count) coolDown(side);
    for (int index = side.Array.UBound(); index >= std::max(side.Count, 1); --index) {
        side.Array.Unload(index);
        side.Hands.pop_back();
    }
    if (side.Count == 0) side.Array(0).Visible = false;
}

// All of it fits onto the screen: news get up to half of the room, the rest is for the others.
void frmPopup::arrange() {
    const bool news = notices_.Count > 0;
    const int room = std::max(platform_.Screen.ScreenHeight() - (news ? 2 : 1) * HeadHeight, RowHeight);
    const int noticeHeight = std::min(notices_.Count * RowHeight, room / 2);
    Picture1.Height = std::min(wins_.Count * RowHeight, room - noticeHeight);
    Picture2.Top = Picture1.Top + Picture1.Height + HeadHeight;
    Picture2.Height = noticeHeight;
    Label1.Visible = news;
    Picture2.Visible = news;
    if (isShownInWindow()) return;  // its size is the user's
    Height = news ? Picture2.Top + Picture2.Height : Picture1.Top + Picture1.Height;
}

void frmPopup::clicked(const HButton& button) {
    trapped(globError_, "Wins_Click", [&](Trap& step) {
        const bool isChannel = button.Tag.starts_with(ChannelMark);
        const std::string slot = button.Tag.substr(isChannel ? 1 : 0);
        step([&] { windows_.BringUp(isChannel, CInt(slot)); });
    });
}

// Only one button shows its coloured picture.
void frmPopup::hovered(Side& side, int index) {
    if (side.Hot != index) coolDown(side);
    coolDown(&side == &wins_ ? notices_ : wins_);
    side.Hot = static_cast<std::uint16_t>(index);
    wake();
}

void frmPopup::coolDown(Side& side) {
    const std::uint16_t index = side.Hot;
    side.Hot = NoButton;
    if (index <= side.Array.UBound()) side.Array(index).HOut();
}

void frmPopup::coolDownAll() {
    coolDown(wins_);
    coolDown(notices_);
}

// ---- Where it stands

bool frmPopup::isOn(std::string_view setting) const {
    return settings_.Get(Section::Settings, std::string(setting), "T") != "F";
}

void frmPopup::placeAt(int top) {
    tmrSlide.Enabled = false;
    if (isShownInWindow()) return;
    Left = platform_.Screen.ScreenWidth() - Width;
    Top = top;
}

void frmPopup::Notice() {
    trapped(globError_, "Notice", [&](Trap& step) {
        if (BarOut) {
            // A bar that has grown or shrunk goes on from where it is.
            if (!tmrSlide.Enabled) placeAt(0);
            return;
        }
        if (isShownInWindow()) Hide();
        const bool wanted =
            Label1.Visible && !isShownInWindow() && step.test([&] { return isOn("NoticeBar"); });
        placeAt(wanted ? -Picture2.Top : -Height);
        if (wanted) Display();
    });
}

// The window of the bar never takes the keyboard by itself, so there is no foreground window to restore.
void frmPopup::Display() {
    trapped(globError_, "Display", [&](Trap& step) {
        Show();
        step([&] { SetBackMost(platform_, *this, true); });
    });
}

void frmPopup::ShowAll() {
    trapped(globError_, "ShowAll", [&](Trap& step) {
        if (IsUnloaded() || step.test([&] { return !isOn("EnableBar"); })) return;
        placeAt(-Height);
        BarOut = true;  // before it moves, since Timer1 looks at it meanwhile
        Display();
        tmrSlide.Enabled = !isShownInWindow();
        wake();
    });
}

void frmPopup::tmrSlide_Timer() {
    Top = std::min(Top + SlideStep, 0);
    if (Top == 0) tmrSlide.Enabled = false;
}

void frmPopup::tmrShowDelay_Timer() {
    tmrShowDelay.Enabled = false;
    ShowAll();
}

void frmPopup::Screen_Changed() {
    if (IsUnloaded()) return;
    RefreshWins();
    rest();
}

// ---- By hand

void frmPopup::Toggle() {
    if (BarOut) {
        PutAway();
    } else {
        ShowAll();
        if (BarOut) openByHand();
    }
}

// The keyboard goes to a window that is there as a whole.
void frmPopup::openByHand() {
    trapped(globError_, "Toggle", [&](Trap& step) {
        if (!isShownInWindow()) Top = 0;
        tmrSlide.Enabled = false;
        TakesKeyboard = true;
        looksUntilWorkedIn_ = LooksUntilWorkedIn;
        step([&] { platform_.Screen.SetForegroundWindow(*this); });
    });
}

void frmPopup::PutAway() {
    coolDownAll();
    TakesKeyboard = false;
    looksUntilWorkedIn_ = 0;
    if (!BarOut) return;
    BarOut = false;
    Notice();
}

void frmPopup::Form_QueryUnload(bool& cancel, CloseReason reason) {
    if (reason != CloseReason::UserClosesBox) return;
    cancel = true;
    PutAway();
}

void frmPopup::Form_Unload() {
    platform_.Screen.ThePointer().StopWaiting();
}

// ---- The pointer

bool frmPopup::isInCorner() const {
    const auto at = platform_.Screen.ThePointer().Position();
    const int left = (platform_.Screen.ScreenWidth() - Width) / TwipsAPixel;
    const int right = platform_.Screen.ScreenWidth() / TwipsAPixel;
    return at && at->Y >= 0 && at->Y < CornerHeight && at->X >= left && at->X < right;
}

bool frmPopup::isPointedAt() const {
    const auto at = platform_.Screen.ThePointer().Position();
    if (!at || !Visible) return false;
    const int x = at->X * TwipsAPixel - Left;
    const int y = at->Y * TwipsAPixel;
    return x >= 0 && x < Width && y >= 0 && y < Top + Height;
}

// The bar that the pointer has opened has no focus, so it stays as long as the pointer is on it; one that was
// opened by hand, as long as it is worked in.
void frmPopup::Timer1_Timer() {
    if (!BarOut && isInCorner()) {
        tmrShowDelay.Enabled = true;
        return;
    }
    tmrShowDelay.Enabled = false;
    if (platform_.Screen.ForegroundWindow() == this) {
        looksUntilWorkedIn_ = 0;
        return;
    }
    if (looksUntilWorkedIn_ > 0 && --looksUntilWorkedIn_ > 0) return;
    if (isInCorner() || isPointedAt()) return;
    PutAway();
    rest();
}

// A window of its own is told by its view when the pointer leaves.
void frmPopup::wake() {
    if (!isShownInWindow()) Timer1.Wake();
}

// Nothing is looked at until the pointer comes back to the corner.
void frmPopup::rest() {
    const int left = (platform_.Screen.ScreenWidth() - Width) / TwipsAPixel;
    platform_.Screen.ThePointer().AwaitAtTop(left, CornerHeight);
    Timer1.Rest();
}

}  // namespace talvora
