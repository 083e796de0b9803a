#include "platform/rich/RtfWriter.h"

#include <array>
#include <string_view>

#include "platform/CodePage1253.h"
#include "platform/RuntimeError.h"

namespace talvora {

namespace {

constexpr std::string_view Digits = "0123456789abcdef";
constexpr std::size_t BytesPerLine = 64;
constexpr int Greek = 161;
constexpr int DefaultCharset = 1;

class Writer {
  public:
    explicit Writer(const RichHead& head) : head_(head), now_(head.Base), paragraph_(head.BaseParagraph) {}

    void writeHead();
    void writeParagraph(const Paragraph& paragraph);
    void write(std::string_view words) { rtf_ += words; }
    std::string take() { return std::move(rtf_); }

  private:
    void writeFonts();
    void writeColours();
    void writeParagraphFormat(const ParagraphFormat& format);
    void changeTo(const CharFormat& format);
    void writeText(const Paragraph& paragraph, std::size_t begin, std::size_t end, std::size_t& picture);
    void writeCharacter(char c);
    void writePicture(const Picture& picture);
    bool standsAsItIs(const CharFormat& format) const;

    void word(std::string_view name, long value) {
        rtf_.append("\\").append(name).append(std::to_string(value));
    }
    void word(std::string_view name, bool on) { rtf_.append("\\").append(name).append(on ? "" : "0"); }
    template <class T>
    void change(T& now, T to, std::string_view name) {
        if (now == to) return;
        now = to;
        if constexpr (std::is_same_v<T, bool>) {
            word(name, to);
        } else {
            word(name, long{to});
        }
    }

