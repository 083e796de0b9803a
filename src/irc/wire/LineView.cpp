#include "irc/wire/LineView.h"

#include <algorithm>

namespace talvora {

namespace {

constexpr char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool digit(char c) {
    return c >= '0' && c <= '9';
}

int numericOf(std::string_view command) {
    if (command.size() != 3 || !digit(command[0]) || !digit(command[1]) || !digit(command[2])) return -1;
    return (command[0] - '0') * 100 + (command[1] - '0') * 10 + (command[2] - '0');
}

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace

bool sameAscii(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

void appendLower(std::string_view text, std::string& to) {
    const auto start = to.size();
    to += text;
    std::transform(to.begin() + static_cast<std::ptrdiff_t>(start), to.end(),
                   to.begin() + static_cast<std::ptrdiff_t>(start), lower);
}

LineView::LineView(std::string_view line) : whole(line) {
    auto left = line;
    if (!left.empty() && left[0] == ':') {
        const auto blank = left.find(' ');
        prefix = left.substr(1, blank == std::string_view::npos ? blank : blank - 1);
        left.remove_prefix(blank == std::string_view::npos ? left.size() : blank + 1);
    }
    const auto blank = left.find(' ');
    command = left.substr(0, blank);
    blankBehind = blank != std::string_view::npos;
    left.remove_prefix(blankBehind ? blank + 1 : left.size());
    rest = left;
    numeric = numericOf(command);
}

LineWords::LineWords(std::string_view rest) {
    for (skipBlanks(rest); !rest.empty() && count_ < Most; skipBlanks(rest)) {
        if (rest[0] == ':') {
            words_[count_++] = rest.substr(1);
            trailing_ = true;
            return;
        }
        const auto word = rest.substr(0, rest.find(' '));
        words_[count_++] = word;
        rest.remove_prefix(word.size());
    }
}

std::string_view wordOf(std::string_view rest, std::size_t index) {
    for (skipBlanks(rest);; skipBlanks(rest), --index) {
        if (!rest.empty() && rest[0] == ':') return index == 0 ? rest.substr(1) : std::string_view{};
        const auto word = rest.substr(0, rest.find(' '));
        if (index == 0 || word.empty()) return word;
        rest.remove_prefix(word.size());
    }
}

std::size_t trailingStart(std::string_view rest) {
    if (!rest.empty() && rest[0] == ':') return 1;
    const auto at = rest.find(" :");
    return at == std::string_view::npos ? at : at + 2;
}

}  // namespace talvora
