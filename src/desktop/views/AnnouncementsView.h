#pragma once
// The window of all announcements: the list, and the text of the chosen one.

#include "announce/frmAnnouncements.h"
#include "desktop/FormView.h"

class QBoxLayout;
class QWidget;

namespace talvora {

class AnnouncementsView final : public FormView {
  public:
    AnnouncementsView(frmAnnouncements& form, const ViewSite& site);

  private:
    QWidget* makeList();
    QWidget* makeText();
    QBoxLayout* makeButtons();

    frmAnnouncements& form_;
};

}  // namespace talvora
