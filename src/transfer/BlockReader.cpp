#include "transfer/BlockReader.h"

#include <utility>

#include "platform/RuntimeError.h"
#include "transfer/TransferStream.h"

namespace talvora {

namespace {

constexpr std::size_t Around = 1 + TransferStream::Delimiter.size();  // the letter and the delimiter

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

void BlockReader::read(std::string& message, const File& file, std::int64_t position) {
    file.Get(position, message.data() + 1, message.size() - Around);
}

void BlockReader::Fill(std::string& message, const File& file, std::int64_t position) {
    const bool isAhead = position == aheadAt_ && message.size() == ahead_.size();
    if (!isAhead || file.Version() != version_) return read(message, file, position);
    message.swap(ahead_);
    aheadAt_ = 0;
}

void BlockReader::ReadAhead(const File& file, std::int64_t position, std::size_t size) {
    aheadAt_ = 0;
    try {
        version_ = file.Version();
        makeBlank(ahead_, size);
        read(ahead_, file, position);
        aheadAt_ = position;
    } catch (const RuntimeError&) {  // whoever asks for the block is told
    }
}

}  // namespace talvora
