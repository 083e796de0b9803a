// The component as a plug-in of the host: the exported factory.

#include "host/Connect.h"

extern "C" {

__attribute__((visibility("default"))) int OrreryPluginVersion() {
    return talvora::HostPluginVersion;
}

__attribute__((visibility("default"))) talvora::HostPlugin* OrreryCreatePlugin(
    const talvora::HostServices& services) {
    return new talvora::Connect(services);
}
}
