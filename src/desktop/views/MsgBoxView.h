#pragma once
// The window of a note that blocks nobody.

#include "desktop/FormView.h"
#include "notify/frmMsgBox.h"

namespace talvora {

class MsgBoxView final : public FormView {
  public:
    MsgBoxView(frmMsgBox& form, const ViewSite& site);
};

}  // namespace talvora
