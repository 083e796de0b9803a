#pragma once
// Text that waits to be taken line by line, each line ended by CR LF. A line's cost does not grow with what
// waits behind it.

#include <cstddef>
#include <string>
#include <string_view>

namespace talvora {

class LineBuffer {
  public:
    void append(std::string_view text);
    // Bytes from the network: every LF falls out, and every CR becomes CR LF.
    void appendReceived(std::string_view bytes);

    // Moves the first line, without its end, to `line`; false if no line is whole yet.
    bool takeLine(std::string& line);
    void dropUnfinished();

    bool empty() const { return head_ == text_.size(); }
    // In bytes, all that waits and the part behind the last line end.
    std::size_t size() const { return text_.size() - head_; }
    std::size_t unfinished() const;

  private:
    std::string text_;
    std::size_t head_ = 0;     // where the waiting text begins
    std::size_t scanned_ = 0;  // up to here no line end was found
};

}  // namespace talvora
