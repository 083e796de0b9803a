#include <algorithm>
#include <charconv>
#include <utility>

#include "chat/IRCWin.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr char Tag = '\x05';
constexpr char Filler = ' ';
constexpr std::string_view WrittenLineEnd = "\\par\r\n ";

// Buffers that a giant line has blown up are not kept.
constexpr std::size_t LongestKept = 64 * 1024;

void giveBack(std::string& spare, std::string&& buffer) {
    if (buffer.capacity() <= LongestKept) spare = std::move(buffer);
}

// ---- Control characters to tags

enum class Mark : std::uint8_t { None, Bold, Underline, Strike, Italic, Reset, Reverse, Colour, Colon };

constexpr std::array<Mark, 256> Marks = [] {
    std::array<Mark, 256> marks{};
    marks[2] = Mark::Bold;
    marks[3] = Mark::Colour;
    marks[15] = Mark::Reset;
    marks[22] = Mark::Italic;
    marks[28] = Mark::Reverse;
    marks[29] = Mark::Strike;
    marks[31] = Mark::Underline;
    marks[':'] = Mark::Colon;
    return marks;
}();

constexpr std::uint8_t LinkColor = 14;  // palette colour 12, blue

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// How long the scheme of a link is that `text` ends with; 0 if there is none.
std::size_t schemeAtEnd(std::string_view text) {
    for (const std::string_view scheme : {std::string_view("HTTP"), std::string_view("FTP")}) {
        const std::size_t size = scheme.size();
        if (text.size() >= size && EqualText(text.substr(text.size() - size), scheme)) return size;
    }
    return 0;
}

// A number as it is read digit by digit. Beyond what a colour can be it only stays too large.
class Digits {
  public:
    void append(char digit) {
        number_ = std::min(number_ * 10 + static_cast<unsigned>(digit - '0'), TooLarge);
    }
    unsigned number() const { return number_; }

  private:
    static constexpr unsigned TooLarge = 1'000'000;
    unsigned number_ = 0;
};

// Translates one line.
class LineTranslator {
  public:
    LineTranslator(Trap& step, std::string_view text, std::uint8_t fore, std::uint8_t back, std::string& out)
        : step_(step), text_(text), lineFore_(fore), lineBack_(back), fore_(fore), back_(back), out_(out) {}

    void run(std::string_view stamp) {
        out_.clear();
        write('F', fore_);
        write('H', back_);
        out_ += stamp;
        while (nextMark()) interpret(Marks[byteAt(at_)]);
    }

  private:
    std::uint8_t byteAt(std::size_t index) const { return static_cast<std::uint8_t>(text_[index]); }

    void write(char letter, std::uint8_t argument) {
        const char tag[] = {Tag, letter, static_cast<char>(argument)};
        out_.append(tag, sizeof tag);
    }
    void write(char letter) { write(letter, static_cast<std::uint8_t>(Filler)); }

    // Copies body text up to the next character that may mean something. False at the end.
    bool nextMark() {
        begin_ = at_;
        while (at_ < text_.size() && Marks[byteAt(at_)] == Mark::None) ++at_;
        out_.append(text_, begin_, at_ - begin_);
        return at_ < text_.size();
    }

    void interpret(Mark mark) {
        switch (mark) {
            case Mark::Colon:
                return link();
            case Mark::Colour:
                return colour();
            case Mark::Bold:
                toggle(bold_, 'B', 'b');
                break;
            case Mark::Underline:
                toggle(underline_, 'U', 'u');
                break;
            case Mark::Strike:
                toggle(strike_, 'S', 's');
                break;
            case Mark::Italic:
                toggle(italic_, 'I', 'i');
                break;
            case Mark::Reset:
                backToTheLines();
                break;
            case Mark::Reverse:
                reverse();
                break;
            case Mark::None:
                break;
        }
        ++at_;
    }

    void toggle(bool& flag, char on, char off) {
        flag = !flag;
        write(flag ? on : off);
    }

    void backToTheLines() {
        fore_ = lineFore_;
        back_ = lineBack_;
        write('H', back_);
        write('F', fore_);
    }

    // Foreground and background change places, by their numbers as colours of the RTF table.
    void reverse() {
        const unsigned back = back_;
        back_ = fore_ == 0 ? 0 : static_cast<std::uint8_t>(fore_ - 1);
        take(fore_, back + 1);
        write('F', fore_);
        write('H', back_);
        if (bold_) write('b');
        bold_ = false;
        if (italic_) write('i');
        italic_ = false;
        // The underline flag stays set on purpose: the next underline character closes once more.
        if (underline_) write('u');
    }

    // A link runs up to the next blank, whatever it holds, and leaves colours and flags as they were. Its
    // scheme is found by the colon, when it has been copied already.
    void link() {
        const std::size_t scheme = schemeAtEnd(text_.substr(begin_, at_ - begin_));
        if (scheme == 0) {
            out_ += text_[at_++];
            return;
        }
        const std::size_t begin = at_ - scheme;
        out_.resize(out_.size() - scheme);
        at_ = std::min(text_.find(' ', at_), text_.size());
        write('F', LinkColor);
        write('U');
        out_.append(text_, begin, at_ - begin);
        if (fore_ != LinkColor) write('F', fore_);
        if (!underline_) write('u');
    }

