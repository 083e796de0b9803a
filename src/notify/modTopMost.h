#pragma once
// Keeps a window above the others.

#include "platform/Platform.h"

namespace talvora {

inline void SetBackMost(Platform& platform, Form& form, bool OnTop) {
    platform.Screen.SetTopMost(form, OnTop);
}

}  // namespace talvora
