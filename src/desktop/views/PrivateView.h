#pragma once
// The window of a private chat.

#include "chat/frmPM.h"
#include "desktop/views/ChatView.h"

namespace talvora {

class PrivateView final : public ChatView {
  public:
    PrivateView(frmPM& window, const ViewSite& site);

  protected:
    void fillMenu(QMenu& menu, Menu& model) override;

  private:
    frmPM& window_;
};

}  // namespace talvora
