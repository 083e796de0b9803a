#pragma once
// How far a transfer is, as values and as one line of words. A form owns it and tells it what moves; views
// watch it. It changes at most thirty times a second, however many blocks pass. (The bars of the forms follow
// every block, as the system's rules say; a view that draws them from here draws no more often than that.)

#include <cstdint>
#include <optional>

#include "platform/Controls.h"
#include "platform/Loop.h"

namespace talvora {

struct TransferProgress {
    std::int32_t File = 0;  // which one of the list, from 1; 0 while none has begun
    std::int32_t Files = 0;
    std::int64_t Done = 0;  // bytes of this file
    std::int64_t Size = 0;
    std::int64_t PerSecond = 0;               // bytes, of the last seconds
    std::optional<std::int64_t> SecondsLeft;  // of this file; nothing while nobody can tell
    bool operator==(const TransferProgress&) const = default;
};

class TransferMeter {
  public:
    explicit TransferMeter(Loop& loop) : loop_(loop) {}

    Property<TransferProgress> Progress;
    Label lblProgress;  // the same in words

    void Begin(std::int32_t file, std::int32_t files, std::int64_t size);
    // So many bytes of the file are there.
    void Moved(std::int64_t done);
    // A second has passed, in which so many bytes moved.
    void Second(std::int64_t bytes);
    // The list is over.
    void End();

  private:
    void publish();

    Loop& loop_;
    TransferProgress now_;
    Microseconds told_ = 0;
};

}  // namespace talvora
