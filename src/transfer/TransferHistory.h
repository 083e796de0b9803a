#pragma once
// What has become of the files that were sent and received since the start: the last hundred, youngest first.
// One a component, owned by the composition; the forms write it, `frmTransfers` shows it.

#include <deque>
#include <string>

#include "platform/Clock.h"
#include "platform/Event.h"

namespace talvora {

struct FinishedFile {
    std::string Name;  // code page 1253, fit to be shown
    std::string Peer;  // the nick, or the address while nobody has told one
    bool Received = false;
    std::string Outcome;  // in words
    std::string Path;     // native, for opening; empty if there is no file
    DateTime When;
};

class TransferHistory {
  public:
    static constexpr std::size_t Most = 100;

    void Add(FinishedFile file);
    // The file at this native path has gone where deleted files go.
    void Discarded(const std::string& path);
    void Clear();
    const std::deque<FinishedFile>& Files() const { return files_; }

    Event<> Changed;

  private:
    std::deque<FinishedFile> files_;
};

// What a stranger has written, fit for one line of a window: no control characters, and not longer than a
// name may be.
std::string ShownName(std::string_view text);

}  // namespace talvora
