#include "platform/File.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/Files.h"
#include "platform/OpenFile.h"

namespace talvora {

namespace {

constexpr std::size_t ChunkSize = std::size_t{64} << 10;
constexpr std::size_t FirstChunkSize = std::size_t{4} << 10;  // most files are small

std::int64_t offsetOf(std::int64_t position) {
    if (position < 1) throw RuntimeError(Fault::BadRecordNumber);
    return position - 1;
}

}  // namespace

OpenFile::OpenFile(DiskDriver& disk, Files& files, DiskDriver::Handle opened, FileMode how, std::string path)
    : driver(disk), owner(&files), handle(opened), mode(how), nativePath(std::move(path)) {}

void OpenFile::close() {
    if (!isOpen()) return;
    std::exchange(owner, nullptr)->forget(*this);
    driver.close(handle);
}

std::int64_t OpenFile::tell() const {
    return bufferEnd_ - static_cast<std::int64_t>(buffer_.size() - taken_);
}

void OpenFile::seek(std::int64_t to) {
    buffer_.clear();
    taken_ = 0;
    bufferEnd_ = to;
}

bool OpenFile::fill() {
    if (taken_ < buffer_.size()) return true;
    std::string next(bufferEnd_ == 0 ? FirstChunkSize : ChunkSize, '\0');
    next.resize(driver.read(handle, bufferEnd_, next.data(), next.size()));
    if (next.empty()) return false;
    bufferEnd_ += static_cast<std::int64_t>(next.size());
    buffer_ = std::move(next);
    taken_ = 0;
    return true;
}

bool OpenFile::takeLine(std::string& line) {
    const std::size_t found = buffer_.find_first_of("\r\n", taken_);
    const std::size_t stop = std::min(found, buffer_.size());
    line.append(buffer_, taken_, stop - taken_);
    taken_ = stop;
    if (found == std::string::npos) return false;
    const bool carriageReturn = buffer_[taken_++] == '\r';
    if (carriageReturn && fill() && buffer_[taken_] == '\n') ++taken_;
    return true;
}

std::string OpenFile::readAt(std::int64_t from, std::size_t count) const {
    if (count > File::WholeLimit) throw RuntimeError(Fault::OutOfMemory);
    std::string bytes(count, '\0');
    bytes.resize(driver.read(handle, from, bytes.data(), count));
    return bytes;
}

void OpenFile::append(std::string_view bytes) {
    try {
        driver.write(handle, end, bytes);
    } catch (const RuntimeError&) {
        // Half a record must not stay in front of the same record written again.
        try {
            driver.truncate(handle, end);
        } catch (const RuntimeError&) {  // the disk is beyond help; the first fault tells more
        }
        throw;
    }
    end += static_cast<std::int64_t>(bytes.size());
}

void OpenFile::flush() {
    // The system forgets what it could not write, and a second try would succeed without it.
    if (flushFailed) throw RuntimeError(Fault::DeviceIOError);
    flushFailed = true;
    driver.flush(handle);
    if (unflushedFolder) driver.flushFolder(*unflushedFolder);
    unflushedFolder.reset();
    flushFailed = false;
}

File::File() = default;
File::File(std::unique_ptr<OpenFile> opened) : opened_(std::move(opened)) {}
File::File(File&& other) noexcept = default;

File& File::operator=(File&& other) noexcept {
    File old(std::move(*this));
    opened_ = std::move(other.opened_);
    return *this;
}

File::~File() {
    try {
        Close();
    } catch (...) {  // nobody is left to be told
    }
}

bool File::IsOpen() const {
    return opened_ != nullptr && opened_->isOpen();
}

OpenFile& File::opened() const {
    if (!IsOpen()) throw RuntimeError(Fault::BadFileNameOrNumber);
    return *opened_;
}

OpenFile& File::readable() const {
    OpenFile& file = opened();
    if (file.mode != FileMode::Input && file.mode != FileMode::Binary) throw RuntimeError(Fault::BadFileMode);
    return file;
}

OpenFile& File::writable() const {
    OpenFile& file = opened();
    if (file.mode != FileMode::Output && file.mode != FileMode::Append)
        throw RuntimeError(Fault::BadFileMode);
    return file;
}

OpenFile& File::binary() const {
    OpenFile& file = opened();
    if (file.mode != FileMode::Binary) throw RuntimeError(Fault::BadFileMode);
    return file;
}

std::int64_t File::Length() const {
    const OpenFile& file = opened();
    return file.driver.size(file.handle);
}

std::string File::ReadLine() {
    OpenFile& file = readable();
    const std::int64_t start = file.tell();
    std::string line;
    try {
        if (!file.fill()) throw RuntimeError(Fault::InputPastEndOfFile);
        while (line.size() <= LineLimit && !file.takeLine(line) && file.fill()) {
        }
    } catch (const RuntimeError&) {
        file.seek(start);
        throw;
    }
    if (line.size() > LineLimit) throw RuntimeError(Fault::OutOfMemory);
    return line;
}

std::string File::ReadAll() {
    OpenFile& file = readable();
    const std::int64_t start = file.tell();
    const std::int64_t rest = std::max<std::int64_t>(0, Length() - start);
    if (rest > static_cast<std::int64_t>(WholeLimit)) throw RuntimeError(Fault::OutOfMemory);
    std::string all = file.readAt(start, static_cast<std::size_t>(rest));
    file.seek(start + static_cast<std::int64_t>(all.size()));
    return all;
}

bool File::AtEnd() {
    return !readable().fill();
}

std::string File::Get(std::int64_t position, std::size_t count) {
    return binary().readAt(offsetOf(position), count);
}

std::size_t File::Get(std::int64_t position, char* to, std::size_t count) const {
    const OpenFile& file = binary();
    return file.driver.read(file.handle, offsetOf(position), to, count);
}

std::uint64_t File::Version() const {
    const OpenFile& file = opened();
    return file.driver.version(file.handle);
}

void File::WriteLine(std::string_view text) {
    std::string line;
    line.reserve(text.size() + 2);
    line.append(text).append("\r\n");
    Write(line);
}

void File::Write(std::string_view bytes) {
    writable().append(bytes);
}

void File::Put(std::int64_t position, std::string_view bytes) {
    OpenFile& file = binary();
    if (file.picked) throw RuntimeError(Fault::PermissionDenied);
    const std::int64_t offset = offsetOf(position);
    file.seek(file.tell());  // what was read ahead may be old now
    file.driver.write(file.handle, offset, bytes);
}

void File::Flush() {
    opened().flush();
}

void File::Close() {
    if (const auto file = std::exchange(opened_, nullptr)) file->close();
}

}  // namespace talvora
