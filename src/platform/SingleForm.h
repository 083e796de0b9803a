#pragma once
// A form of which there is one at a time: it loads at first use and is loaded anew after an unload. An
// unloaded one is destroyed when none of its handlers runs any more.

#include <functional>
#include <memory>
#include <utility>

#include "platform/Form.h"
#include "platform/Platform.h"

namespace talvora {

template <class TheForm>
class SingleForm {
  public:
    using Maker = std::function<std::unique_ptr<TheForm>()>;

    SingleForm(Platform& platform, Maker make) : platform_(platform), make_(std::move(make)) {}

    TheForm& Load() {
        if (form_ == nullptr || form_->IsUnloaded()) {
            retire();
            form_ = make_();
            Loaded.raise(*form_);
        }
        return *form_;
    }
    // The form if it is loaded.
    TheForm* Get() const { return form_ != nullptr && !form_->IsUnloaded() ? form_.get() : nullptr; }

    // The form is loaded, and its view may be made.
    Event<TheForm&> Loaded;

  private:
    void retire() {
        if (form_ == nullptr) return;
        std::shared_ptr<TheForm> old = std::move(form_);
        platform_.Guarded.WhenIdle([old]() mutable { old.reset(); });
        platform_.TheLoop.Defer([] {});
    }

    Platform& platform_;
    Maker make_;
    std::unique_ptr<TheForm> form_;
};

}  // namespace talvora
