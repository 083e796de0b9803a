#pragma once
// A section of the bar of open windows: its buttons one below the other, as tall as the model says. It lives
// on the models of the buttons, and is told when they go.

#include <QPointer>
#include <QPushButton>
#include <map>

#include "notify/frmPopup.h"

class QLabel;
class QVBoxLayout;

namespace talvora {

class BarSection final : public QWidget {
  public:
    // Who calls HOut when the pointer leaves a button: the view, or the model of the bar.
    enum class Cooling { ByView, ByModel };

    BarSection(frmPopup::Buttons& buttons, Cooling cooling, QWidget* parent);

    // The models go.
    void Release();
    // The keyboard goes to the first button; false if there is none.
    bool TakeFocus();
    // The line above a section.
    static QLabel* Heading(Label& model, Subscriptions& on, QWidget* parent);

  private:
    void addButton(int index);
    void drop(int index);

    // What ties a button to its model; it goes with the model.
    struct Hands {
        QPointer<QPushButton> Button;
        QPointer<QObject> Hover;
        Subscriptions On;
    };

    frmPopup::Buttons& buttons_;
    Cooling cooling_;
    QVBoxLayout* rows_;
    std::map<int, Hands> hands_;
    Subscriptions on_;
};

}  // namespace talvora
