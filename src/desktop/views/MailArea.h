#pragma once
// The mail area of the main window: the tabs, the list with its filter, its summary and its menus, and what
// mail is doing now. The main window's view owns it.

#include <QWidget>

#include "mail/MailPanel.h"

class QBoxLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QStackedWidget;

namespace talvora {

class ListTree;

class MailArea final : public QWidget {
  public:
    MailArea(MailPanel& panel, QWidget* parent);

    // What the tab of the announcements shows. The area owns it.
    void setAnnouncements(QWidget* page);
    // The menu of a row, if that is what is meant.
    void fillMenu(QMenu& menu, const Menu& model);
    // Of the main menu: writing, and the drafts.
    void fillMain(QMenu& menu);
    // The incoming mails, with the keyboard in their list.
    void showIncoming();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QBoxLayout* makeTools();
    QWidget* makeMails();
    void makeList();
    QBoxLayout* makeStatus();
    void connectKeys();
    void fillDrafts(QMenu& menu);
    void widths();
    void fitSubject();
    void showNewest();

    MailPanel& panel_;
    QStackedWidget* pages_;
    ListTree* list_ = nullptr;
    QLineEdit* filter_ = nullptr;
    bool seen_ = false;
    Subscriptions on_;
};

}  // namespace talvora
