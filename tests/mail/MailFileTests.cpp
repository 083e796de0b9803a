#include <gmock/gmock.h>

#include "mail/MailFile.h"
#include "platform/Text.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

using namespace std::string_literals;
namespace Mail = MailFile;

TEST(MailFile, TheMarksOfASubjectAreTakenOffAtArrival) {
    const std::pair<const char*, const char*> subjects[] = {
        {"Hello", "Subject: Hello\r\n\r\n"},
        {"Urgent:Call me", "Subject: Call me\r\nPriority: High\r\n\r\n"},
        {"uRgEnT:x", "Subject: x\r\nPriority: High\r\n\r\n"},
        {"Urgent:Call me:24:E", "Subject: Urgent\r\n\r\n"},
        {"Hello: world:48:E", "Subject: Hello\r\n\r\n"},
        {"abc:E", "Subject: abc:E\r\n\r\n"},
        {":E", "Subject: :E\r\n\r\n"},
    };
    for (const auto& [subject, end] : subjects) {
        EXPECT_EQ(Mail::IncomingHead("Nikos", "now", "24/11/2026 20:24:28", subject),
                  "QRX Brindle Talvora Mail v1.0\r\nFrom: Nikos\r\nReceived Date: now\r\n"
                  "Sent Date: 24/11/2026 20:24:28\r\n"s +
                      end);
    }
    EXPECT_EQ(Mail::KeptLine("  a $$ "), "a $");
    EXPECT_EQ(Mail::KeptLine("$"), "");
}

// What a text looks like to its reader, through all that happens to it on the way.
std::string carried(const std::string& text) {
    const std::string sent = Mail::OutgoingFile({.To = "Maria", .Subject = "s", .Text = text});
    const auto lines = Split(sent, "\r\n");
    std::string mail = Mail::IncomingHead("Nikos", "now", "then", "s");
    for (std::size_t i = 1; i + 2 < lines.size(); ++i) mail += Mail::KeptLine(lines[i]) + "\r\n";
    return Mail::Open(mail + std::string(Mail::Tail)).value().Text;
}

TEST(MailFile, ATextIsCutBlindlyAndReadBackButForABlankAtACut) {
    const std::string full(200, 'x');
    EXPECT_EQ(
        Mail::OutgoingFile(
            {.To = "Maria", .Subject = "Two words", .Text = full + "y", .Urgent = true, .ExpireHours = 48}),
        "Maria 2 Urgent:Two words:48:E\r\n" + full + "\r\ny\r\n\r\n");
    EXPECT_EQ(Mail::OutgoingFile({.To = "Maria", .Subject = "s", .Text = full}),
              "Maria 1 s\r\n" + full + "\r\n\r\n");
    const std::string blank = std::string(199, 'x') + " ";
    EXPECT_EQ(Mail::OutgoingFile({.To = "M", .Subject = "s", .Text = blank + "y"}),
              "M 2 s\r\n" + blank + "$\r\ny\r\n\r\n");
    EXPECT_EQ(carried(blank + "y"), std::string(199, 'x') + "y") << "the blank at the cut is lost";
    const std::string cutMark = std::string(198, 'x') + "\r\nend\r\n";
    EXPECT_EQ(carried(cutMark), cutMark) << "a mark cut in two is whole again";
    EXPECT_EQ(carried("a\nb\rc"), "a\r\nb\r\nc");
    EXPECT_EQ(carried("\xC3\xE5\xE9\xDC[#n]\xF3\xEF\xF5"), "\xC3\xE5\xE9\xDC\r\n\xF3\xEF\xF5");
    for (const auto& text : {""s, "a"s, full, full + "x", cutMark, "a\r\n\r\nb"s}) {
        const auto words = Split(Mail::OutgoingFile({.To = "M", .Subject = "s", .Text = text}), " ", 3);
        EXPECT_EQ(CStr(Mail::PieceCount(text, false)), words[1]);
    }
}

TEST(MailFile, OpeningMarksAMailAsReadOnceAndDropsWhatStandsBehindItsEnd) {
    const std::string head = Mail::IncomingHead("Ni: kos", "r", "s", "Urgent:a: b");
    const auto first = Mail::Open(head + "RTF:{\\rtf1\r\n x}\r\n\r\n-- EOF --\r\nmore").value();
    EXPECT_EQ(first.Head.From, "Ni: kos");
    EXPECT_EQ(first.Head.Subject, "a: b");
    EXPECT_TRUE(first.Head.Urgent && first.IsRTF && !first.Head.Read);
    EXPECT_EQ(first.Text, "{\\rtf1x}");
    const auto second = Mail::Open(first.Copy).value();
    EXPECT_TRUE(second.Head.Read);
    EXPECT_EQ(second.Copy, first.Copy);
    EXPECT_FALSE(Mail::Open("Maria 1 s\r\nx\r\n\r\n"));
}

TEST(MailFile, ADamagedMailIsAFaultAndNoMore) {
    const std::string head = Mail::IncomingHead("N", "r", "s", "x");
    for (std::size_t cut = 0; cut < head.size(); ++cut) {
        MailFile::Summary summary;
        const std::string start = head.substr(0, cut);
        faultOf([&] { Mail::ReadSummary(start, summary); });
        faultOf([&] { Mail::Open(start); });
    }
    MailFile::Summary summary;
    EXPECT_EQ(faultOf([&] { Mail::ReadSummary("", summary); }), 62);
    EXPECT_EQ(faultOf([&] { Mail::ReadSummary("a\r\nb\r\nc\r\n", summary); }), 9);
    EXPECT_EQ(Mail::Open(head + "a\0b"s).value().Text, "a\0b"s);
    EXPECT_EQ(Mail::Open(head + std::string(10 << 20, 'x')).value().Text.size(), 10U << 20);
}

}  // namespace
}  // namespace talvora::test
