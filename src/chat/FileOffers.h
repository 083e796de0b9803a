#pragma once
// What the windows need of the file transfer: each opens the dialog that sends files. Implemented by the
// feature that owns it.

#include <string>
#include <vector>

namespace talvora {

class FileOffers {
  public:
    virtual ~FileOffers() = default;
    // `host` is the address, or with `resolve` the nick whose address is to come; `filePath` a first file, or
    // empty; `sendNow` sends it without another question.
    virtual void SendData(const std::string& host, const std::string& filePath, bool sendNow,
                          bool resolve) = 0;
    // Files that the user has dropped on a nick, or with an empty one on a window: native paths. The address
    // is asked for.
    virtual void Offer(const std::string& nick, const std::vector<std::string>& paths) = 0;
};

}  // namespace talvora