    const RichHead& head_;
    CharFormat now_;
    ParagraphFormat paragraph_;
    std::string rtf_;
};

void Writer::writeFonts() {
    rtf_ += "{\\fonttbl";
    for (std::size_t i = 0; i < head_.Fonts.size(); ++i) {
        rtf_ += '{';
        word("f", static_cast<long>(i));
        rtf_ += "\\fnil";
        word("fcharset", long{head_.Fonts[i].Charset});
        rtf_ += ' ';
        for (const char c : head_.Fonts[i].Name) {
            // A name ends at its first semicolon, and no reader expects more than letters in it.
            if (static_cast<unsigned char>(c) >= ' ' &&
                std::string_view(";{}\\").find(c) == std::string_view::npos) {
                rtf_ += c;
            }
        }
        rtf_ += ";}";
    }
    rtf_ += "}\r\n";
}

void Writer::writeColours() {
    if (head_.Colors.size() <= 1) return;
    rtf_ += "{\\colortbl ;";
    for (std::size_t i = 1; i < head_.Colors.size(); ++i) {
        const Colour colour = head_.Colors[i];
        word("red", static_cast<long>(colour & 0xFF));
        word("green", static_cast<long>(colour >> 8 & 0xFF));
        word("blue", static_cast<long>(colour >> 16 & 0xFF));
        rtf_ += ';';
    }
    rtf_ += "}\r\n";
}

void Writer::writeHead() {
    rtf_ += "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032";
    writeFonts();
    writeColours();
    rtf_ += "\\viewkind4\\uc1";
    writeParagraphFormat(head_.BaseParagraph);
    word("f", long{now_.Font});
    word("fs", long{now_.HalfPoints});
    CharFormat plain;
    plain.Font = now_.Font;
    plain.HalfPoints = now_.HalfPoints;
    now_ = plain;
    changeTo(head_.Base);
    if (rtf_.back() != ' ') rtf_ += ' ';
}

void Writer::writeParagraphFormat(const ParagraphFormat& format) {
    constexpr std::array<std::string_view, 4> Alignments = {"", "\\qr", "\\qc", "\\qj"};
    rtf_ += "\\pard";
    rtf_ += Alignments.at(static_cast<std::size_t>(format.Align));
    ParagraphFormat plain;
    change(plain.LeftIndent, format.LeftIndent, "li");
    change(plain.RightIndent, format.RightIndent, "ri");
    change(plain.FirstIndent, format.FirstIndent, "fi");
    change(plain.SpaceBefore, format.SpaceBefore, "sb");
    change(plain.SpaceAfter, format.SpaceAfter, "sa");
    paragraph_ = format;
}

void Writer::changeTo(const CharFormat& format) {
    const std::size_t before = rtf_.size();
    change(now_.Color, format.Color, "cf");
    change(now_.Highlight, format.Highlight, "highlight");
    change(now_.Font, format.Font, "f");
    change(now_.HalfPoints, format.HalfPoints, "fs");
    change(now_.Bold, format.Bold, "b");
    change(now_.Italic, format.Italic, "i");
    change(now_.Underline, format.Underline, "ul");
    change(now_.StrikeThru, format.StrikeThru, "strike");
    if (rtf_.size() != before) rtf_ += ' ';
}

void Writer::writeParagraph(const Paragraph& paragraph) {
    if (paragraph.Format != paragraph_) {
        writeParagraphFormat(paragraph.Format);
        rtf_ += ' ';
    }
    std::size_t picture = 0;
    for (std::size_t i = 0; i < paragraph.Runs.size(); ++i) {
        const bool last = i + 1 == paragraph.Runs.size();
        changeTo(paragraph.Runs[i].Format);
        writeText(paragraph, paragraph.Runs[i].Begin,
                  last ? paragraph.Text.size() : paragraph.Runs[i + 1].Begin, picture);
    }
}

// A byte above 127 is read by the code page of its font.
bool Writer::standsAsItIs(const CharFormat& format) const {
    if (format.Font >= head_.Fonts.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    const int charset = head_.Fonts[format.Font].Charset;
    return charset == Greek || charset == DefaultCharset;
}

void Writer::writeText(const Paragraph& paragraph, std::size_t begin, std::size_t end, std::size_t& picture) {
    if (begin > end || end > paragraph.Text.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    const unsigned char limit = standsAsItIs(now_) ? 0xFF : 0x7F;
    const auto isPlain = [limit](char c) {
        return static_cast<unsigned char>(c) >= ' ' && static_cast<unsigned char>(c) <= limit && c != '\\' &&
               c != '{' && c != '}';
    };
    for (std::size_t i = begin; i < end; ++i) {
        const std::size_t from = i;
        while (i < end && isPlain(paragraph.Text[i])) ++i;
        rtf_.append(paragraph.Text, from, i - from);
        if (i == end) return;
        if (paragraph.Text[i] != PictureMark) {
            writeCharacter(paragraph.Text[i]);
            continue;
        }
        if (picture >= paragraph.Pictures.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
        writePicture(*paragraph.Pictures[picture++]);
    }
}

void Writer::writeCharacter(char c) {
    if (c == '\t') {
        rtf_ += "\\tab ";
    } else if (c == LineBreak) {
        rtf_ += "\\line ";
    } else if (static_cast<unsigned char>(c) >= 0x80) {
        word("u", long{static_cast<std::int16_t>(codePointOf(static_cast<unsigned char>(c)))});
        rtf_ += '?';
    } else {
        rtf_ += '\\';
        rtf_ += c;
    }
}

void Writer::writePicture(const Picture& picture) {
    constexpr std::array<std::string_view, 3> Kinds = {"\\pngblip", "\\jpegblip", "\\dibitmap0"};
    rtf_ += "{\\pict";
    rtf_ += Kinds.at(static_cast<std::size_t>(picture.Type));
    word("picw", long{picture.PixelWidth});
    word("pich", long{picture.PixelHeight});
    word("picwgoal", long{picture.WidthTwips});
    word("pichgoal", long{picture.HeightTwips});
    for (std::size_t i = 0; i < picture.Bytes.size(); ++i) {
        if (i % BytesPerLine == 0) rtf_ += "\r\n";
        const auto byte = static_cast<unsigned char>(picture.Bytes[i]);
        rtf_ += Digits[byte >> 4];
        rtf_ += Digits[byte & 15];
    }
    rtf_ += '}';
}

}  // namespace

std::string writeRtf(const RichHead& head, const std::vector<Paragraph>& paragraphs) {
    Writer writer(head);
    writer.writeHead();
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        if (i != 0) writer.write("\\par\r\n");
        writer.writeParagraph(paragraphs[i]);
    }
    writer.write("}");
    return writer.take();
}

}  // namespace talvora
