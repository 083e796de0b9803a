#include "irc/wire/Incoming.h"

namespace talvora {

namespace {

constexpr std::size_t LongestSplit = 1024;

// Letters with their signs, as MODE writes them.
class SignedLetters {
  public:
    void add(char sign, char letter) {
        if (sign != sign_) text_ += sign_ = sign;
        text_ += letter;
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
    char sign_ = 0;
};

}  // namespace

void Incoming::mode(const LineView& line, std::string& out) {
    const auto target = wordOf(line.rest, 0);
    if (own_.isOwn(target)) {
        if (own_.isOwn(line.nick())) own_.learnPrefix(line.prefix);
        return ownMode(line, out);
    }
    if (target.empty() || target[0] != '#') return pass(line, out);
    const LineWords words(line.rest);
    // What repeats the prefix is for lines of a legal length alone.
    const bool splits = words.size() > 1 && line.whole.size() <= LongestSplit;
    if (profile_.has(Rewrite::ChannelModes) && splits) return channelModes(line, words, out);
    if (profile_.has(Rewrite::LastColon) && words.trailing()) return passWithoutColon(line, words, out);
    pass(line, out);
}

// The engine reads the own modes behind the colon alone.
void Incoming::ownMode(const LineView& line, std::string& out) const {
    passWithColon(line, 1, out);
}

// `+ov-k Maria Nikos sesame` in three lines: +o Maria, +v Nikos, -k.
void Incoming::channelModes(const LineView& line, const LineWords& words, std::string& out) const {
    using Kind = ModeLetters::Kind;
    SignedLetters others;
    std::size_t next = 2;
    char sign = '+';
    for (const char letter : words[1].substr(0, words[1].find(' '))) {
        if (letter == '+' || letter == '-') {
            sign = letter;
            continue;
        }
        const Kind kind = modes_.kindOf(letter);
        if (kind == Kind::Nick && next < words.size()) {
            out.append(line.head()).append(words[0]).append(1, ' ').append(1, sign).append(1, letter);
            out.append(1, ' ').append(words[next++]).append("\r\n");
            continue;
        }
        if (kind == Kind::List || kind == Kind::Word || (kind == Kind::WordSet && sign == '+')) ++next;
        if (kind != Kind::List) others.add(sign, letter);
    }
    if (others.text().empty()) return;
    out.append(line.head()).append(words[0]).append(1, ' ').append(others.text()).append("\r\n");
}

}  // namespace talvora
