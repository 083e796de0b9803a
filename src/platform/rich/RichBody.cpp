#include "platform/rich/RichBody.h"

#include <algorithm>

#include "platform/RuntimeError.h"

namespace talvora {
namespace {

constexpr std::string_view LineEnd = "\\par\r\n";

}  // namespace

RichBody::RichBody() : identity_(std::make_shared<const char>('\0')) {}

void RichBody::Append(std::string fragment) {
    if (fragment.empty()) return;
    length_ += fragment.size();
    fragments_.push_back(std::move(fragment));
}

void RichBody::Clear() {
    first_ = EndNumber();
    fragments_.clear();
    cut_ = 0;
    length_ = 0;
}

bool RichBody::CutFirstLine() {
    if (searchedFragment_ < first_) {
        searchedFragment_ = first_;
        searchedOffset_ = cut_;
    }
    // A line end is looked for by its last byte, which is the rarest.
    for (; searchedFragment_ < EndNumber(); ++searchedFragment_, searchedOffset_ = 0) {
        const std::string& text = fragments_[searchedFragment_ - first_];
        for (;;) {
            const std::size_t at = text.find(LineEnd.back(), searchedOffset_);
            if (at == std::string::npos) break;
            searchedOffset_ = at + 1;
            if (!lineEndsAt(searchedFragment_, at)) continue;
            cutBehind(searchedFragment_, at + 1);
            return true;
        }
    }
    return false;
}

// Whether the bytes up to and with this one are a line end; it may have begun in the fragments before.
bool RichBody::lineEndsAt(std::uint64_t number, std::size_t offset) const {
    for (std::size_t left = LineEnd.size();;) {
        const std::string& text = fragments_[number - first_];
        const std::size_t begin = number == first_ ? cut_ : 0;
        for (std::size_t at = offset + 1; at > begin; --at) {
            if (text[at - 1] != LineEnd[left - 1]) return false;
            if (--left == 0) return true;
        }
        if (number == first_) return false;
        --number;
        offset = fragments_[number - first_].size() - 1;
    }
}

void RichBody::cutBehind(std::uint64_t number, std::size_t offset) {
    while (first_ < number) dropFirst();
    if (offset == fragments_.front().size()) {
        dropFirst();
    } else {
        length_ -= offset - cut_;
        cut_ = offset;
    }
}

void RichBody::CutTo(std::size_t length) {
    while (length_ > length) dropFirst();
}

void RichBody::dropFirst() {
    length_ -= fragments_.front().size() - cut_;
    fragments_.pop_front();
    ++first_;
    cut_ = 0;
}

std::string RichBody::Text() const {
    std::string text;
    text.reserve(length_);
    for (std::uint64_t number = first_; number < EndNumber(); ++number) text += Fragment(number);
    return text;
}

std::string_view RichBody::Fragment(std::uint64_t number) const {
    if (number < first_ || number >= EndNumber()) throw RuntimeError(Fault::SubscriptOutOfRange);
    const std::string_view text = fragments_[number - first_];
    return number == first_ ? text.substr(cut_) : text;
}

}  // namespace talvora
