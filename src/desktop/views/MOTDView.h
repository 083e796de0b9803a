#pragma once
// The window of the server's message of the day.

#include "desktop/FormView.h"
#include "notify/frmMOTD.h"

namespace talvora {

class MOTDView final : public FormView {
  public:
    MOTDView(frmMOTD& form, const ViewSite& site);
};

}  // namespace talvora
