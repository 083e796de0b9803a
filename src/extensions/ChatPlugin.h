#pragma once
// The one header that a plug-in of the chat windows needs; it needs nothing but the standard library.
//
// A plug-in sees the lines of one window and may change them: it derives from ChatPlugin. A shared library
// that stands in the folder Plugins of the program's folder exports the three functions at the end, and each
// window makes objects of its own. All runs on one thread; what a plug-in throws is reported to the user.
// docs/plugins.md tells the lines that go over the bus.

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace talvora {

// Raised with every change of this header. Program and library are built by the same compiler.
constexpr int ChatPluginVersion = 1;

// An event of a plug-in: its name, in whatever case, and its parameters.
struct ChatPluginEvent {
    std::string Name;
    std::vector<std::string> Parameters;
};

class ChatPlugin {
  public:
    ChatPlugin() = default;
    ChatPlugin(const ChatPlugin&) = delete;
    ChatPlugin& operator=(const ChatPlugin&) = delete;
    virtual ~ChatPlugin() = default;

    // A line from the window or from another plug-in, in code page 1253. What `Data` holds afterwards is what
    // the next plug-in and the window see. If this throws, they see the line as it came, and nothing of a
    // line that the user typed.
    virtual void Broadcast(std::string& Data) = 0;

    // The place in the window's slot, in twips, 1440 to the inch. Set Height in the constructor, 0 to 32767;
    // the slot sets the others.
    int Left = 0;
    int Top = 0;
    int Height = 0;
    bool Visible = false;

    // Who hears the plug-in's events. The slot sets and clears it.
    std::function<void(const ChatPluginEvent&)> ObjectEvent;

  protected:
    // Says a line to the window, at once. It may be called from inside Broadcast, and the window may be
    // closed when it returns: the plug-in lives on until the function that called this has ended, and is then
    // destroyed.
    void DataBroadcast(std::string Data) { raise({"DataBroadcast", {std::move(Data)}}); }

  private:
    // Of a copy, because the slot may clear the original meanwhile.
    void raise(const ChatPluginEvent& event) {
        const auto hearer = ObjectEvent;
        if (hearer) hearer(event);
    }
};

// What a library exports, each defined behind TALVORA_CHAT_PLUGIN:
//
//     TALVORA_CHAT_PLUGIN int TalvoraChatPluginVersion();             // ChatPluginVersion
//     TALVORA_CHAT_PLUGIN const char* TalvoraChatPluginProgIDs();     // "Name.Class", several parted by "|"
//     TALVORA_CHAT_PLUGIN talvora::ChatPlugin* TalvoraCreateChatPlugin(const char* ProgID);
//
// The last gives a new object, which the program deletes, or a null pointer.
#define TALVORA_CHAT_PLUGIN extern "C" __attribute__((visibility("default")))

using ChatPluginVersionQuery = int (*)();
using ChatPluginProgIDQuery = const char* (*)();
using ChatPluginFactory = ChatPlugin* (*)(const char* ProgID);

}  // namespace talvora
