#pragma once
// Text that waits to be taken line by line, each line ended by CR LF. A line's cost does not grow with what
// waits behind it: the text is kept in pieces of bounded size.

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace talvora {

class LineBuffer {
  public:
    void append(std::string_view text);
    // Bytes from the network: every LF falls out, and every CR becomes CR LF.
    void appendReceived(std::string_view bytes);

    // Puts the first line, without its end, into `line`; false if no line is whole yet.
    bool takeLine(std::string& line);
    void dropUnfinished();

    bool empty() const { return size_ == 0; }
    // In bytes, all that waits and the part behind the last line end.
    std::size_t size() const { return size_; }
    std::size_t unfinished() const { return unfinished_; }

  private:
    std::string& openPiece();
    void put(std::string_view text);
    void joinFirstTwo();

    std::deque<std::string> pieces_;  // a CR and its LF are never parted
    std::size_t head_ = 0;            // where the waiting text begins in the first piece
    std::size_t scanned_ = 0;         // up to here the first piece has no line end
    std::size_t size_ = 0;
    std::size_t unfinished_ = 0;
};

}  // namespace talvora
