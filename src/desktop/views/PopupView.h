#pragma once
// The bar of the open windows as a window that stays where the user puts it, on a desktop that lets nobody
// place a window.

#include "desktop/FormView.h"
#include "desktop/views/BarSection.h"

namespace talvora {

class PopupView final : public FormView {
  public:
    PopupView(frmPopup& form, const ViewSite& site);
};

}  // namespace talvora
