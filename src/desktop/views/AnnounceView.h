#pragma once
// The window in which an announcement is written and posted.

#include "announce/frmAnnounce.h"
#include "desktop/FormView.h"

class QBoxLayout;
class QFormLayout;

namespace talvora {

class AnnounceView final : public FormView {
  public:
    AnnounceView(frmAnnounce& form, const ViewSite& site);

  private:
    QFormLayout* makeHead();
    QWidget* makeText();
    QBoxLayout* makeButtons();

    frmAnnounce& form_;
};

}  // namespace talvora
