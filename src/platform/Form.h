#pragma once
// A window as a model: what it shows is in the controls that a derived form owns. A form decides; its view
// only binds and forwards.

#include <string>

#include "platform/Property.h"

namespace talvora {

class Menu;

enum class FormState { Normal, Minimized };

// Who asks a form to close.
enum class CloseReason { UserClosesBox, Code };

class Form {
  public:
    virtual ~Form() = default;

    Property<std::string> Caption;
    Property<bool> Visible{false};
    // In twips, 1440 to the inch.
    Property<int> Left{0};
    Property<int> Top{0};
    Property<int> Width{0};
    Property<int> Height{0};

    Property<FormState> WindowState{FormState::Normal};

    void Show() {
        Visible = true;
        Shown.raise();
    }
    void Hide() { Visible = false; }

    // Asks QueryUnload, and hides the form for good if nothing objects. True if the form is unloaded.
    bool Unload(CloseReason reason = CloseReason::Code);
    bool IsUnloaded() const { return unloaded_; }
    // The form is about to be unloaded for good: what runs for it stops now, its timers by themselves.
    Event<> Ending;
    Event<> Unloaded;
    // Show has been called, perhaps for a form that was visible already.
    Event<> Shown;

    // A menu of the form is to open at the pointer.
    Event<Menu&> PopupMenu;

  protected:
    // Sets `cancel` to keep the form.
    virtual void Form_QueryUnload(bool& cancel, CloseReason reason);
    // Stops what the form still does, at once.
    virtual void Form_Unload() {}

  private:
    bool unloaded_ = false;
};

}  // namespace talvora
