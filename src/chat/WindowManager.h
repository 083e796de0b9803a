#pragma once
// What the managers of private windows and of channel windows have in common: the table, and the refusal of a
// window too many.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "chat/ChatSurroundings.h"
#include "chat/WindowTable.h"
#include "common/SingleBox.h"
#include "common/Trap.h"

namespace talvora {

template <class TheWindow>
class WindowManager {
  public:
    const WindowTable<TheWindow>& Table() const { return table_; }

  protected:
    // `refusal` is what the user is told of a window too many.
    WindowManager(ChatSurroundings& around, std::string refusal)
        : around_(around),
          table_(around.ThePlatform),
          refusal_(std::move(refusal)),
          refusalBox_(around.ThePlatform) {}
    ~WindowManager() = default;

    TheWindow& load(std::unique_ptr<TheWindow> made) {
        TheWindow& window = table_.Own(std::move(made));
        window.Form_Load();
        return window;
    }

    // The window's slot, or -1 if the table is full.
    std::int16_t enter(const char* procedure, TheWindow& window) {
        std::int16_t index = -1;
        trapped(around_.Reporter, procedure, [&](Trap& step) {
            if (!table_.IsFull()) {
                index = table_.Register(window);
            } else {
                step([&] { refuse(); });
            }
            around_.Session.RefreshWindows();
        });
        return index;
    }
    void leave(const char* procedure, int index) {
        trapped(around_.Reporter, procedure, [&](Trap& step) {
            step([&] { table_.Unregister(index); });
            around_.Session.RefreshWindows();
        });
    }

    void refuse() { refusalBox_.Ask({refusal_, "Error", Buttons::Ok, MessageIcon::Critical}); }
    // While the user is told that there are too many windows, one more is counted and not even made.
    bool isRefusing() const { return table_.IsFull() && refusalBox_.Stands(); }

    ChatSurroundings& around_;
    WindowTable<TheWindow> table_;

  private:
    std::string refusal_;
    SingleBox refusalBox_;

  public:
    // A new window is there, and its view may be made.
    Event<TheWindow&>& Loaded = table_.Loaded;
};

}  // namespace talvora
