#include "mail/MailFile.h"

#include <algorithm>
#include <charconv>

#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora::MailFile {

namespace {

constexpr std::string_view UrgentMark = "Urgent:";

std::string named(char kind, std::int32_t number, std::string_view extension) {
    return kind + Hex(number) + std::string(extension);
}

std::string valueOf(std::string_view line) {
    return elementOf(Split(line, ": ", 2), 1);
}

bool isHigh(std::string_view line) {
    return UCase(valueOf(line)) == "HIGH";
}

bool isReadMark(std::string_view line) {
    return UCase(line) == "READED: YES";
}

// The lines of a text; an end is CR LF, or a lone CR or LF.
class Lines {
  public:
    explicit Lines(std::string_view text) : rest_(text) {}
    bool atEnd() const { return rest_.empty(); }
    std::string_view next() {
        if (atEnd()) throw RuntimeError(Fault::InputPastEndOfFile);
        const std::size_t end = std::min(rest_.find_first_of("\r\n"), rest_.size());
        const std::string_view line = rest_.substr(0, end);
        const bool two = rest_.substr(end).starts_with("\r\n");
        rest_.remove_prefix(std::min(end + (two ? 2 : 1), rest_.size()));
        return line;
    }

  private:
    std::string_view rest_;
};

// The walk goes on to the first colon of all, so that a colon of the subject itself ends it too. The colon of
// the mark's own letter is out of its reach.
std::string withoutHourMark(std::string subject) {
    if (Right(subject, 2) != ":E") return subject;
    for (std::size_t i = subject.size() - 2; i >= 1; --i) {
        if (i <= subject.size() && subject[i - 1] == ':') subject.resize(i - 1);
    }
    return subject;
}

// Where the next line end or NUL stands; the size if there is none.
std::size_t breakFrom(std::string_view text, std::size_t at) {
    const auto isBreak = [](char c) { return c == '\r' || c == '\n' || c == '\0'; };
    const auto begin = text.begin() + static_cast<std::ptrdiff_t>(at);
    return static_cast<std::size_t>(std::find_if(begin, text.end(), isBreak) - text.begin());
}

// Line ends become marks, so that the text is one line; NUL has no way over the network.
std::string marked(std::string_view text, bool isRTF) {
    std::string line(isRTF ? RTFMark : "");
    line.reserve(line.size() + text.size() + text.size() / 16);
    while (!text.empty()) {
        const std::size_t end = breakFrom(text, 0);
        line.append(text.substr(0, end));
        text.remove_prefix(end);
        if (text.empty()) break;
        if (text.front() != '\0') line.append(LineEndMark);
        text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
    return line;
}

// How many pieces `length` characters are.
std::size_t piecesOf(std::size_t length) {
    return (length + PieceSize - 1) / PieceSize;
}

void appendPieces(std::string& to, std::string_view line) {
    to.reserve(to.size() + line.size() + piecesOf(line.size()) * 3 + 2);
    for (; !line.empty(); line.remove_prefix(std::min(PieceSize, line.size()))) {
        const std::string_view piece = line.substr(0, PieceSize);
        to.append(piece);
        if (piece.back() == ' ') to.push_back('$');
        to.append("\r\n");
    }
}

std::string_view trimmed(std::string_view line) {
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    line.remove_prefix(begin);
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

// One received line behind what came before; a cut may have gone through a mark, so that these are read last.
void appendBodyLine(std::string& text, std::string_view line) {
    line = trimmed(line);
    if (line.ends_with('$') && line.size() > PieceSize) line.remove_suffix(1);
    text.append(line);
}

void readBody(Lines& lines, Opened& mail) {
    std::string text;
    while (!lines.atEnd()) {
        const std::string_view line = lines.next();
        mail.Copy.append(line).append("\r\n");
        if (line == EndLine) break;
        appendBodyLine(text, line);
    }
    text = Replace(text, LineEndMark, "\r\n");
    mail.IsRTF = text.starts_with(RTFMark);
    mail.Text = mail.IsRTF ? text.substr(RTFMark.size()) : std::move(text);
}

}  // namespace

std::string ReceivingName(std::int32_t number) {
    return named('i', number, ".ml");
}

std::string IncomingName(std::int32_t number) {
    return named('i', number, ".qrm");
}

std::string OutgoingName(std::int32_t number) {
    return named('o', number, ".qrm");
}

std::string PathOf(std::string_view name) {
    return std::string(Folder).append(name);
}

std::int32_t NumberOf(std::string_view name) {
    std::int32_t number = 0;
    if (name.empty()) return 0;
    const std::string_view digits = name.substr(1, name.find('.') - 1);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return read.ec == std::errc() && read.ptr == digits.data() + digits.size() ? number : 0;
}

// ---- Incoming

std::string IncomingHead(std::string_view from, std::string_view received, std::string_view sent,
                         std::string_view subject) {
    std::string rest = withoutHourMark(std::string(subject));
    const bool urgent = EqualText(Left(rest, UrgentMark.size()), UrgentMark);
    if (urgent) rest.erase(0, UrgentMark.size());
    std::string head(Magic);
    head.append("\r\nFrom: ").append(from);
    head.append("\r\nReceived Date: ").append(received);
    head.append("\r\nSent Date: ").append(sent);
    head.append("\r\nSubject: ").append(rest);
    return head.append(urgent ? "\r\nPriority: High\r\n\r\n" : "\r\n\r\n");
}

std::string KeptLine(std::string_view line) {
    std::string_view kept = trimmed(line);
    if (kept.ends_with('$')) kept.remove_suffix(1);
    return std::string(kept);
}

void ReadSummary(std::string_view start, Summary& summary) {
    Lines lines(start);
    lines.next();
    std::string_view line = lines.next();
    summary.Read = isReadMark(line);
    if (summary.Read) line = lines.next();
    summary.From = valueOf(line);
    summary.Received = valueOf(lines.next());
    summary.Sent = valueOf(lines.next());
    summary.Subject = valueOf(lines.next());
    line = lines.next();
    if (!line.empty()) summary.Urgent = isHigh(line);
}

std::optional<Opened> Open(std::string_view content) {
    Lines lines(content);
    if (lines.next() != Magic) return std::nullopt;
    Opened mail;
    mail.Copy.reserve(content.size() + ReadMark.size() + 2);
    mail.Copy.append(Magic).append("\r\n").append(ReadMark).append("\r\n");
    const auto copied = [&](std::string_view line) {
        mail.Copy.append(line).append("\r\n");
        return line;
    };
    std::string_view line = lines.next();
    mail.Head.Read = isReadMark(line);
    if (mail.Head.Read) line = lines.next();
    mail.Head.From = valueOf(copied(line));
    mail.Head.Received = valueOf(copied(lines.next()));
    copied(lines.next());
    mail.Head.Subject = valueOf(copied(lines.next()));
    line = copied(lines.next());
    if (!line.empty()) mail.Head.Urgent = isHigh(line);
    readBody(lines, mail);
    return mail;
}

// ---- Outgoing

std::string OutgoingFile(const Letter& letter) {
    const std::string line = marked(letter.Text, letter.IsRTF);
    std::string file = OneLine(letter.To) + ' ' + CStr(piecesOf(line.size())) + ' ';
    if (letter.Urgent) file.append(UrgentMark);
    file.append(OneLine(letter.Subject));
    if (letter.ExpireHours > 0) file.append(":").append(CStr(letter.ExpireHours)).append(":E");
    file.append("\r\n");
    appendPieces(file, line);
    return file.append("\r\n");
}

std::size_t PieceCount(std::string_view text, bool isRTF) {
    std::size_t length = text.size() + (isRTF ? RTFMark.size() : 0);
    for (std::size_t at = 0; (at = breakFrom(text, at)) != text.size();) {
        const std::size_t taken = text.substr(at).starts_with("\r\n") ? 2 : 1;
        length += (text[at] == '\0' ? 0 : LineEndMark.size()) - taken;
        at += taken;
    }
    return piecesOf(length);
}

OutgoingHead ReadOutgoing(std::string_view line) {
    const auto words = Split(line, " ", 3);
    return {elementOf(words, 0), elementOf(words, 1), elementOf(words, 2)};
}

}  // namespace talvora::MailFile
