#pragma once
// The window of the list of files that is being sent.

#include "desktop/FormView.h"
#include "transfer/frmTransferStatus.h"

namespace talvora {

class TransferStatusView final : public FormView {
  public:
    TransferStatusView(frmTransferStatus& form, const ViewSite& site);
};

}  // namespace talvora
