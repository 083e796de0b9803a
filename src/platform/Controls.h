#pragma once
// Models of the simple controls of a form: values plus change notices. They know no toolkit; a view binds
// them.

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Colour.h"
#include "platform/Property.h"
#include "platform/RuntimeError.h"

namespace talvora {

class Label {
  public:
    Label() = default;
    explicit Label(std::string caption) : Caption(std::move(caption)) {}

    Property<std::string> Caption;
    Property<bool> Visible{true};
    Property<bool> FontBold{false};
    Property<std::optional<Colour>> ForeColor;  // nothing: the normal colour
    Event<> Click;
};

// A button with words on it.
class CommandButton {
  public:
    explicit CommandButton(std::string caption = {}, bool enabled = true)
        : Caption(std::move(caption)), Enabled(enabled) {}

    Property<std::string> Caption;
    Property<bool> Enabled;
    Property<bool> Visible{true};
    Property<bool> Default{false};  // Enter anywhere in the form presses it
    Event<> Click;
};

// A picture of an image list, by its number there.
class Image {
  public:
    explicit Image(int picture = 0, bool visible = true) : Picture(picture), Visible(visible) {}

    Property<int> Picture;
    Property<bool> Visible;
    Event<> Click;
};

// Setting `Value` and ticking it by hand both raise Click, if it differs.
class CheckBox {
  public:
    explicit CheckBox(bool value = false) : Value(value) {
        own_ = Value.Changed.connect([this](const bool&) { Click.raise(); });
    }

    Property<std::string> Caption;
    Property<bool> Value;
    Property<bool> Visible{true};
    Event<> Click;

  private:
    Subscription own_;
};

// A list that folds out, to choose one line from. Code and hands set `ListIndex` alike, and both raise Click
// if it differs; it counts from 0 and is -1 while nothing is chosen.
class ComboBox {
  public:
    ComboBox() {
        own_ = ListIndex.Changed.connect([this](const int&) { Click.raise(); });
    }

    std::vector<std::string> List;  // filled before the box is shown
    Property<int> ListIndex{-1};
    Event<> Click;

    // The line chosen; empty while there is none.
    std::string Text() const {
        const int index = ListIndex;
        return index >= 0 && std::cmp_less(index, List.size()) ? List[static_cast<std::size_t>(index)]
                                                               : std::string();
    }

  private:
    Subscription own_;
};

// A box that text is typed in. Code and hands set `Text` alike; its `Changed` is the control's Change.
class TextBox {
  public:
    Property<std::string> Text;
    Property<bool> Enabled{true};
    Property<bool> Locked{false};               // read-only for hands; code may always change it
    Property<std::optional<Colour>> BackColor;  // nothing: the normal colour
    // The caret, and how much is selected behind it, in characters.
    Property<std::size_t> SelStart;
    Property<std::size_t> SelLength;

    // A key that is about to be typed; a handler sets it to 0 to discard it.
    Event<int&> KeyPress;
    // The box has been given the keyboard, by code or by hand, and has lost it.
    Event<> GotFocus;
    Event<> LostFocus;
    void SetFocus() {
        hasFocus_ = true;
        GotFocus.raise();
    }

    // What the user's hands do.
    void userPresses(int key) { KeyPress.raise(key); }
    void userEnters() {
        if (!hasFocus_) SetFocus();
    }
    void userLeaves() {
        if (std::exchange(hasFocus_, false)) LostFocus.raise();
    }

  private:
    bool hasFocus_ = false;
};

// A box to type in with a list that folds out: a line chosen there becomes the text.
class EditCombo : public TextBox {
  public:
    std::vector<std::string> List;  // filled before the box is shown
};

namespace Key {
inline constexpr int Return = 13;
inline constexpr int LineFeed = 10;  // what Ctrl+Enter types
inline constexpr int Escape = 27;
}  // namespace Key

class Menu {
  public:
    Property<std::string> Caption;
    Property<std::string> Tag;  // for the owner's use
    Property<int> Picture{0};   // its number in an image list; 0 is none
    Property<bool> Visible{true};
    Property<bool> Enabled{true};
    Property<bool> Checked{false};
    Event<> Click;
};

// `Change` follows every new value that code sets; while the user drags it is `Scroll`, and `Change` comes
// when he lets go.
class VScrollBar {
  public:
    VScrollBar() {
        own_ = Value.Changed.connect([this](int) { (dragged_ ? Scroll : Change).raise(); });
    }

    Property<int> Min{0};
    Property<int> Max{32767};
    Property<int> Value{0};
    Property<bool> Enabled{true};
    Event<> Change;
    Event<> Scroll;

    void userDrags(int value) {
        dragged_ = true;
        Value = std::clamp(value, Min.get(), std::max(Min.get(), Max.get()));
        dragged_ = false;
    }
    void userLetsGo() { Change.raise(); }

  private:
    bool dragged_ = false;
    Subscription own_;
};

// Controls of one name told apart by an index, which come and go while the form lives.
template <class Control>
class ControlArray {
  public:
    // Entry `index`; faults with 340 as the classic run-time does if it is not loaded.
    Control& operator()(int index) const {
        const auto found = controls_.find(index);
        if (found == controls_.end()) {
            throw RuntimeError(340, "Control array element '" + std::to_string(index) + "' doesn't exist");
        }
        return *found->second;
    }
    Control& Load(int index) { return Load(index, std::make_unique<Control>()); }
    // The same with a control that takes something to be made.
    Control& Load(int index, std::unique_ptr<Control> made) {
        auto& control = controls_[index];
        if (control != nullptr) throw RuntimeError(360, "Object already loaded");
        control = std::move(made);
        Loaded.raise(index);
        return *control;
    }
    void Unload(int index) {
        if (controls_.erase(index) != 0) Unloaded.raise(index);
    }
    int UBound() const { return controls_.empty() ? -1 : controls_.rbegin()->first; }

    Event<int> Loaded;
    Event<int> Unloaded;

  private:
    std::map<int, std::unique_ptr<Control>> controls_;
};

}  // namespace talvora
