// The component with its windows as a plug-in of a host that has a screen: the exported factory.

#include "desktop/views/Views.h"

namespace talvora {
namespace {

class ConnectWithViews final : public HostPlugin {
  public:
    explicit ConnectWithViews(const HostServices& services)
        : component_(services), views_(component_, services.ThePlatform, *services.Face) {}
    ~ConnectWithViews() override { component_.Class_Terminate(); }

    void Init(MessageDatabase& db, std::int32_t id) override { component_.Init(db, id); }

  private:
    Connect component_;
    Views views_;
};

}  // namespace
}  // namespace talvora

extern "C" {

__attribute__((visibility("default"))) int OrreryPluginVersion() {
    return talvora::HostPluginVersion;
}

__attribute__((visibility("default"))) talvora::HostPlugin* OrreryCreatePlugin(
    const talvora::HostServices& services) {
    if (services.Face == nullptr) return nullptr;
    return new talvora::ConnectWithViews(services);
}
}
