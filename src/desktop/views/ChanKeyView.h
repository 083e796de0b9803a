#pragma once
// The window that asks for the key of a channel, or for the name of a new one.

#include "desktop/FormView.h"
#include "notify/frmChanKey.h"

namespace talvora {

class ChanKeyView final : public FormView {
  public:
    ChanKeyView(frmChanKey& form, const ViewSite& site);
};

}  // namespace talvora
