#pragma once
// The other end of the gate, as a shell tool needs it: blocking, ended by a signal. Owns its connection.

#include <cstddef>
#include <string>
#include <string_view>

#include "platform_qt/Descriptor.h"

namespace talvora {

class GateClient {
  public:
    // `path` is native. Throws std::system_error if nobody answers there.
    explicit GateClient(const std::string& path);

    // Sends all of it. False if the gate has gone.
    bool send(std::string_view bytes);
    // Waits for the next line (without its end). False if the gate has gone or an interrupt came.
    bool readLine(std::string& line);
    // No whole line has arrived that `readLine` has not yet handed out: the next call may wait.
    bool drained() const { return received_.find('\n', looked_) == std::string::npos; }

  private:
    bool receive();

    Descriptor socket_;
    Descriptor interrupts_;  // readable once the user or the system wants an end
    std::string received_;
    std::size_t start_ = 0;   // of the next line
    std::size_t looked_ = 0;  // up to here there is no line end
};

}  // namespace talvora
