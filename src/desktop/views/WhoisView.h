#pragma once
// The window of what is known of a user. Everything in it can be selected and copied.

#include "desktop/FormView.h"
#include "notify/frmWhois.h"

class QFormLayout;

namespace talvora {

class WhoisView final : public FormView {
  public:
    WhoisView(frmWhois& form, const ViewSite& site);

  protected:
    void comeForward() override;

  private:
    // A row with the system's own text, and the same for people beside it.
    void addRow(QFormLayout& rows, const QString& title, Label& text, Label* words = nullptr);
};

}  // namespace talvora
