#include "notify/HButton.h"

namespace talvora {

namespace {

constexpr int HighlightPart = 10;  // of the way is done in a step
constexpr int NearlyThere = 10;    // twips

}  // namespace

HButton::HButton(Platform& platform, Event<>& end) : Timer1(platform, end, 1), Timer2(platform, end, 1) {
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    on_ += Timer2.Tick.connect([this] { Timer2_Timer(); });
}

void HButton::Label2_MouseMove() {
    if (Hovering) return;
    FadeIn();
    Hovering = true;
    HOver.raise();
}

void HButton::HOut() {
    if (!Hovering) return;
    Hovering = false;
    FadeOut();
}

void HButton::FadeIn() {
    Label1.Left = Width.get();
    imgInactive.Visible = false;
    imgActive.Visible = true;
    Label1.BackColor = Highlight;
    Timer1.Enabled = true;
    Timer2.Enabled = false;
    Shape1 = false;
}

void HButton::FadeOut() {
    imgActive.Visible = false;
    imgInactive.Visible = true;
    Timer1.Enabled = false;
    Timer2.Enabled = true;
    Shape1 = true;
}

// It slows down on its way in, and on its way out.
void HButton::Timer1_Timer() {
    const int left = Label1.Left - Label1.Left / HighlightPart;
    Label1.Left = left < NearlyThere ? 0 : left;
    if (Label1.Left == 0) Timer1.Enabled = false;
}

void HButton::Timer2_Timer() {
    const int rest = Width - Label1.Left;
    Label1.Left = rest < NearlyThere ? Width.get() : Label1.Left + rest / HighlightPart;
    if (Label1.Left == Width) Timer2.Enabled = false;
}

}  // namespace talvora
