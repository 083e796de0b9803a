#pragma once
// The window of the file receiver: first the question whether to accept, then how far the files are. It comes
// forward by itself while its user may be typing, so no key that he may be about to press accepts anything.

#include "desktop/FormView.h"
#include "transfer/frmReceiveFile.h"

class QBoxLayout;

namespace talvora {

class ReceiveFileView final : public FormView {
  public:
    ReceiveFileView(frmReceiveFile& form, const ViewSite& site);

  private:
    QWidget* makeQuestion();
    QWidget* makeProgress();
    QBoxLayout* makeButtons();

    frmReceiveFile& form_;
};

}  // namespace talvora
