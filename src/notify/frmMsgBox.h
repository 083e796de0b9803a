#pragma once
// The program's own message box: a queue of notes that never blocks its caller. Notes are shown one after the
// other, in their order.

#include <string>

#include "common/Trap.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Timer.h"

namespace talvora {

class frmMsgBox final : public Form {
  public:
    frmMsgBox(Platform& platform, GlobError& reporter);

    Label Label1;    // the text
    Image Image2;    // the icon, by its number in the form's image list
    Image Picture1;  // the button that acknowledges
    Label Label2;    // the button's caption
    Timer Timer1;    // shows the window once more, a second after it has loaded

    // Waiting notes: text, ":.:", title, ":.:", icon number and "|". A note that holds one of these marks
    // itself comes out broken.
    std::string MsgQueue;
    bool MsgShowing = false;

    void Display(const std::string& text, const std::string& title, int icon);

    // A flood of notes that nobody acknowledges ends here: what comes on top is dropped.
    static constexpr std::size_t LongestQueue = 256 * 1024;

  protected:
    // The close box acknowledges the note; those that wait are not lost with it.
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;

  private:
    void showNext();

    Platform& platform_;
    GlobError& globError_;
    Subscriptions on_;
};

}  // namespace talvora
