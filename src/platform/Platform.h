#pragma once
// All that a component needs from outside, given to it in one piece. A platform outlives its component and
// belongs to it alone: two components in one process have two platforms, perhaps on one loop.

#include <memory>
#include <string>

#include "platform/Clock.h"
#include "platform/Event.h"
#include "platform/Guard.h"
#include "platform/Loop.h"
#include "platform/Questions.h"
#include "platform/SettingsStore.h"
#include "platform/Winsock.h"

namespace talvora {

class Clipboard;
class Files;
class Form;
class PluginLibraries;
class Pointer;

// Makes sockets.
class Network {
  public:
    // How a connection is to be secured.
    struct Security {
        bool TLS = false;
        std::string CAFile;  // native path of further trusted certificates; empty for the system's alone
    };

    virtual ~Network() = default;
    virtual std::unique_ptr<SocketDriver> CreateSocket(const Security& security) = 0;
};

// What the desktop tells about itself, and what it does for its programs.
class Desktop {
  public:
    virtual ~Desktop() = default;
    // Of the primary screen, in twips, 1440 to the inch.
    virtual int ScreenWidth() const = 0;
    virtual int ScreenHeight() const = 0;
    // It is another one, or stands elsewhere, or has another size.
    Event<> ScreenChanged;
    // Whether a window stands where its form says. Some desktops place all windows themselves.
    virtual bool PlacesWindows() const = 0;

    // The form in whose window the user is working; nothing while that is a window of another program.
    virtual const Form* ForegroundWindow() const = 0;
    Event<> ForegroundChanged;
    virtual void SetForegroundWindow(Form& form) = 0;
    // Keeps the form above all others, or no longer.
    virtual void SetTopMost(Form& form, bool onTop) = 0;
    // Calls for attention in the task bar, or stops it.
    virtual void FlashWindow(Form& form, bool invert) = 0;
    // However often it is called, it is no noise that a person could not bear.
    virtual void Beep() = 0;

    virtual Clipboard& TheClipboard() = 0;
    virtual Pointer& ThePointer() = 0;
    // Hands a link to the default browser, as an argument of its own and never by a shell. Fault 5 for a link
    // other than http, https and ftp, and if no browser can be started.
    virtual void Open(const std::string& url) = 0;
    // Hands a file or folder, an absolute native path, to the user's program for it, in the same way. Fault 5
    // if there is none.
    virtual void OpenFile(const std::string& nativePath) = 0;
};

struct Platform {
    Loop& TheLoop;
    Network& Sockets;
    Clock& WallClock;
    Questions& Asking;
    Files& ProgramFiles;
    SettingsStore& Settings;
    Desktop& Screen;
    // The user's own plug-ins of the chat windows; null if they are not to be looked for.
    PluginLibraries* Libraries = nullptr;
    Guard Guarded{};
};

}  // namespace talvora
