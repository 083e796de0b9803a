#include "transfer/TransferStream.h"

#include <algorithm>

#include "platform/RuntimeError.h"

namespace talvora {

// What was read is dropped in pieces as large as what is left, so that no byte is moved again and again.
void TransferStream::makeRoom() {
    if (start_ == 0 || start_ < buffer_.size() - start_) return;
    buffer_.erase(0, start_);
    if (delimiter_ != std::string::npos) delimiter_ -= start_;
    start_ = 0;
}

TransferStream::Fed TransferStream::look(std::size_t chunk) {
    const std::size_t inChunk = buffer_.find(Delimiter, chunk);
    if (delimiter_ == std::string::npos) {
        // Where the chunks meet one may be hidden.
        constexpr std::size_t part = Delimiter.size() - 1;
        const std::size_t seam = chunk - std::min(chunk - start_, part);
        const std::size_t hidden =
            std::string_view(buffer_).substr(seam, chunk - seam + part).find(Delimiter);
        delimiter_ = hidden == std::string::npos ? inChunk : seam + hidden;
    }
    if (inChunk != std::string::npos) return Fed::Whole;
    return buffer_.size() - start_ > LongestMessage ? Fed::TooMuch : Fed::Waits;
}

void TransferStream::Next(std::string& message) {
    if (delimiter_ == std::string::npos) throw RuntimeError(Fault::SubscriptOutOfRange);
    const std::size_t length = delimiter_ - start_;
    const std::size_t behind = delimiter_ + Delimiter.size();
    if (start_ == 0 && behind == buffer_.size()) {  // as every block comes: the message is what is there
        buffer_.swap(message);
        message.resize(length);
        Clear();
        return;
    }
    message.assign(buffer_, start_, length);
    start_ = behind;
    delimiter_ = buffer_.find(Delimiter, start_);
}

void TransferStream::Clear() {
    buffer_.clear();
    start_ = 0;
    delimiter_ = std::string::npos;
}

}  // namespace talvora
