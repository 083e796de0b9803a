#pragma once
// The stream of a file transfer as both sides read it: fed with the bytes of the connection, it gives back
// messages. A message is one letter and its parameter, up to the delimiter; one character is one byte.
//
// Whether there is something to read is asked of the newest chunk alone: a delimiter that two chunks share is
// not seen until a later chunk has a whole one. That is how this version of the protocol reads, and what the
// watchdogs of both sides are for.

#include <cstddef>
#include <string>
#include <string_view>

namespace talvora {

class TransferStream {
  public:
    static constexpr std::string_view Delimiter{"\x01:.:\x01", 5};
    // Bytes without a delimiter; no side has reason to send so many.
    static constexpr std::size_t LongestMessage = std::size_t{16} << 20;

    enum class Fed {
        Waits,   // the chunk has no delimiter
        Whole,   // it has one: the messages can be read
        TooMuch  // there is no end in sight; the owner ends the connection and clears the stream
    };

    // `take(std::string& to)` appends the new chunk to what is there.
    template <class Take>
    Fed Feed(Take&& take) {
        makeRoom();
        const std::size_t before = buffer_.size();
        take(buffer_);
        return look(before);
    }

    bool IsEmpty() const { return start_ == buffer_.size(); }
    // What is left has no delimiter.
    bool IsTorn() const { return !IsEmpty() && delimiter_ == std::string::npos; }
    // The first message goes into `message`, whose storage is used again. Faults with 9, and everything stays
    // as it is, if what is left has no delimiter.
    void Next(std::string& message);
    void Clear();

  private:
    void makeRoom();
    Fed look(std::size_t chunk);

    std::string buffer_;
    std::size_t start_ = 0;                      // of what has not been read
    std::size_t delimiter_ = std::string::npos;  // the first one behind it
};

}  // namespace talvora
