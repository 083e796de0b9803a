#pragma once
// A whole client in this process that a server floods. It needs a QCoreApplication, which outlives it.

#include <cstdint>

#include "simulation/files/WholeClient.h"
#include "simulation/programs/Folder.h"

namespace talvora::bench {

class ChatClient {
  public:
    explicit ChatClient(int port);

    // Begins to connect, and returns.
    void start() { client_.Start(); }
    // The window of the channel that the server floods.
    frmChanChat& openWindow();
    // Host messages of channel text so far.
    std::uint64_t broadcasts() const { return broadcasts_; }

  private:
    programs::Folder folder_;
    WholeClient client_;
    std::uint64_t broadcasts_ = 0;
    Subscription hearing_;
};

}  // namespace talvora::bench
