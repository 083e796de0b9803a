#pragma once
// The panel of the most recent announcement, for the mail area of the main window.

#include <QWidget>

#include "announce/picAnn.h"

namespace talvora {

struct Platform;

class AnnouncementPanel final : public QWidget {
  public:
    // Both outlive the panel.
    AnnouncementPanel(picAnn& model, Platform& platform, QWidget* parent);

  private:
    QWidget* makeButton(Label& model);

    Subscriptions on_;
};

}  // namespace talvora
