// A plug-in for the tests of the loader: answers message 1 by message 2 and tells when it goes.

#include "host/common/HostPlugin.h"

namespace {

class TestPlugin final : public talvora::HostPlugin {
  public:
    ~TestPlugin() override { say(8000); }

    void Init(talvora::MessageDatabase& db, std::int32_t id) override {
        db_ = &db;
        id_ = id;
        hearing_ = db.MessageBroadcasted.connect([this](const talvora::HostMessage& message) {
            if (message.MsgID == 1 && message.ToID == id_) say(2);
        });
    }

  private:
    void say(std::int32_t number) {
        talvora::HostMessage message;
        message.MsgID = number;
        message.FromID = id_;
        message.ToID = talvora::HostAddress::Host;
        message.Data = talvora::HostArray{"Test plug-in", 1};
        db_->Broadcast(message);
    }

    talvora::MessageDatabase* db_ = nullptr;
    std::int32_t id_ = 0;
    talvora::Subscription hearing_;
};

}  // namespace

// The same source makes the plug-ins that are to be refused.
#ifndef PLUGIN_VERSION
#define PLUGIN_VERSION talvora::HostPluginVersion
#endif

extern "C" __attribute__((visibility("default"))) int OrreryPluginVersion() {
    return PLUGIN_VERSION;
}

#ifndef PLUGIN_WITHOUT_FACTORY
extern "C" __attribute__((visibility("default"))) talvora::HostPlugin* OrreryCreatePlugin(
    const talvora::HostServices&) {
    return new TestPlugin;
}
#endif
