#include "extensions/PluginFactories.h"

#include "common/Trap.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

constexpr int CannotCreateObject = 429;

RuntimeError unusable(const std::string& reason) {
    return {static_cast<int>(Fault::InternalError), reason};
}

template <class Function>
Function exported(const PluginLibraries::Exports& exports, const char* name) {
    const PluginLibraries::Function function = exports(name);
    if (function == nullptr)
        throw unusable("it is no plug-in of the chat windows (no " + std::string(name) + ").");
    return reinterpret_cast<Function>(function);
}

void requireVersion(int version) {
    if (version == ChatPluginVersion) return;
    throw unusable("it is made for version " + std::to_string(version) +
                   " of the plug-ins' interface, this is version " + std::to_string(ChatPluginVersion) + ".");
}

std::vector<std::string> offeredBy(const PluginLibraries::Exports& exports) {
    const char* const offered = exported<ChatPluginProgIDQuery>(exports, "TalvoraChatPluginProgIDs")();
    if (offered == nullptr || *offered == '\0') throw unusable("it offers no plug-in.");
    return Split(offered, "|");
}

}  // namespace

void PluginFactories::Register(const std::string& ProgID, const Factory& factory) {
    if (!factories_.try_emplace(ProgID, factory).second) {
        throw RuntimeError(static_cast<int>(Fault::FileAlreadyExists),
                           "there is a plug-in " + ProgID + " already.");
    }
}

void PluginFactories::registerLibrary(const PluginLibraries::Exports& exports) {
    requireVersion(exported<ChatPluginVersionQuery>(exports, "TalvoraChatPluginVersion")());
    const auto create = exported<ChatPluginFactory>(exports, "TalvoraCreateChatPlugin");
    for (const std::string& ProgID : offeredBy(exports)) {
        Register(ProgID, [create, ProgID] { return std::unique_ptr<ChatPlugin>(create(ProgID.c_str())); });
    }
}

void PluginFactories::LoadLibraries(PluginLibraries& libraries, GlobError& globError) {
    constexpr const char* procedure = "LoadLibraries";
    std::vector<std::string> names;
    trapped(globError, procedure, [&](Trap&) { names = libraries.List(); });
    for (const std::string& name : names) {
        trapped(globError, procedure, [&](Trap&) {
            try {
                registerLibrary(libraries.Load(name));
            } catch (...) {
                RuntimeError fault = CurrentFault();
                fault.Description =
                    "The plug-in library " + fromUtf8(name) + " can't be used: " + fault.Description;
                throw fault;
            }
        });
    }
}

std::unique_ptr<ChatPlugin> PluginFactories::Create(const std::string& ProgID) const {
    const auto found = factories_.find(ProgID);
    std::unique_ptr<ChatPlugin> created;
    if (found != factories_.end()) {
        try {
            created = found->second();
        } catch (...) {
            throw CurrentFault();
        }
    }
    if (created == nullptr) throw RuntimeError(CannotCreateObject, "Can't create object " + ProgID);
    return created;
}

}  // namespace talvora
