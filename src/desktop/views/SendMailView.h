#pragma once
// The window in which a message is written: to whom, what about, the bar of tools, the text, and how long it
// will be under way.

#include "desktop/FormView.h"
#include "mail/frmSendMail.h"

class QBoxLayout;
class QCompleter;
class QFormLayout;
class QLineEdit;
class QStringListModel;
class QToolBar;

namespace talvora {

class SendMailView final : public FormView {
  public:
    SendMailView(frmSendMail& form, const ViewSite& site);

  private:
    QToolBar* makeTools();
    QFormLayout* makeHead();
    QBoxLayout* makeFoot();
    void suggest(const std::vector<std::string>& names);

    frmSendMail& form_;
    QLineEdit* to_ = nullptr;
    QLineEdit* subject_ = nullptr;
    QCompleter* completer_ = nullptr;
    QStringListModel* names_ = nullptr;
};

}  // namespace talvora
