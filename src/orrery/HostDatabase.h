#pragma once
// The host's message database: a broadcast reaches every listener before it returns, and listeners may
// broadcast in turn. Owned by the host program; outlives the plug-ins.

#include "common/HostMessages.h"

namespace talvora {

class HostDatabase final : public MessageDatabase {
  public:
    // Broadcasts in broadcasts, the outermost counted.
    static constexpr int DeepestNesting = 64;

    // Throws RuntimeError 28 beyond DeepestNesting, and from then on for every message until the outermost
    // broadcast has returned: two plug-ins that answer each other would else go on at every level. A
    // listener's fault goes to the caller, and the listeners behind it do not see the message.
    void Broadcast(const HostMessage& message) override;

    int Nesting() const { return nesting_; }

  private:
    int nesting_ = 0;
    bool refusing_ = false;
};

}  // namespace talvora
