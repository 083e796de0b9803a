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

}  // namespace

std::string BlockReader::Message(std::size_t size) {
    std::string message = std::exchange(spare_, {});
    if (message.size() == Around + size) return message;
    message.assign(1 + size, ' ');
    message.front() = 'D';
    message += TransferStream::Delimiter;
    return message;
}

void BlockReader::Fill(std::string& message, const File& file, std::int64_t position) {
    const std::span<char> block(message.data() + 1, message.size() - Around);
    std::size_t size = 0;
    try {
        size = read(block, file, position);
    } catch (const RuntimeError&) {
        std::ranges::fill(block, ' ');
        throw;
    }
    std::ranges::fill(block.subspan(size), ' ');
}

std::size_t BlockReader::read(std::span<char> block, const File& file, std::int64_t position) {
    if (!hasAhead(position, block.size()) || !isUnchanged(file)) {
        aheadAt_ = 0;
        return file.Get(position, block.data(), block.size());
    }
    const auto from = static_cast<std::size_t>(position - aheadAt_);
    const std::size_t size = std::min(block.size(), ahead_.size() - from);
    std::memcpy(block.data(), ahead_.data() + from, size);
    return size;
}

bool BlockReader::isUnchanged(const File& file) {
    const Microseconds now = loop_.Now();
    return std::exchange(lookedAt_, now) == now || file.Version() == version_;
}

void BlockReader::ReadAhead(const File& file, std::int64_t position, std::size_t size) {
    if (hasAhead(position, size)) return;
    // Who jumps about in the file is given single blocks.
    const auto end = aheadAt_ + static_cast<std::int64_t>(ahead_.size());
    const bool goesOn = aheadAt_ != 0 && position >= aheadAt_ && position <= end;
    aheadAt_ = 0;
    try {
        version_ = file.Version();
        lookedAt_ = loop_.Now();
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
