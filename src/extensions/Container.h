#pragma once
// One slot of a chat window: it creates a plug-in by its ProgID, folds and unfolds it, and carries the lines
// between it and the window. PluginSlots owns the slots of a window.
//
// The window, and this with it, may go while the plug-in is heard or spoken to; the plug-in then lives on
// until its own code has returned.

#include <memory>
#include <string>

#include "common/GlobError.h"
#include "extensions/ChatPlugin.h"
#include "extensions/PluginFactories.h"
#include "platform/Controls.h"
#include "platform/Loop.h"

namespace talvora {

// What a slot lives on; all of it outlives the slot.
struct ContainerSite {
    const PluginFactories& Factories;
    GlobError& Reporter;
    Loop& TheLoop;
};

// The caption bar of a slot, as high as a folded slot. Heights are in twips, 1440 to the inch.
class SlotCaption : public Label {
  public:
    static constexpr int Height = 255;
    Property<bool> Enabled{true};
    Property<bool> Loaded{false};  // whether it has the colour of a slot with a plug-in
};

// What holds the plug-in when the slot is unfolded.
class SlotHolder {
  public:
    Property<int> Height{495};
};

class Container {
  public:
    // Pictures of the fold arrow.
    static constexpr int imgUp = 1;
    static constexpr int imgDown = 2;

    Container();
    ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // By its owner, before anything else.
    void SetSite(const ContainerSite& site) { site_ = &site; }

    void Init(const std::string& ProgID, const std::string& caption, bool expanded);
    // Fault 91 without a plug-in; what the plug-in throws, as a fault.
    void Broadcast(std::string& Data);
    void Enable();
    void Disable();
    void RefView();
    void Client_ObjectEvent(const ChatPluginEvent& Info);

    // The plug-in; a null pointer until the load has succeeded.
    const std::shared_ptr<ChatPlugin>& Client() const { return client_; }

    Property<int> Left{0};
    Property<int> Top{0};
    Property<int> Height{SlotCaption::Height};
    Property<bool> Visible{false};
    Property<bool> Expanded{false};

    SlotCaption Label1;
    Image Image2{imgDown};  // the fold arrow
    Label Label2{"Could not load plugin"};
    SlotHolder Picture1;

    // A line from the plug-in to the window.
    Event<const std::string&> DataBroadcast;

  private:
    void create(const std::string& ProgID);
    void show(bool expanded);
    void fold();
    void obey(const std::string& command);

    const ContainerSite* site_ = nullptr;
    std::shared_ptr<ChatPlugin> client_;
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);  // expires with the slot
    Subscriptions on_;
};

}  // namespace talvora
