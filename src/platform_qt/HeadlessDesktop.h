#pragma once
// The desktop of a program without a screen: one of 1024 x 768 pixels, 15 twips a pixel.

#include "platform/Platform.h"

namespace talvora {

class HeadlessDesktop final : public Desktop {
  public:
    int ScreenWidth() const override { return 1024 * 15; }
    int ScreenHeight() const override { return 768 * 15; }
};

}  // namespace talvora
