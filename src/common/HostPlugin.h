#pragma once
// How the host loads a plug-in of its own kind: a shared library with one exported factory.
//
//     extern "C" talvora::HostPlugin* OrreryCreatePlugin(const talvora::HostServices& services);
//     extern "C" int OrreryPluginVersion();
//
// The host gives each plug-in an identifier, calls Init and from then on speaks with it by messages. It
// deletes the plug-in before it unloads the library. Host and plug-in are built from the same headers by the
// same compiler; the version says so.

#include <cstdint>

#include "common/HostMessages.h"
#include "platform/Platform.h"

namespace talvora {

class HostFace;
struct NetworkProfile;

// Raised with every change of what stands in this header or is reached from it.
constexpr int HostPluginVersion = 5;

struct HostServices {
    Platform& ThePlatform;          // outlives the plug-in, and is its alone
    const NetworkProfile& Profile;  // read by the plug-in when message 1 or 7 tells it to
    HostFace* Face = nullptr;       // the host's side of the screen; null for a host without one
};

class HostPlugin {
  public:
    virtual ~HostPlugin() = default;
    // `id` is what messages to this plug-in carry in ToID.
    virtual void Init(MessageDatabase& db, std::int32_t id) = 0;
};

using HostPluginFactory = HostPlugin* (*)(const HostServices&);
using HostPluginVersionQuery = int (*)();

}  // namespace talvora
