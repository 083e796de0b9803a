#pragma once
// The bar of the open windows as a window that stays where the user puts it: a button a window, those with
// unread text under a heading of their own.

#include <QPointer>
#include <QPushButton>
#include <map>
#include <utility>

#include "desktop/FormView.h"
#include "notify/frmPopup.h"

class QVBoxLayout;

namespace talvora {

class PopupView final : public FormView {
  public:
    PopupView(frmPopup& form, const ViewSite& site);

  private:
    void addSection(Label& heading, frmPopup::Buttons& buttons, QVBoxLayout& rows);
    void addButton(frmPopup::Buttons& buttons, int index, QVBoxLayout& rows);

    // What ties a button to its model; it goes with the model.
    using Place = std::pair<const frmPopup::Buttons*, int>;
    struct Hands {
        QPointer<QPushButton> Button;
        QPointer<QObject> Hover;
        Subscriptions On;
    };
    void drop(const Place& place);

    frmPopup& form_;
    std::map<Place, Hands> hands_;
};

}  // namespace talvora
