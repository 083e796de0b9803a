#pragma once
// The window of the picker of users.

#include "desktop/FormView.h"
#include "mail/frmSelectUser.h"

namespace talvora {

class SelectUserView final : public FormView {
  public:
    SelectUserView(frmSelectUser& form, const ViewSite& site);
};

}  // namespace talvora
