#include "irc/ReplyText.h"

#include <algorithm>
#include <utility>

namespace talvora {

namespace {

// An emptied buffer gives back what a long reply needed.
constexpr std::size_t KeptCapacity = 1 << 20;

}  // namespace

void ReplyText::clear() {
    text_.clear();
    if (text_.capacity() > KeptCapacity) text_.shrink_to_fit();
    clean_ = pieces_ = 0;
}

bool ReplyText::hasRoom(std::size_t bytes, std::size_t pieces) const {
    return text_.size() + bytes <= Limit && pieces_ + pieces <= MostPieces;
}

bool ReplyText::assign(std::string_view text) {
    if (text.size() > Limit) return false;
    text_.assign(text);
    clean_ = pieces_ = 0;
    return true;
}

bool ReplyText::appendLine(std::string_view line) {
    if (!hasRoom(2 + line.size(), 1)) return false;
    ++pieces_;
    if (!text_.empty()) text_ += "\r\n";
    text_ += line;
    return true;
}

bool ReplyText::appendNames(std::string_view names) {
    const auto blanks = static_cast<std::size_t>(std::count(names.begin(), names.end(), ' '));
    if (!hasRoom(2 + names.size(), blanks + 1)) return false;
    pieces_ += blanks + 1;
    // The earlier piece lost its closing blank to the trimming; without it two names would be glued.
    if (!text_.empty()) text_ += ' ';
    text_ += names;
    text_ += ' ';
    collapseBlanks();
    const std::size_t last = text_.find_last_not_of(' ');
    text_.resize(last == std::string::npos ? 0 : last + 1);
    const std::size_t first = text_.find_first_not_of(' ');
    if (first != 0 && first != std::string::npos) text_.erase(0, first);
    clean_ = std::min(clean_, text_.size());
    return true;
}

// One pass, as a replacement does it: a run of n blanks becomes one of (n + 1) / 2.
void ReplyText::collapseBlanks() {
    std::size_t from = text_.find("  ", clean_ > 0 ? clean_ - 1 : 0);
    if (from == std::string::npos) {
        clean_ = text_.size();
        return;
    }
    std::size_t to = from;
    std::size_t firstDouble = std::string::npos;
    while (from < text_.size()) {
        const bool pair = text_[from] == ' ' && from + 1 < text_.size() && text_[from + 1] == ' ';
        const char next = text_[from];
        from += pair ? 2 : 1;
        if (next == ' ' && to > 0 && text_[to - 1] == ' ') firstDouble = std::min(firstDouble, to - 1);
        text_[to++] = next;
    }
    text_.resize(to);
    clean_ = std::min(firstDouble, to);
}

bool ReplyText::replaceAll(std::string_view what, std::string_view by) {
    std::size_t at = text_.find(what);
    if (at == std::string::npos) return true;
    std::string result;
    std::size_t done = 0;
    for (; at != std::string::npos; at = text_.find(what, done)) {
        if (result.size() + (at - done) + by.size() > Limit) return false;
        result.append(text_, done, at - done).append(by);
        done = at + what.size();
    }
    if (result.size() + text_.size() - done > Limit) return false;
    result.append(text_, done);
    text_ = std::move(result);
    clean_ = 0;
    return true;
}

std::vector<std::string> ReplyText::takeSplit(std::string_view separator) {
    std::vector<std::string> pieces;
    if (!text_.empty()) {
        std::size_t count = 1;
        for (std::size_t at = 0; (at = text_.find(separator, at)) != std::string::npos;
             at += separator.size())
            ++count;
        pieces.reserve(count);
        std::size_t begin = 0;
        for (std::size_t end; (end = text_.find(separator, begin)) != std::string::npos;) {
            pieces.emplace_back(text_, begin, end - begin);
            begin = end + separator.size();
        }
        pieces.emplace_back(text_, begin);
    }
    clear();
    return pieces;
}

}  // namespace talvora
