#pragma once
// The user's hands as the models of lists and trees count them.

#include <Qt>

namespace talvora {

// 1 left, 2 right, 4 middle.
int numberOf(Qt::MouseButton button);
// Adds up 1 Shift, 2 Ctrl, 4 Alt.
int shiftOf(Qt::KeyboardModifiers modifiers);

}  // namespace talvora
