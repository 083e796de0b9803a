#pragma once
// What a host with a screen adds to the host program. `main` makes it and hands it to Orrery, which knows no
// windows.

#include <string>

#include "common/HostMessages.h"
#include "orrery/Folders.h"
#include "platform/Platform.h"
#include "profile/NetworkProfile.h"

namespace talvora {

class HostFace;

// What the face gets from the host; all of it outlives what the face does with it.
struct HostSide {
    MessageDatabase& Database;
    Platform& ThePlatform;
    NetworkProfile& Profile;  // changed in place; the component looks at it when message 7 comes
    const Folders& Places;
    std::string Notice = {};  // what the user is told before the start, code page 1253; empty for nothing
};

class OrreryFace {
  public:
    virtual ~OrreryFace() = default;

    // The component with its views, as a library's name.
    virtual const char* PluginName() const = 0;
    virtual Questions& Asking() = 0;
    virtual Desktop& Screen() = 0;
    // What the component's windows ask of the host.
    virtual HostFace& Services() = 0;

    // All stands but the component. False if the user wants no start after all.
    virtual bool Begin(const HostSide& host) = 0;
    // The component has started.
    virtual void Started() = 0;
    // The end has been asked for: what plug-ins have made goes now, while they still stand.
    virtual void Close() = 0;
    // `host` goes, and is not touched any more.
    virtual void End() = 0;
};

}  // namespace talvora
