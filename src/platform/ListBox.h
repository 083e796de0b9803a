#pragma once
// The model of a list of plain lines, of which one may be selected. Lines count from 0.

#include <string>
#include <utility>
#include <vector>

#include "platform/Property.h"
#include "platform/RuntimeError.h"

namespace talvora {

class ListBox {
  public:
    ListBox() {
        own_ = ListIndex.Changed.connect([this](const int& index) {
            if (index >= 0 && !following_) Click.raise();
        });
    }

    int ListCount() const { return static_cast<int>(lines_.size()); }
    // Faults with 5 if there is no such line.
    const std::string& List(int index) const { return lines_[checked(index)]; }

    void AddItem(std::string line) {
        lines_.push_back(std::move(line));
        LineAdded.raise(ListCount() - 1);
    }
    // Another text for a line; faults with 5 if there is no such line.
    void SetItem(int index, std::string line) {
        std::string& text = lines_[checked(index)];
        if (text == line) return;
        text = std::move(line);
        LineChanged.raise(index);
    }
    // Faults with 5 if there is no such line. The selection stays on its line, or goes with it.
    void RemoveItem(int index) {
        lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(checked(index)));
        LineRemoved.raise(index);
        if (ListIndex < index) return;
        following_ = true;
        ListIndex = ListIndex == index ? -1 : ListIndex - 1;
        following_ = false;
    }
    void Clear() {
        lines_.clear();
        ListIndex = -1;
        Cleared.raise();
    }

    // -1 while no line is selected. Code and hands set it alike, and both raise Click for a new line.
    Property<int> ListIndex{-1};
    Event<> Click;

    Event<int> LineAdded;
    Event<int> LineChanged;
    Event<int> LineRemoved;
    Event<> Cleared;

  private:
    std::size_t checked(int index) const {
        if (index < 0 || index >= ListCount()) throw RuntimeError(Fault::InvalidProcedureCall);
        return static_cast<std::size_t>(index);
    }

    std::vector<std::string> lines_;
    bool following_ = false;  // its line has moved; that is no click
    Subscription own_;
};

}  // namespace talvora
