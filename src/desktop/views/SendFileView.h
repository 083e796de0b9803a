#pragma once
// The dialog in which files and the receiver's address are chosen. Files can be dropped on it, too.

#include "desktop/FormView.h"
#include "transfer/frmSendFile.h"

class QBoxLayout;
class QPushButton;

namespace talvora {

class SendFileView final : public FormView {
  public:
    SendFileView(frmSendFile& form, const ViewSite& site);

  protected:
    // The same as "Abort", so that nobody waits for an address any more.
    void closeBox() override { form_.Command5.Click.raise(); }

  private:
    QWidget* makeMachine();
    QWidget* makeFiles();
    QBoxLayout* makeButtons();
    QPushButton* button(CommandButton& model, const QKeySequence& keys);

    frmSendFile& form_;
};

}  // namespace talvora
