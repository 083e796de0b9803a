#include "irc/LineBuffer.h"

#include <algorithm>

namespace talvora {

namespace {

// A piece that has reached this size is left alone, and the text goes on in a new one.
constexpr std::size_t PieceSize = 32 << 10;

}  // namespace

std::string& LineBuffer::openPiece() {
    if (pieces_.empty() || pieces_.back().size() >= PieceSize) pieces_.emplace_back();
    return pieces_.back();
}

void LineBuffer::put(std::string_view text) {
    openPiece().append(text);
    size_ += text.size();
    unfinished_ += text.size();
}

void LineBuffer::append(std::string_view text) {
    put(text);
    const std::size_t end = text.rfind("\r\n");
    if (end != std::string_view::npos) unfinished_ = text.size() - (end + 2);
}

void LineBuffer::appendReceived(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t lf = std::min(bytes.find('\n'), bytes.size());
        std::string_view run = bytes.substr(0, lf);
        for (std::size_t cr; (cr = run.find('\r')) != std::string_view::npos; run.remove_prefix(cr + 1)) {
            openPiece().append(run.substr(0, cr)).append("\r\n");
            size_ += cr + 2;
            unfinished_ = 0;
        }
        if (!run.empty()) put(run);
        bytes.remove_prefix(std::min(lf + 1, bytes.size()));
    }
}

bool LineBuffer::takeLine(std::string& line) {
    if (pieces_.empty()) return false;
    std::size_t end = 0;
    while ((end = pieces_.front().find("\r\n", std::max(head_, scanned_))) == std::string::npos) {
        scanned_ = pieces_.front().size();
        if (pieces_.size() == 1) return false;
        joinFirstTwo();
    }
    line.assign(pieces_.front(), head_, end - head_);
    size_ -= end + 2 - head_;
    head_ = scanned_ = end + 2;
    if (head_ == pieces_.front().size()) {
        pieces_.pop_front();
        head_ = scanned_ = 0;
    }
    return true;
}

// A line reaches from the first piece into the second.
void LineBuffer::joinFirstTwo() {
    pieces_[1].insert(0, pieces_[0], head_);
    scanned_ -= head_;
    head_ = 0;
    pieces_.pop_front();
}

void LineBuffer::dropUnfinished() {
    size_ -= unfinished_;
    while (unfinished_ > 0) {
        std::string& last = pieces_.back();
        const std::size_t begin = pieces_.size() == 1 ? head_ : 0;
        const std::size_t cut = std::min(unfinished_, last.size() - begin);
        last.resize(last.size() - cut);
        unfinished_ -= cut;
        if (last.size() > begin) break;
        pieces_.pop_back();
        if (pieces_.empty()) head_ = 0;
    }
    scanned_ = head_;
}

}  // namespace talvora
