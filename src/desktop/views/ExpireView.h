#pragma once
// The dialog of a message's expiry.

#include "desktop/FormView.h"
#include "mail/frmExpire.h"

namespace talvora {

class ExpireView final : public FormView {
  public:
    ExpireView(frmExpire& form, const ViewSite& site);
};

}  // namespace talvora
