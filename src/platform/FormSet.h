#pragma once
// Forms that exist in any number up to a limit, each from its making to its unload. A stranger may be the
// cause of a form, so whoever makes them says how many there may be.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Form.h"
#include "platform/Retire.h"

namespace talvora {

template <class TheForm>
class FormSet {
  public:
    FormSet(Platform& platform, std::size_t limit) : platform_(platform), limit_(limit) {}

    bool IsFull() const { return forms_.size() >= limit_; }

    // Takes a new form, raises Loaded, and destroys the form some time after its unload, when none of its
    // handlers runs any more; at once if a handler of Loaded faults, and the fault goes on. Fault 7 if there
    // are as many as there may be; ask IsFull before.
    TheForm& Own(std::unique_ptr<TheForm> form) {
        if (IsFull()) throw RuntimeError(Fault::OutOfMemory);
        TheForm& loaded = *form;
        auto entry = std::make_unique<Entry>();
        entry->form = std::move(form);
        Entry& kept = *forms_.emplace_back(std::move(entry));
        try {
            Loaded.raise(loaded);
        } catch (...) {
            // Without a window nobody could close it.
            loaded.Unload();
            retire(loaded);
            throw;
        }
        // Connected last: a view that has been made for the form hears of the end first, and goes first.
        kept.unloaded = loaded.Unloaded.connect([this, &loaded] { retire(loaded); });
        if (loaded.IsUnloaded()) retire(loaded);
        return loaded;
    }

    // The forms that are loaded. They may come and go while the list is worked off.
    std::vector<TheForm*> Forms() const {
        std::vector<TheForm*> forms;
        for (const auto& entry : forms_) forms.push_back(entry->form.get());
        return forms;
    }
    bool Holds(const TheForm* form) const {
        return std::any_of(forms_.begin(), forms_.end(),
                           [&](const auto& entry) { return entry->form.get() == form; });
    }

    // The form is there, and its view may be made.
    Event<TheForm&> Loaded;
    // It has been unloaded, and still exists.
    Event<TheForm&> Ended;

  private:
    struct Entry {
        std::unique_ptr<TheForm> form;
        Subscription unloaded;
    };

    void retire(TheForm& form) {
        const auto found = std::find_if(forms_.begin(), forms_.end(),
                                        [&](const auto& entry) { return entry->form.get() == &form; });
        if (found == forms_.end()) return;
        std::unique_ptr<Entry> entry = std::move(*found);
        forms_.erase(found);
        Ended.raise(form);
        Retire(platform_, std::move(entry));
    }

    Platform& platform_;
    std::size_t limit_;
    std::vector<std::unique_ptr<Entry>> forms_;
};

}  // namespace talvora
