#pragma once
// Gives every form of the component its window, as soon as the form is there. Only the main form waits until
// it is shown, or another one comes: the fonts and pictures of the first window would hold up the log-on.
// Owned beside the component; destroyed before it.

#include <QPointer>
#include <functional>
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
    // A form that has no window yet.
    struct Unseen {
        std::function<FormView*()> Make;
        Subscription Shown;
    };

    template <class View, class TheForm>
    void viewEach(Event<TheForm&>& loaded);
    // `more` is what the view shows beside its form.
    template <class View, class TheForm, class... More>
    void viewWhenShown(Unseen& unseen, Event<TheForm&>& loaded, More&... more);
    template <class View, class TheForm, class... More>
    void waitFor(Unseen& unseen, TheForm& form, More&... more);
    void seeMain();
    void see(Unseen& unseen);

    // The key that opens the bar from any window.
    void addBarKey(FormView& view);

    Connect& component_;
    ViewMemory memory_;
    PluginViews plugins_;
    ViewSite site_;
    std::vector<QPointer<FormView>> open_;
    Unseen main_;
    Unseen announcements_;
    Unseen receiver_;
    Unseen bar_;
    Subscriptions on_;
};

}  // namespace talvora
