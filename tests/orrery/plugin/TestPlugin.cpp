// A plug-in for the tests of the loader: answers message 1 by message 2 and tells when it goes.

#include "common/HostMessageNumbers.h"
#include "common/HostPlugin.h"

namespace {

using namespace talvora;

class TestPlugin final : public HostPlugin {
  public:
    ~TestPlugin() override { say_(8000); }

    void Init(MessageDatabase& db, std::int32_t id) override {
        say_ = [&db, id](std::int32_t number) {
            db.Broadcast({number, id, HostAddress::Host, "", HostArray{"Test plug-in", 1}, 0});
        };
        hearing_ = db.MessageBroadcasted.connect([this, id](const HostMessage& message) {
            if (message.MsgID == HostMsg::Start && message.ToID == id) say_(2);
        });
    }

  private:
    std::function<void(std::int32_t)> say_;
    Subscription hearing_;
};

}  // namespace

// The same source makes the plug-ins that are to be refused.
#ifndef PLUGIN_VERSION
#define PLUGIN_VERSION HostPluginVersion
#endif

extern "C" __attribute__((visibility("default"))) int OrreryPluginVersion() {
    return PLUGIN_VERSION;
}

#ifndef PLUGIN_WITHOUT_FACTORY
extern "C" __attribute__((visibility("default"))) HostPlugin* OrreryCreatePlugin(const HostServices&) {
    return new TestPlugin;
}
#endif
