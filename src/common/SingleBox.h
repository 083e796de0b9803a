#pragma once
// A message box that others can cause. Such boxes never stack: while one stands, further occasions of its
// kind are counted in it and not asked again.

#include <utility>

#include "platform/Platform.h"

namespace talvora {

class SingleBox {
  public:
    explicit SingleBox(Platform& platform) : platform_(platform) {}

    // The user's answer; `otherwise` for an occasion that is only counted.
    Answer Ask(MessageBox box, Answer otherwise = Answer::Cancel) {
        if (open_ != nullptr) {
            open_->Suppressed = open_->Suppressed + 1;
            return otherwise;
        }
        const Standing standing(open_, box);
        return platform_.Asking.Ask(box);
    }
    bool Stands() const { return open_ != nullptr; }

  private:
    struct Standing {
        Standing(MessageBox*& open, MessageBox& box) : slot(open) { slot = &box; }
        ~Standing() { slot = nullptr; }
        Standing(const Standing&) = delete;
        Standing& operator=(const Standing&) = delete;
        MessageBox*& slot;
    };

    Platform& platform_;
    MessageBox* open_ = nullptr;
};

}  // namespace talvora
