#include "orrery/face/FirstHost.h"

#include <unistd.h>

#include <chrono>
#include <memory>
#include <system_error>
#include <thread>

#include "common/HostMessageNumbers.h"
#include "gate/GateClient.h"
#include "gate/GateJson.h"

namespace talvora {

namespace {

constexpr int Tries = 20;
constexpr auto BetweenTries = std::chrono::milliseconds(100);
constexpr unsigned Patience = 10;  // seconds

// The first host may just be starting, and its gate opens a moment after it has taken its folders.
std::unique_ptr<GateClient> connectTo(const std::string& gate) {
    for (int tried = 1;; ++tried) {
        try {
            return std::make_unique<GateClient>(gate);
        } catch (const std::system_error&) {
            if (tried == Tries) return nullptr;
        }
        std::this_thread::sleep_for(BetweenTries);
    }
}

}  // namespace

bool showFirstHost(const std::string& gate) {
    const auto client = connectTo(gate);
    if (client == nullptr) return false;
    HostMessage message;
    message.MsgID = HostMsg::ShowWindow;
    message.Tag = "Orrery";
    message.Data = 1;
    std::string lines;
    appendMessage(lines, message);
    lines += "\n\n";  // the complaint about the empty line says that the first is done
    // A first host that hangs does not keep a second one: the alarm ends this process.
    ::alarm(Patience);
    bool shown = false;
    std::string line;
    if (client->send(lines)) {
        while (!shown && client->readLine(line)) shown = readError(line) == std::string(GateEmptyLine);
    }
    ::alarm(0);
    return shown;
}

}  // namespace talvora
