#pragma once
// The window of a channel: the talk and its users.

#include "chat/frmChanChat.h"
#include "desktop/views/ChatView.h"

namespace talvora {

class ChannelView final : public ChatView {
  public:
    ChannelView(frmChanChat& window, const ViewSite& site);

  protected:
    void fillMenu(QMenu& menu, Menu& model) override;

  private:
    frmChanChat& window_;
};

}  // namespace talvora
