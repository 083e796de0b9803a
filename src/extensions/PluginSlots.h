#pragma once
// The plug-in slots of one chat window, private or channel, and the bus that goes through them. The window
// owns it and offers it each line before the line is shown or sent.
//
// A plug-in may say lines while it hears one, and the window may go meanwhile: nothing of it is touched then.

#include <memory>
#include <string>
#include <vector>

#include "extensions/Container.h"

namespace talvora {

// The window that the slots belong to.
class PluginWindow {
  public:
    // Shows a plug-in's line in the chat view; it may hold colour codes and counts as an incoming line.
    virtual void ShowPluginLine(const std::string& text) = 0;
    // Sends a text to the peer or the channel.
    virtual void SendData(const std::string& text) = 0;

  protected:
    ~PluginWindow() = default;
};

class PluginSlots {
  public:
    // Broadcasts in broadcasts of one window, the outermost counted. Beyond it fault 28 is reported, once,
    // and every further line is emptied unheard until the outermost has returned.
    static constexpr int DeepestNesting = 64;

    PluginSlots(PluginWindow& window, const PluginFactories& factories, GlobError& globError, Loop& loop);
    ~PluginSlots();
    PluginSlots(const PluginSlots&) = delete;
    PluginSlots& operator=(const PluginSlots&) = delete;

    // Element 0 is loaded from the start; the one loaded last stays empty.
    ControlArray<Container> plugins;
    int Count() const { return plugins.UBound() + 1; }

    // Puts a plug-in into the last element, once a new last one is loaded if `loadNew` says so.
    void Install(const std::string& ProgID, const std::string& caption, bool expanded, bool loadNew);
    // Each entry a ProgID, "@" and a caption; all folded.
    void InstallAll(const std::vector<std::string>& entries);

    // Offers a line to all slots but `FromIndex`; -1 is none. Each may change it for those behind it and for
    // the caller. False if the window has gone meanwhile.
    bool Broadcast(std::string& Data, int FromIndex);
    void plugins_DataBroadcast(int Index, const std::string& Data);
    // The window is unloaded, and perhaps destroyed later: nothing goes over the bus any more.
    void Close();
    // Puts the visible slots one below the other.
    void plugins_Resize();

  private:
    struct State;
    class Level;
    void load(int index);

    PluginWindow& window_;
    GlobError& globError_;
    ContainerSite site_;
    std::shared_ptr<State> state_;
    Subscriptions on_;
};

}  // namespace talvora
