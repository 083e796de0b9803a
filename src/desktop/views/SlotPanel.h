#pragma once
// The plug-in slots of a chat window, one below the other: each a bar with its caption, and the plug-in's
// place below it while it is unfolded. There stands the plug-in's own view, if PluginViews has one for it.

#include <QWidget>
#include <map>
#include <memory>

#include "desktop/views/PluginViews.h"
#include "extensions/PluginSlots.h"

class QVBoxLayout;

namespace talvora {

class SlotView;

class SlotPanel final : public QWidget {
  public:
    SlotPanel(PluginSlots& slots_, Property<int>& width, const PluginViews& views, QWidget* parent);
    ~SlotPanel() override;

    // Whether there is anything to fold.
    bool HasSlots() const;
    Event<> SlotsChanged;

  private:
    void add(int index);
    void showSlots();

    PluginSlots& model_;
    const PluginViews& makers_;
    Property<int>& width_;
    QVBoxLayout* rows_;
    std::map<int, std::unique_ptr<SlotView>> views_;
    std::map<int, Subscription> visible_;
    Subscriptions on_;
};

}  // namespace talvora
