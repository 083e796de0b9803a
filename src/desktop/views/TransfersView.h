#pragma once
// The window of what has become of the files sent and received.

#include "desktop/FormView.h"
#include "transfer/frmTransfers.h"

namespace talvora {

class TransfersView final : public FormView {
  public:
    TransfersView(frmTransfers& form, const ViewSite& site);

  private:
    QWidget* makeList();

    frmTransfers& form_;
};

}  // namespace talvora
