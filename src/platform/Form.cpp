#include "platform/Form.h"

namespace talvora {

bool Form::Unload(CloseReason reason) {
    if (unloaded_) return true;
    bool cancel = false;
    Form_QueryUnload(cancel, reason);
    if (cancel) return false;
    unloaded_ = true;
    Ending.raise();
    Form_Unload();
    Hide();
    Unloaded.raise();
    return true;
}

void Form::Form_QueryUnload(bool&, CloseReason) {}

}  // namespace talvora
