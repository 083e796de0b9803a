#pragma once
// The signals by which the system or the user ends a program, as an event of the loop. Made before any other
// thread starts.

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "platform_qt/Descriptor.h"

namespace talvora {

class StopSignals {
  public:
    // From now on SIGTERM, SIGINT and SIGHUP wait until somebody listens.
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Calls `stop` from the loop at the first signal; a second one ends the process at once. Needs a
    // QCoreApplication.
    void listen(std::function<void()> stop);

  private:
    void arrived();

    Descriptor signals_;
    std::function<void()> stop_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace talvora
