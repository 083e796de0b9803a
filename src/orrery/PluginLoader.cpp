#include "orrery/PluginLoader.h"

#include <dlfcn.h>

#include "common/HostMessageNumbers.h"
#include "platform/Guard.h"

namespace talvora {
namespace {

std::string reason() {
    const char* told = ::dlerror();
    return told == nullptr ? "unknown reason" : told;
}

PluginError failure(const std::string& file, const std::string& why) {
    return PluginError("The plug-in " + file + " cannot be loaded: " + why);
}

}  // namespace

void PluginLoader::Library::operator()(void* handle) const noexcept {
    ::dlclose(handle);
}

// The code stays mapped after the last close: events that host and plug-ins share may still hold memory whose
// destructor is the plug-in's.
PluginLoader::LibraryHandle PluginLoader::open(const std::string& file) {
    LibraryHandle library(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE));
    if (library == nullptr) throw failure(file, reason());
    return library;
}

template <class Function>
Function PluginLoader::function(const LibraryHandle& library, const std::string& file, const char* name) {
    void* const symbol = ::dlsym(library.get(), name);
    if (symbol == nullptr)
        throw failure(file, "it is no plug-in of this host (no " + std::string(name) + ").");
    return reinterpret_cast<Function>(symbol);
}

PluginLoader::~PluginLoader() {
    UnloadAll();
}

std::int32_t PluginLoader::Load(const std::string& file, const HostServices& services) {
    LibraryHandle library = open(file);
    const int version = function<HostPluginVersionQuery>(library, file, "OrreryPluginVersion")();
    if (version != HostPluginVersion) {
        throw failure(file, "it is made for version " + std::to_string(version) +
                                " of the host's interface, this is version " +
                                std::to_string(HostPluginVersion) + ".");
    }
    const auto create = function<HostPluginFactory>(library, file, "OrreryCreatePlugin");
    const auto id = static_cast<std::int32_t>(loaded_.size()) + 1;
    try {
        std::unique_ptr<HostPlugin> plugin(create(services));
        if (plugin == nullptr) throw RuntimeError(Fault::ObjectNotSet);
        loaded_.push_back({std::move(library), std::move(plugin)});
        loaded_.back().plugin->Init(database_, id);
    } catch (...) {
        const RuntimeError fault = CurrentFault();
        if (static_cast<std::int32_t>(loaded_.size()) == id) loaded_.pop_back();
        throw failure(file, fault.Description + " (" + std::to_string(fault.Number) + ").");
    }
    return id;
}

void PluginLoader::Start(std::int32_t id) {
    HostMessage message;
    message.MsgID = HostMsg::Start;
    message.FromID = HostAddress::Host;
    message.ToID = id;
    message.Tag = "Orrery";
    database_.Broadcast(message);
}

void PluginLoader::UnloadAll() noexcept {
    while (!loaded_.empty()) loaded_.pop_back();
}

}  // namespace talvora
