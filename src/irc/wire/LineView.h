#pragma once
// A line of the protocol taken apart without copying, as the adapter sees it. All parts are views into the
// line, which must outlive them.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace talvora {

// Compares without regard to the case of ASCII letters, as the servers do with nicks and channels.
bool sameAscii(std::string_view a, std::string_view b);
void appendLower(std::string_view text, std::string& to);

struct LineView {
    explicit LineView(std::string_view line);

    std::string_view whole;
    std::string_view prefix;   // without its colon; empty if there is none
    std::string_view command;  // empty if the line ends before it
    std::string_view rest;     // behind the blank behind the command
    int numeric = -1;          // of three digits, else -1
    bool blankBehind = false;  // a blank stands behind the command

    std::string_view nick() const { return prefix.substr(0, prefix.find_first_of("!@")); }
    // Up to the command and the blank behind it.
    std::string_view head() const { return whole.substr(0, whole.size() - rest.size()); }
};

// The words of a line's rest by the protocol's own rule: a word that begins with ":" is the last one.
class LineWords {
  public:
    // More words than any server sends; what is beyond is not looked at.
    static constexpr std::size_t Most = 32;

    explicit LineWords(std::string_view rest);

    std::size_t size() const { return count_; }
    // The word without its colon; empty if there are fewer.
    std::string_view operator[](std::size_t index) const {
        return index < count_ ? words_[index] : std::string_view{};
    }
    // The last word stood behind a colon.
    bool trailing() const { return trailing_; }
    bool isTrailing(std::size_t index) const { return trailing_ && index + 1 == count_; }

  private:
    std::array<std::string_view, Most> words_;
    std::size_t count_ = 0;
    bool trailing_ = false;
};

// The word of a rest, counted from 0, without taking the whole rest apart.
std::string_view wordOf(std::string_view rest, std::size_t index);

// Where the last word's text begins, behind its " :" or ":" at the very start; npos if no word has a colon.
std::size_t trailingStart(std::string_view rest);

}  // namespace talvora
