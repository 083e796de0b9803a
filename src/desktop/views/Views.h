#pragma once
// Gives every form of the component its window, as soon as the form is there. Owned beside the component;
// destroyed before it.

#include <QPointer>
#include <vector>

#include "desktop/FormView.h"
#include "desktop/views/PluginViews.h"
#include "host/Connect.h"

namespace talvora {

class Views {
  public:
    // What is handed in outlives the views.
    Views(Connect& component, Platform& platform, HostFace& face);
    ~Views();
    Views(const Views&) = delete;
    Views& operator=(const Views&) = delete;

  private:
    // `more` is what the view shows beside its form.
    template <class View, class TheForm, class... More>
    void viewEach(Event<TheForm&>& loaded, More&... more);

    // The key that opens the bar from any window.
    void addBarKey(FormView& view);

    Connect& component_;
    ViewMemory memory_;
    PluginViews plugins_;
    ViewSite site_;
    std::vector<QPointer<FormView>> open_;
    Subscriptions on_;
};

}  // namespace talvora
