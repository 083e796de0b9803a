#pragma once
// Loads the host's plug-ins from shared libraries, gives them their identifiers and ends them. Owned by the
// host program; destroyed, at the latest, while the database and the platforms still stand, and never from
// inside a broadcast.

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/HostPlugin.h"

namespace talvora {

// A library cannot be used; the text, in UTF-8, names the file and the reason.
class PluginError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class PluginLoader {
  public:
    explicit PluginLoader(MessageDatabase& database) : database_(database) {}
    ~PluginLoader();
    PluginLoader(const PluginLoader&) = delete;
    PluginLoader& operator=(const PluginLoader&) = delete;

    // Loads the library (native path), makes its plug-in and calls its Init. Returns the identifier, counted
    // from 1. Throws PluginError.
    std::int32_t Load(const std::string& file, const HostServices& services);
    // Sends message 1 to one plug-in.
    void Start(std::int32_t id);
    // Deletes all plug-ins, the last first.
    void UnloadAll() noexcept;

  private:
    struct Library {
        void operator()(void* handle) const noexcept;
    };
    using LibraryHandle = std::unique_ptr<void, Library>;

    struct Loaded {
        LibraryHandle library;  // goes after the plug-in
        std::unique_ptr<HostPlugin> plugin;
    };

    static LibraryHandle open(const std::string& file);
    template <class Function>
    static Function function(const LibraryHandle& library, const std::string& file, const char* name);

    MessageDatabase& database_;
    std::vector<Loaded> loaded_;
};

}  // namespace talvora
