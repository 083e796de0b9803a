#pragma once
// A connection on which files go from one user to another, for a program without a window: blocking, with an
// end to all patience. Messages are one letter and a parameter. Whatever fails throws std::runtime_error in
// words.

#include <string>

#include "transfer/TransferStream.h"

namespace talvora::peer {

inline constexpr int FilePort = 37182;

struct Message {
    char Type;
    std::string Parameter;
};

class FileConnection {
  public:
    explicit FileConnection(int descriptor);
    // Tries for a while: the other side may still be busy with the last files.
    static FileConnection To(const std::string& address);
    FileConnection(FileConnection&& other) noexcept;
    FileConnection(const FileConnection&) = delete;
    FileConnection& operator=(const FileConnection&) = delete;
    FileConnection& operator=(FileConnection&&) = delete;
    ~FileConnection();

    void Send(const std::string& message);
    // Waits for the next one.
    Message Next();
    // The same, which must be of that type.
    std::string Expect(char type);

  private:
    int descriptor_;
    TransferStream stream_;
    bool readable_ = false;  // whole messages are waiting
};

// Listens there on the port of file receivers.
int ListenForFiles(const std::string& address);

}  // namespace talvora::peer
