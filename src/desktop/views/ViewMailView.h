#pragma once
// The window of a message: who has written, what about, the text, and what can be done with it.

#include "desktop/FormView.h"
#include "mail/frmViewMail.h"

class QBoxLayout;
class QPushButton;

namespace talvora {

class ViewMailView final : public FormView {
  public:
    ViewMailView(frmViewMail& form, const ViewSite& site);

  private:
    QBoxLayout* makeButtons();
    QBoxLayout* makeHead();
    QPushButton* add(QBoxLayout& row, const char* icon, const QString& keys, const QKeySequence& key);
    void print();

    frmViewMail& form_;
};

}  // namespace talvora
