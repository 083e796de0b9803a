#include "platform_qt/WriteAheadLog.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <vector>

namespace talvora {

namespace {

constexpr std::size_t HeaderSize = 32;
constexpr std::size_t FrameHeaderSize = 24;
constexpr std::uint32_t Magic = 0x377F0682;  // its last bit: the byte order of the sums

using Bytes = std::vector<unsigned char>;

std::uint32_t bigEndian(const unsigned char* at) {
    return std::uint32_t{at[0]} << 24 | std::uint32_t{at[1]} << 16 | std::uint32_t{at[2]} << 8 | at[3];
}

std::uint32_t littleEndian(const unsigned char* at) {
    return std::uint32_t{at[3]} << 24 | std::uint32_t{at[2]} << 16 | std::uint32_t{at[1]} << 8 | at[0];
}

// The running sum of the log's format; `size` is a multiple of 8.
struct Sum {
    void add(const unsigned char* at, std::size_t size, bool bigEndianWords) {
        const auto word = bigEndianWords ? bigEndian : littleEndian;
        for (const unsigned char* end = at + size; at != end; at += 8) {
            first += word(at) + second;
            second += word(at + 4) + first;
        }
    }
    bool isAt(const unsigned char* at) const { return first == bigEndian(at) && second == bigEndian(at + 4); }

    std::uint32_t first = 0;
    std::uint32_t second = 0;
};

// The database as far as its log must fit it.
struct Database {
    explicit Database(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::array<unsigned char, 18> header{};
        in.read(reinterpret_cast<char*>(header.data()), header.size());
        constexpr std::string_view title = "SQLite format 3";
        if (in && std::equal(title.begin(), title.end(), header.begin())) {
            pageSize = std::size_t{header[16]} << 8 | header[17];
            if (pageSize == 1) pageSize = 65536;
        }
        in.clear();
        in.seekg(0, std::ios::end);
        size = static_cast<std::uint64_t>(std::max<std::streamoff>(in.tellg(), 0));
    }

    std::size_t pageSize = 0;  // 0 if it says none: the log may hold all of it
    std::uint64_t size = 0;
};

class Log {
  public:
    Log(const std::string& path, const Database& database)
        : in_(path, std::ios::binary), database_(database) {}

    bool damaged() {
        header_ = next(HeaderSize);
        if (header_.size() < HeaderSize) return false;
        sum_.add(header_.data(), 24, isBigEndian());
        pageSize_ = bigEndian(&header_[8]);
        // The header is on the disk before the first frame is written.
        return isHeaderSound() ? framesDamaged() : in_.peek() != std::ifstream::traits_type::eof();
    }

  private:
    bool isBigEndian() const { return (bigEndian(&header_[0]) & 1U) != 0; }

    bool isHeaderSound() const {
        const bool isPower = pageSize_ >= 512 && pageSize_ <= 65536 && (pageSize_ & (pageSize_ - 1)) == 0;
        return (bigEndian(&header_[0]) & ~1U) == Magic && sum_.isAt(&header_[24]) && isPower;
    }

    Bytes next(std::size_t size) {
        Bytes bytes(size);
        in_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
        bytes.resize(static_cast<std::size_t>(in_.gcount()));
        return bytes;
    }

    // Behind the first frame that does not hold there may be old ones of an earlier round, but none of this
    // one.
    bool framesDamaged() {
        bool sound = true;
        for (std::uint64_t number = 1;; ++number) {
            const Bytes frame = next(FrameHeaderSize + pageSize_);
            if (frame.size() < FrameHeaderSize + pageSize_) return false;
            const bool ofThisRound = bigEndian(&frame[8]) == bigEndian(&header_[16]) &&
                                     bigEndian(&frame[12]) == bigEndian(&header_[20]);
            if (!sound && ofThisRound) return true;
            sum_.add(&frame[0], 8, isBigEndian());
            sum_.add(&frame[FrameHeaderSize], pageSize_, isBigEndian());
            sound = sound && ofThisRound && sum_.isAt(&frame[16]);
            if (sound && !fits(frame, number)) return true;
        }
    }

    // A page more for each frame is the most by which a database grows.
    bool fits(const Bytes& frame, std::uint64_t number) const {
        const std::uint64_t most = database_.size / pageSize_ + number;
        const std::uint64_t page = bigEndian(&frame[0]);
        const std::uint64_t pages = bigEndian(&frame[4]);  // of a frame that ends a change; else 0
        const bool isOfItsSize = database_.pageSize == 0 || database_.pageSize == pageSize_;
        return isOfItsSize && page >= 1 && page <= most && pages <= most && (pages == 0 || page <= pages);
    }

    std::ifstream in_;
    Database database_;
    Bytes header_;
    std::size_t pageSize_ = 0;
    Sum sum_;
};

}  // namespace

bool isLogDamaged(const std::string& logPath, const std::string& path) {
    return Log(logPath, Database(path)).damaged();
}

}  // namespace talvora
