#include "platform_qt/WriteAheadLog.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <vector>

namespace talvora {

namespace {

constexpr std::size_t headerSize = 32;
constexpr std::size_t frameHeaderSize = 24;
constexpr std::uint32_t magic = 0x377F0682;  // its last bit: the byte order of the sums

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

class Log {
  public:
    explicit Log(const std::string& path) : in_(path, std::ios::binary) {}

    bool damaged() {
        Bytes header = next(headerSize);
        if (header.size() < headerSize) return false;
        sum_.add(header.data(), 24, isBigEndian(header));
        const std::size_t pageSize = bigEndian(&header[8]);
        const bool sound =
            (bigEndian(&header[0]) & ~1U) == magic && sum_.isAt(&header[24]) && pageSize <= 65536;
        // The header is on the disk before the first frame is written.
        return sound ? framesDamaged(header, pageSize) : in_.peek() != std::ifstream::traits_type::eof();
    }

  private:
    static bool isBigEndian(const Bytes& header) { return (bigEndian(&header[0]) & 1U) != 0; }

    Bytes next(std::size_t size) {
        Bytes bytes(size);
        in_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
        bytes.resize(static_cast<std::size_t>(in_.gcount()));
        return bytes;
    }

    // Behind the first frame that does not hold there may be old ones of an earlier round, but none of this
    // one.
    bool framesDamaged(const Bytes& header, std::size_t pageSize) {
        bool sound = true;
        for (;;) {
            const Bytes frame = next(frameHeaderSize + pageSize);
            if (frame.size() < frameHeaderSize + pageSize) return false;
            const bool ofThisRound = bigEndian(&frame[8]) == bigEndian(&header[16]) &&
                                     bigEndian(&frame[12]) == bigEndian(&header[20]);
            if (!sound && ofThisRound) return true;
            sum_.add(&frame[0], 8, isBigEndian(header));
            sum_.add(&frame[frameHeaderSize], pageSize, isBigEndian(header));
            sound = sound && ofThisRound && sum_.isAt(&frame[16]);
        }
    }

    std::ifstream in_;
    Sum sum_;
};

}  // namespace

bool isLogDamaged(const std::string& nativePath) {
    return Log(nativePath).damaged();
}

}  // namespace talvora
