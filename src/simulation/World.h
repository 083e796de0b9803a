#pragma once
// Whole clients in one process on virtual time, each with its own platform, host and scripted IRC server.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/HostMessageNumbers.h"
#include "host/Connect.h"
#include "profile/NetworkProfile.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {

// A host that writes down what is broadcast, as `Name(data, data)`; the
// two that come with every line of the server are left out.
class RecordingHost final : public MessageDatabase {
  public:
    void Broadcast(const HostMessage& message) override;
    // A message of the host's own.
    void send(std::int32_t msgID, HostValue data = {}, std::int32_t to = 1);

    std::vector<std::string> take() { return std::exchange(heard_, {}); }

  private:
    std::vector<std::string> heard_;
};

struct Client {
    Client(VirtualTime& time, VirtualNetwork& network, const std::string& nick,
           const std::string& serverHost);

    // The program is gone without a word to anybody, and runs again on what it has left.
    void crashAndStart();

    VirtualPlatform around;
    RecordingHost host;
    NetworkProfile profile;
    ScriptedServer& server;
    std::string nick;
    std::unique_ptr<Connect> component;
    Form1& window() { return *component->MainWindow(); }
};

class World {
  public:
    VirtualTime time;
    VirtualNetwork network{time};

    // A client of that nick that has been started by nothing yet.
    Client& client(const std::string& nick);
    // The same, logged on; what was sent and broadcast meanwhile is forgotten.
    Client& loggedIn(const std::string& nick);

  private:
    std::map<std::string, std::unique_ptr<Client>> clients_;
};

}  // namespace talvora::test
