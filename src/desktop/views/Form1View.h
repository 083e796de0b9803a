#pragma once
// The main window: who I am and in what state, how the session stands, what is open and what is new, the
// channels and the users.

#include "announce/picAnn.h"
#include "desktop/FileDrop.h"
#include "desktop/FormView.h"
#include "session/Form1.h"

class QPushButton;
class QTabWidget;
class QVBoxLayout;

namespace talvora {

class ListTree;
class MailArea;
class UserTreeArea;

class Form1View final : public FormView {
  public:
    // The panel of the latest announcement outlives the view.
    Form1View(Form1& form, picAnn& announcement, const ViewSite& site);

  protected:
    void fillMenu(QMenu& menu, Menu& model) override;
    void closeBox() override;

  private:
    QWidget* makeHeader();
    QWidget* makeSession();
    QWidget* makeTrouble();
    QWidget* makeWindows();
    QTabWidget* makePeople();
    ListTree* addUsers(QTabWidget& tabs, UserList& users, const QString& name, const QString& emptyText);
    void befriend(const std::string& nick);
    QWidget* makeChannels();
    void addMail();
    QPushButton* makeUnread();
    QWidget* makeFooter();
    // What is done with files that are dropped on a user.
    TakeFiles offerFiles();
    void fillStates(QMenu& menu);
    void fillUsers(QMenu& menu);
    void fillMain(QMenu& menu);

    Form1& form_;
    picAnn& announcement_;
    QTabWidget* tabs_ = nullptr;
    UserTreeArea* everybody_ = nullptr;
    MailArea* mail_ = nullptr;  // none without mail
};

}  // namespace talvora
