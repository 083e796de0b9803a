#pragma once
// The window of the user's scripts: the entries of a tab, and the chosen one beside them.

#include "desktop/FormView.h"
#include "extensions/frmScripts.h"

class QBoxLayout;

namespace talvora {

class ScriptsView final : public FormView {
  public:
    ScriptsView(frmScripts& form, const ViewSite& site);

  private:
    QBoxLayout* makeEntries();
    QBoxLayout* makeEntry();
    QWidget* makeProblem();
    QBoxLayout* makeButtons();

    frmScripts& form_;
};

}  // namespace talvora
