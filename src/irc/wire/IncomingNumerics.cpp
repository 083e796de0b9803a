#include <algorithm>

#include "irc/wire/Incoming.h"

namespace talvora {

namespace {

constexpr std::string_view Digits = "0123456789";

// What the owner of the engine takes for the number: the first word behind the first ":" of the text.
bool isNumberAlone(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) return false;
    const auto word = wordOf(text.substr(colon + 1), 0);
    return !word.empty() && word.find_first_not_of(Digits) == std::string_view::npos;
}

std::size_t endOfWord(std::string_view word, std::string_view text) {
    return static_cast<std::size_t>(word.data() - text.data()) + word.size();
}

std::string_view firstNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_of(Digits), text.size()));
    return text.substr(0, text.find_first_not_of(Digits));
}

}  // namespace

void Incoming::welcome(const LineView& line, std::string& out) {
    const LineWords words(line.rest);
    const std::string asked = own_.nick();
    own_.welcome(words[0], line.prefix);
    // Most servers end the greeting with the full prefix.
    const auto greeting = words[words.size() > 1 ? words.size() - 1 : 0];
    const auto last = greeting.substr(greeting.rfind(' ') + 1);
    if (own_.isOwn(last.substr(0, last.find('!')))) own_.learnPrefix(last);
    pass(line, out);
    if (profile_.has(Rewrite::GivenNick) && !asked.empty() && !own_.isOwn(asked)) givenNick(asked, out);
}

// The engine still goes by the nick that it asked for; it learns of the other as of any change.
void Incoming::givenNick(std::string_view asked, std::string& out) const {
    out.append(":").append(asked).append(" NICK :").append(own_.nick()).append("\r\n");
}

void Incoming::support(const LineView& line, std::string& out) {
    const LineWords words(line.rest);
    for (std::size_t i = 1; i < words.size(); ++i) modes_.learn(words[i]);
    pass(line, out);
}

void Incoming::host(const LineView& line, std::string& out) {
    const LineWords words(line.rest);
    if (own_.isOwn(words[0])) own_.learnHost(words[1]);
    pass(line, out);
}

void Incoming::globalUsers(const LineView& line, std::string& out) const {
    const auto colon = line.rest.find(':');
    const auto text = colon == std::string_view::npos ? std::string_view{} : line.rest.substr(colon + 1);
    if (!profile_.has(Rewrite::GlobalUsers) || isNumberAlone(text)) return pass(line, out);
    auto number = firstNumber(text);
    if (number.empty()) number = firstNumber(wordOf(line.rest, 1));
    if (number.empty()) return pass(line, out);
    out.append(line.head()).append(wordOf(line.rest, 0)).append(" :Current global users: ").append(number);
    out.append("\r\n");
}

// In a joined channel 404 only says that the text was not let through; the engine would take it as having
// left.
void Incoming::cannotSend(const LineView& line, std::string& out) const {
    const LineWords words(line.rest);
    if (!profile_.has(Rewrite::Moderated) || !own_.isIn(words[1])) return pass(line, out);
    if (!line.prefix.empty()) out.append(":").append(line.prefix).append(" ");
    out.append("NOTICE ").append(own_.nick()).append(" :").append(words[1]).append(": ");
    out.append(words.size() > 2 ? words[words.size() - 1] : std::string_view{}).append("\r\n");
}

// The line with every ":" of its first words as "." (an address of IPv6 would end the words for the engine).
std::string_view Incoming::withoutColons(const LineView& line, std::size_t middleWords) {
    if (!profile_.has(Rewrite::ColonsInWords)) return line.whole;
    const auto text = trailingStart(line.rest);
    if (text == std::string_view::npos || line.rest.find(':') + 1 == text) return line.whole;
    const auto last = wordOf(line.rest, middleWords - 1);
    auto middle = text - 2;
    if (!last.empty()) middle = std::min(middle, endOfWord(last, line.rest));
    changed_ = line.whole;
    const auto begin = changed_.begin() + static_cast<std::ptrdiff_t>(line.head().size());
    std::replace(begin, begin + static_cast<std::ptrdiff_t>(middle), ':', '.');
    return changed_;
}

}  // namespace talvora
