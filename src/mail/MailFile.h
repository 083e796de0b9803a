#pragma once
// The two layouts of mail files and their encoding of text. It knows no window, no network and no disk: it
// makes and reads text.
//
// Lines end in CR LF, in code page 1253. An incoming mail is a head of named lines, an empty line, the lines
// as they arrived, an empty line and the end line. An outgoing mail is what goes to the robot, ready made: a
// first line of recipient, number of pieces and subject, the pieces, and an empty line.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace talvora::MailFile {

inline constexpr std::string_view Folder = "Mail\\";
inline std::string PathOf(const std::string& name) {
    return std::string(Folder) + name;
}
inline constexpr std::string_view Magic = "QRX Brindle Talvora Mail v1.0";
inline constexpr std::string_view ReadMark = "Readed: yes";
inline constexpr std::string_view EndLine = "-- EOF --";
// What goes behind the last received line.
inline constexpr std::string_view Tail = "\r\n-- EOF --\r\n";
inline constexpr std::string_view RTFMark = "RTF:";
inline constexpr std::string_view LineEndMark = "[#n]";
inline constexpr std::size_t PieceSize = 200;  // characters; a protected blank makes it one more

// "i1A.ml" while it is received, "i1A.qrm" when it is whole, "o1A.qrm" on its way out.
std::string ReceivingName(std::int32_t number);
std::string IncomingName(std::int32_t number);
std::string OutgoingName(std::int32_t number);
// In the mail folder.
std::string PathOf(std::string_view name);
// The number in the name of an `i*` or `o*` file; 0 if it is none.
std::int32_t NumberOf(std::string_view name);

// ---- Incoming

// All up to the received lines. Takes the marks off the subject: "Urgent:" becomes the line of priority. An
// hour mark at its end takes away all from the subject's first colon on, and so the priority too.
std::string IncomingHead(std::string_view from, std::string_view received, std::string_view sent,
                         std::string_view subject);
// A line as it is kept: without blanks at its ends and without the "$" that protected one.
std::string KeptLine(std::string_view line);

struct Summary {
    std::string From;
    std::string Received;
    std::string Sent;
    std::string Subject;
    bool Read = false;
    bool Urgent = false;
};
// What the list shows, from a mail's beginning. 62 if the head ends too early, 9 where a line has no value;
// `summary` then holds what could be read.
void ReadSummary(std::string_view start, Summary& summary);

struct Opened {
    Summary Head;      // its date of sending is not read
    std::string Text;  // plain, or RTF source
    bool IsRTF = false;
    std::string Copy;  // the file with the read mark, up to its end line
};
// Nothing if it doesn't begin with the magic line. Faults as ReadSummary does.
std::optional<Opened> Open(std::string_view content);

// ---- Outgoing

struct Letter {
    std::string To;
    std::string Subject;
    std::string Text;  // plain, or RTF source
    bool Urgent = false;
    bool IsRTF = false;
    std::int32_t ExpireHours = 0;  // 0 for none
};
std::string OutgoingFile(const Letter& letter);
// How many pieces the text will be. Line ends other than CR LF count like one.
std::size_t PieceCount(std::string_view text, bool isRTF);

struct OutgoingHead {
    std::string To;
    std::string Total;
    std::string Subject;  // with its marks
};
// The first line; 9 if a word is missing.
OutgoingHead ReadOutgoing(std::string_view line);

}  // namespace talvora::MailFile
