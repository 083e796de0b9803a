#include "transfer/BlockReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/RuntimeError.h"
#include "transfer/TransferStream.h"

namespace talvora {

namespace {

constexpr std::size_t Around = 1 + TransferStream::Delimiter.size();  // the letter and the delimiter
constexpr std::size_t Portion = std::size_t{64} << 10;

void makeBlank(std::string& message, std::size_t size) {
    message.assign(1 + size, ' ');
    message.front() = 'D';
    message += TransferStream::Delimiter;
}

}  // namespace

std::string BlockReader::Blank(std::size_t size) {
    std::string message = std::exchange(spare_, {});
    makeBlank(message, size);
    return message;
}

void BlockReader::Fill(std::string& message, const File& file, std::int64_t position) {
    const std::size_t size = message.size() - Around;
    if (!hasAhead(position, size) || file.Version() != version_) {
        aheadAt_ = 0;
        file.Get(position, message.data() + 1, size);
        return;
    }
    const auto from = static_cast<std::size_t>(position - aheadAt_);
    std::memcpy(message.data() + 1, ahead_.data() + from, std::min(size, ahead_.size() - from));
}

void BlockReader::ReadAhead(const File& file, std::int64_t position, std::size_t size) {
    if (hasAhead(position, size)) return;
    // Who jumps about in the file is given single blocks.
    const auto end = aheadAt_ + static_cast<std::int64_t>(ahead_.size());
    const bool goesOn = aheadAt_ != 0 && position >= aheadAt_ && position <= end;
    aheadAt_ = 0;
    try {
        version_ = file.Version();
        ahead_.resize(goesOn ? std::max(size, Portion) : size);
        const std::size_t got = file.Get(position, ahead_.data(), ahead_.size());
        endsAhead_ = got < ahead_.size();
        ahead_.resize(got);
        aheadAt_ = position;
    } catch (const RuntimeError&) {  // whoever asks for the block is told
    }
}

bool BlockReader::hasAhead(std::int64_t position, std::size_t size) const {
    if (aheadAt_ == 0 || position < aheadAt_) return false;
    const auto from = static_cast<std::size_t>(position - aheadAt_);
    return from + size <= ahead_.size() || (endsAhead_ && from <= ahead_.size());
}

}  // namespace talvora
