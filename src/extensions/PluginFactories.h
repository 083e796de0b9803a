#pragma once
// The registry of what makes plug-ins, by ProgID, compared as text. The composition owns it, registers the
// component's own plug-ins under "TalvoraClient." and their class, and then loads the user's libraries.

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "common/GlobError.h"
#include "extensions/ChatPlugin.h"
#include "platform/PluginLibraries.h"
#include "platform/Text.h"

namespace talvora {

class PluginFactories {
  public:
    using Factory = std::function<std::unique_ptr<ChatPlugin>()>;

    // Fault 58 if the ProgID is taken, so that no library gets in the place of a plug-in that is there.
    void Register(const std::string& ProgID, const Factory& factory);
    // Registers what the libraries offer. A library that can't be used is reported once, under its name, and
    // the others are not touched by that.
    void LoadLibraries(PluginLibraries& libraries, GlobError& globError);

    // A new plug-in. Fault 429 if nothing of that name can be created; what a factory throws, as a fault.
    std::unique_ptr<ChatPlugin> Create(const std::string& ProgID) const;

  private:
    void registerLibrary(const PluginLibraries::Exports& exports);

    std::unordered_map<std::string, Factory, TextHash, TextEqual> factories_;
};

}  // namespace talvora
