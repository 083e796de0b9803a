#pragma once
// The hover button: a picture and a caption, with a highlight that slides in from the right while the pointer
// is on it. It does not find out by itself that the pointer has left: its owner calls HOut. Owned by the form
// that shows it. Lengths are in twips.

#include <string>

#include "platform/Controls.h"
#include "platform/Timer.h"

namespace talvora {

class HButton {
  public:
    // `end` is the event of the owner's end.
    HButton(Platform& platform, Event<>& end);

    Property<std::string> Caption;
    Property<int> Image{0};  // the pictures by their numbers in a list of the owner: while the pointer
    Property<int> InactiveImage{0};  // is on the button, and while it is not
    std::string Tag;                 // for the owner's use
    Property<bool> Visible{true};
    Property<int> Left{0};
    Property<int> Top{0};
    Property<int> Width{0};
    Property<int> Height{0};

    // The highlight, which reaches from here to the right edge.
    struct {
        Property<int> Left{0};
        Property<Colour> BackColor{0};
    } Label1;
    talvora::Image imgActive{0, false};
    talvora::Image imgInactive;
    Property<bool> Shape1{true};  // the frame of a button at rest
    Timer Timer1;                 // the highlight comes
    Timer Timer2;                 // and goes

    bool Hovering = false;

    Event<> HOver;
    Event<> Click;
    Event<> DblClick;
    Event<int, int> MouseUp;  // Button, Shift

    // The pointer moves over the caption, which is the surface that takes the mouse.
    void Label2_MouseMove();
    // Back to the inactive look.
    void HOut();

    static constexpr Colour Highlight = 15971759;

  private:
    void FadeIn();
    void FadeOut();
    void Timer1_Timer();
    void Timer2_Timer();

    Subscriptions on_;
};

}  // namespace talvora
