#pragma once
// A picture while it is read: what the control words tell of it, and its bytes.

#include <optional>
#include <string>
#include <string_view>

#include "platform/rich/RichText.h"

namespace talvora {

class RtfPicture {
  public:
    void Begin();
    void SetKind(std::optional<Picture::Kind> kind) { kind_ = kind; }
    void SetGoalWidth(int twips) { width_.Goal = twips; }
    void SetGoalHeight(int twips) { height_.Goal = twips; }
    void SetScaleX(int percent) { width_.Percent = percent; }
    void SetScaleY(int percent) { height_.Percent = percent; }
    // Takes the digits and steps over all else.
    void AddHex(std::string_view digits);
    void AddBytes(std::string_view bytes);

    // Nothing if it is no picture of a kind that is shown, or not a sound one.
    std::optional<Picture> Finish();

  private:
    struct Length {
        int Goal = 0;
        int Percent = 100;
    };

    static int twips(Length length, int pixels);

    std::optional<Picture::Kind> kind_;
    Length width_;
    Length height_;
    std::string bytes_;
    int half_ = -1;  // the first digit of a pair
};

}  // namespace talvora