    // Numbers of any length. What the text's end cuts off has no effect.
    void colour() {
        Digits digits;
        bool readsFore = true;
        for (++at_; at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            if (isDigit(c)) {
                digits.append(c);
                continue;
            }
            std::uint8_t& part = readsFore ? fore_ : back_;
            take(part, digits.number() + 2);
            write(readsFore ? 'F' : 'H', part);
            const bool goesOn = readsFore && c == ',' && at_ + 1 < text_.size() && isDigit(text_[at_ + 1]);
            if (!goesOn) return;
            readsFore = false;
            digits = {};
        }
    }

    // A colour that is no byte is a fault, by which the old colour stays. A line is reported once, however
    // many of them it holds.
    void take(std::uint8_t& colour, unsigned number) {
        if (number > 255 && reported_) return;
        reported_ = !step_([&] {
            if (number > 255) keepText();
            colour = CByte(number);
        }) || reported_;
    }

    // The report of a fault lets other events run, and the caller's text may be gone behind it.
    void keepText() {
        if (text_.data() == kept_.data()) return;
        kept_ = text_;
        text_ = kept_;
    }

    Trap& step_;
    std::string_view text_;
    std::string kept_;
    std::size_t at_ = 0;
    std::size_t begin_ = 0;  // of the body text copied last
    std::uint8_t lineFore_;
    std::uint8_t lineBack_;
    std::uint8_t fore_;
    std::uint8_t back_;
    bool bold_ = false;
    bool underline_ = false;
    bool strike_ = false;
    bool italic_ = false;
    bool reported_ = false;
    std::string& out_;
};

// ---- Tags to RTF

// Converts tags, and knows what has to be closed behind them.
class TagConverter {
  public:
    explicit TagConverter(std::string& out) : out_(out) {}

    // A tag that the text's end cuts off writes nothing.
    void convert(std::string_view text) {
        for (;;) {
            const std::size_t tag = text.find(Tag);
            out_ += text.substr(0, tag);
            if (tag == std::string_view::npos || tag + 3 > text.size()) return;
            write(text[tag + 1], static_cast<std::uint8_t>(text[tag + 2]));
            text.remove_prefix(tag + 3);
        }
    }

    void close() {
        if (bold_) out_ += "\\b0";
        if (italic_) out_ += "\\i0";
        if (underline_) out_ += "\\ul0";
        if (strike_) out_ += "\\strike0";
        if (color_) out_ += "\\cf0";
        if (highlight_) out_ += "\\highlight0";
    }

  private:
    void write(char letter, std::uint8_t argument) {
        switch (letter) {
            case 'B':
                return write("\\b ", bold_, true);
            case 'b':
                return write("\\b0 ", bold_, false);
            case 'I':
                return write("\\i ", italic_, true);
            case 'i':
                return write("\\i0 ", italic_, false);
            case 'U':
                return write("\\ul ", underline_, true);
            case 'u':
                return write("\\ul0 ", underline_, false);
            case 'S':
                return write("\\strike ", strike_, true);
            case 's':
                return write("\\strike0 ", strike_, false);
            case 'F':
                return writeColor("\\cf", color_, argument);
            case 'H':
                return writeColor("\\highlight", highlight_, argument);
            default:
                return;
        }
    }

    void write(std::string_view word, bool& flag, bool value) {
        out_ += word;
        flag = value;
    }

    // Colour byte 1 is the automatic colour, which needs no closing.
    void writeColor(std::string_view word, bool& flag, std::uint8_t colour) {
        char number[4];
        const char* end = std::to_chars(number, number + sizeof number, colour - 1).ptr;
        out_ += word;
        out_.append(static_cast<const char*>(number), end) += ' ';
        flag = colour != 1;
    }

    std::string& out_;
    bool bold_ = false;
    bool italic_ = false;
    bool underline_ = false;
    bool strike_ = false;
    bool color_ = false;
    bool highlight_ = false;
};

}  // namespace

void IRCWin::AddIRCLine(std::string_view Text, std::uint8_t ForeColor, std::uint8_t BackColor) {
    const Alive::Watch self(alive_);
    trapped(globError_, "AddIRCLine", [&](Trap& step) {
        std::string tags = std::exchange(spareTags_, {});
        std::string stamp;
        if (TimeStamp) stamp = "[" + ShortTime(platform_.WallClock.Now()) + "] ";
        LineTranslator(step, Text, ForeColor, BackColor, tags).run(stamp);
        if (self.gone()) return;
        AddBBText(tags, true, true, true);
        if (!self.gone()) giveBack(spareTags_, std::move(tags));
    });
}

// The line's end is a fragment of its own, so that an open brace in the line can't swallow it.
void IRCWin::AddBBText(std::string_view SrcBBText, bool ChangeLine, bool, bool Emotions) {
    const Alive::Watch self(alive_);
    trapped(globError_, "AddBBText", [&](Trap&) {
        std::string rtf = std::exchange(spareRTF_, {});
        rtf.clear();
        TagConverter converter(rtf);
        converter.convert(SrcBBText);
        if (Emotions) emotions_.ReplaceEmotionIn(rtf);
        if (self.gone()) return;
        converter.close();
        if (!ChangeLine) rtf += ' ';
        RTFBody.Append(std::string(rtf));
        if (ChangeLine) RTFBody.Append(std::string(WrittenLineEnd));
        giveBack(spareRTF_, std::move(rtf));
        Refresh();
    });
}

}  // namespace talvora
