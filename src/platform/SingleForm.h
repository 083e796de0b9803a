#pragma once
// A form of which there is one at a time: it loads at first use and is loaded anew after an unload. An
// unloaded one is destroyed when none of its handlers runs any more.

#include <functional>
#include <memory>
#include <utility>

#include "platform/Form.h"
#include "platform/Retire.h"

namespace talvora {

template <class TheForm>
class SingleForm {
  public:
    using Maker = std::function<std::unique_ptr<TheForm>()>;

    SingleForm(Platform& platform, Maker make) : platform_(platform), make_(std::move(make)) {}

    TheForm& Load() {
        if (form_ == nullptr || form_->IsUnloaded()) {
            Retire(platform_, std::move(form_));
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
    Platform& platform_;
    Maker make_;
    std::unique_ptr<TheForm> form_;
};

}  // namespace talvora
