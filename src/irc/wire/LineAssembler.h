#pragma once
// Makes lines of a stream of bytes that is cut anywhere. A line ends at a CR, an LF or both; it may hold any
// other byte. What is unfinished is kept here and is bounded.

#include <cstddef>
#include <string>
#include <string_view>

namespace talvora {

// The longest line, in bytes.
constexpr std::size_t LongestLine = std::size_t{256} * 1024;

struct LineScan {
    std::size_t end;  // of the first CR or LF; the size of the text if there is none
    bool ascii;       // no byte before it is above 0x7F
};
LineScan scanLine(std::string_view bytes);

class LineAssembler {
  public:
    enum class Beyond { Fails, IsCutOff };

    explicit LineAssembler(Beyond beyond) : beyond_(beyond) {}

    // Calls `each(line, ascii)` for every line that is complete. False if one was too long (and
    // Beyond::Fails): then nothing behind it was looked at.
    template <class Each>
    bool feed(std::string_view bytes, Each&& each) {
        while (!bytes.empty()) {
            if (afterCR_ && bytes[0] == '\n') bytes.remove_prefix(1);
            afterCR_ = false;
            if (bytes.empty()) break;
            const LineScan scan = scanLine(bytes);
            auto piece = bytes.substr(0, scan.end);
            if (!fits(piece)) return false;
            if (scan.end == bytes.size()) {
                keep(piece, scan.ascii);
                break;
            }
            if (pending_.empty()) {
                each(piece, scan.ascii);
            } else {
                keep(piece, scan.ascii);
                each(std::string_view(pending_), pendingAscii_);
                clear();
            }
            afterCR_ = bytes[scan.end] == '\r';
            bytes.remove_prefix(scan.end + 1);
        }
        return true;
    }

    void reset() {
        clear();
        afterCR_ = false;
    }

  private:
    // Shortens the piece to what there is room for, if that is allowed.
    bool fits(std::string_view& piece) const {
        const auto room = LongestLine - pending_.size();
        if (piece.size() <= room) return true;
        piece = piece.substr(0, room);
        return beyond_ == Beyond::IsCutOff;
    }
    void keep(std::string_view piece, bool ascii) {
        pending_ += piece;
        pendingAscii_ = pendingAscii_ && ascii;
    }
    void clear() {
        pending_.clear();
        pendingAscii_ = true;
    }

    Beyond beyond_;
    std::string pending_;
    bool pendingAscii_ = true;
    bool afterCR_ = false;
};

}  // namespace talvora
