#include "irc/LineBuffer.h"

#include <algorithm>
#include <cstring>

namespace talvora {

namespace {

// Below this the waiting text is not moved to the front of its memory.
constexpr std::size_t CompactFrom = 4096;
// An emptied buffer gives back what a burst needed.
constexpr std::size_t KeptCapacity = 1 << 20;

}  // namespace

void LineBuffer::append(std::string_view text) { text_.append(text); }

void LineBuffer::appendReceived(std::string_view bytes) {
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at != end) {
        const auto rest = static_cast<std::size_t>(end - at);
        const char* lf = static_cast<const char*>(std::memchr(at, '\n', rest));
        const char* const stop = lf != nullptr ? lf : end;
        while (at != stop) {
            const char* cr = static_cast<const char*>(std::memchr(at, '\r', static_cast<std::size_t>(stop - at)));
            if (cr == nullptr) {
                text_.append(at, stop);
                break;
            }
            text_.append(at, cr).append("\r\n");
            at = cr + 1;
        }
        at = lf != nullptr ? lf + 1 : end;
    }
}

bool LineBuffer::takeLine(std::string& line) {
    const std::size_t end = text_.find("\r\n", std::max(head_, scanned_));
    if (end == std::string::npos) {
        scanned_ = text_.empty() ? 0 : text_.size() - 1;  // a CR may be the last byte so far
        return false;
    }
    line.assign(text_, head_, end - head_);
    head_ = end + 2;
    scanned_ = head_;
    if (head_ == text_.size()) {
        text_.clear();
        if (text_.capacity() > KeptCapacity) text_.shrink_to_fit();
        head_ = scanned_ = 0;
    } else if (head_ >= CompactFrom && head_ > text_.size() / 2) {
        text_.erase(0, head_);
        head_ = scanned_ = 0;
    }
    return true;
}

std::size_t LineBuffer::unfinished() const {
    const std::size_t end = text_.rfind("\r\n");
    if (end == std::string::npos || end < head_) return size();
    return text_.size() - (end + 2);
}

void LineBuffer::dropUnfinished() {
    text_.resize(text_.size() - unfinished());
    scanned_ = std::min(scanned_, text_.size());
}

}  // namespace talvora
