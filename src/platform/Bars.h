#pragma once
// Models of the bars of a form: progress, tool buttons, tabs. A view binds them.

#include <algorithm>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/Property.h"
#include "platform/RuntimeError.h"

namespace talvora {

// How far something is. `Value` lies from `Min` to `Max`, whatever is set: what is shown here comes from
// strangers, and a wrong number of theirs is no fault of the program. 64 bits, since a file's size is shown.
class ProgressBar {
  public:
    std::int64_t Min() const { return min_; }
    std::int64_t Max() const { return max_; }
    std::int64_t Value() const { return value_; }

    void SetMin(std::int64_t min) { set(min, std::max(min, max_), value_); }
    void SetMax(std::int64_t max) { set(std::min(min_, max), max, value_); }
    void SetValue(std::int64_t value) { set(min_, max_, value); }

    Event<> Changed;

  private:
    void set(std::int64_t min, std::int64_t max, std::int64_t value) {
        value = std::clamp(value, min, max);
        if (min == min_ && max == max_ && value == value_) return;
        min_ = min;
        max_ = max;
        value_ = value;
        Changed.raise();
    }

    std::int64_t min_ = 0;
    std::int64_t max_ = 100;
    std::int64_t value_ = 0;
};

enum class ButtonStyle { Press, Toggle, Separator };

class ToolbarButton {
  public:
    ToolbarButton(int index, ButtonStyle style, std::string caption, std::string toolTip)
        : Index(index), Style(style), Caption(std::move(caption)), ToolTipText(std::move(toolTip)) {}

    const int Index;  // counted from 1, separators included
    const ButtonStyle Style;
    const std::string Caption;
    const std::string ToolTipText;  // empty: the caption says enough
    Property<bool> Enabled{true};
    Property<bool> Value{false};  // of a toggle: it is down
};

class Toolbar {
  public:
    // Before the bar is shown.
    ToolbarButton& Add(ButtonStyle style, std::string caption = {}, std::string toolTip = {}) {
        return buttons_.emplace_back(Count() + 1, style, std::move(caption), std::move(toolTip));
    }
    int Count() const { return static_cast<int>(buttons_.size()); }
    // Faults with 35600 if there is no such button.
    ToolbarButton& Buttons(int index) {
        if (index < 1 || index > Count()) throw RuntimeError(35600, "Index out of bounds");
        return buttons_[static_cast<std::size_t>(index - 1)];
    }

    // By hand only; a toggle has its new value already.
    Event<ToolbarButton&> ButtonClick;
    void userPresses(ToolbarButton& button) {
        if (!button.Enabled || button.Style == ButtonStyle::Separator) return;
        if (button.Style == ButtonStyle::Toggle) button.Value = !button.Value;
        ButtonClick.raise(button);
    }

  private:
    std::deque<ToolbarButton> buttons_;  // they stay where they are
};

// Captions of which one is chosen; they count from 0.
class TabStrip {
  public:
    explicit TabStrip(std::vector<std::string> captions) : captions_(std::move(captions)) {}

    const std::vector<std::string>& Captions() const { return captions_; }
    // By code: raises no Click.
    Property<int> Selected{0};
    // By hand, also on the tab that is chosen already.
    Event<int> Click;
    void userClicks(int index) {
        Selected = index;
        Click.raise(index);
    }

  private:
    std::vector<std::string> captions_;
};

}  // namespace talvora
