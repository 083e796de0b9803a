#pragma once
// The picker of emoticons: a grid of pictures that types the chosen one's code into the window that asked. It
// goes as soon as the user works elsewhere. It is loaded when it is first displayed; who owns it destroys it
// after `Unloaded`, and makes a new one for the next time.

#include <cstdint>
#include <string>

#include "chat/modEmotions.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Timer.h"
#include "platform/rich/RichTextBox.h"

namespace talvora {

// A window into which codes can be typed.
class EmotionTarget {
  public:
    EmotionTarget() = default;
    EmotionTarget(const EmotionTarget&) = delete;
    EmotionTarget& operator=(const EmotionTarget&) = delete;
    virtual ~EmotionTarget() { Ended.raise(); }

    virtual void Emotion(const std::string& Code) = 0;

    // The window is no more; nothing of it may be called.
    Event<> Ended;
};

class frmEmoticons final : public Form {
  public:
    static constexpr int Cells = 30;

    // A picture and the code that it stands for.
    class Cell : public RichTextBox {
      public:
        Cell() : RichTextBox(true) {}
        Property<std::string> Tag;
    };

    frmEmoticons(Platform& platform, GlobError& globError, const modEmotions& emotions);

    ControlArray<Cell> Ico;  // 0 to Cells - 1
    VScrollBar VScroll1;     // the page
    Timer Timer1;            // looks whether the user has gone elsewhere

    void Display(EmotionTarget& FormOwner, int X, int Y);
    void Reload();

  protected:
    void Form_Unload() override;

  private:
    void Form_Load();
    void showEntry(Cell& cell, std::size_t number);
    void turnPage();
    void Ico_MouseUp(int index);
    void Timer1_Timer();

    Platform& platform_;
    GlobError& globError_;
    const modEmotions& emotions_;
    EmotionTarget* FormOwner_ = nullptr;
    std::int16_t EmotionPage = 0;
    bool loaded_ = false;
    bool wasInFront_ = false;
    Subscription ownerEnds_;
    Subscriptions on_;
};

}  // namespace talvora
