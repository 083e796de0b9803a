// The documents that the office suite is to read, and what it wrote read back.
//
//   office_sample write FOLDER TABLE   a conversation as the chat view holds it (chat.rtf), the same as the
//                                      control gives it out (box.rtf), and its text in UTF-8 (chat.txt)
//   office_sample read FILE            a line for each run of a document: text, attributes, colours

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "chat/IRCWin.h"
#include "platform/CodePage1253.h"
#include "simulation/VirtualPlatform.h"

using namespace talvora;

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void save(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

void converse(IRCWin& win) {
    const auto greek = [](const char* utf8) { return fromUtf8(utf8); };
    win.AddIRCLine("<Maria> plain, \2bold\2, \x16italic\x16, \x1funderlined\x1f, \x1dstruck\x1d", 3, 2);
    win.AddIRCLine(greek("<Νίκος> Καλημέρα! Ώρα για καφέ; άέήίόύώϊΐϋΰ ςσ ΆΈΉΊΌΎΏ"), 3, 2);
    for (int colour = 0; colour < 16; ++colour) {
        const std::string code = "\3" + std::to_string(colour) + "," + std::to_string(15 - colour);
        win.AddIRCLine("<Maria> " + code + " colour \xf back", 3, 2);
    }
    win.AddIRCLine(
        "<Maria> all at once \2\x16\x1f\x1d\3"
        "4,8here\xf and a link http://example.org/path end",
        3, 2);
    win.AddIRCLine("<Nikos> smile :-) and laugh :-D and a heart <3", 16, 2);
    win.AddIRCLine("* Maria waves", 8, 2);
}

void write(const std::string& folder, const std::string& table) {
    test::VirtualTime time;
    test::VirtualNetwork network(time);
    test::VirtualPlatform around(time, network);
    around.questions.answerFaults(Answer::Abort);
    around.disk.put("System/emoticons.dat", contentOf(table));
    GlobError reporter(around.platform);
    modEmotions emotions(around.files, reporter);
    emotions.LoadEmotions();
    IRCWin win(around.platform, reporter, emotions);
    converse(win);
    save(folder + "/chat.rtf", win.Document());
    save(folder + "/box.rtf", win.RichTextBox1.TextRTF());
    save(folder + "/chat.txt", toUtf8(win.RichTextBox1.Text()));
}

std::string colourText(const RichHead& head, std::uint16_t index) {
    if (index == 0) return "-";
    char text[8];
    const Colour colour = head.Colors.at(index);
    std::snprintf(text, sizeof text, "%02x%02x%02x", colour & 255, colour >> 8 & 255, colour >> 16 & 255);
    return text;
}

void printRun(const RichHead& head, const Run& run, const std::string& text) {
    const CharFormat& format = run.Format;
    std::cout << (format.Bold ? "b" : "") << (format.Italic ? "i" : "") << (format.Underline ? "u" : "")
              << (format.StrikeThru ? "s" : "") << ' ' << colourText(head, format.Color) << ' '
              << colourText(head, format.Highlight) << ' ' << format.HalfPoints << ' ' << toUtf8(text)
              << '\n';
}

void read(const std::string& path) {
    RichDocument document;
    document.Read(contentOf(path));
    for (auto number = document.FirstNumber(); number < document.EndNumber(); ++number) {
        const Paragraph& paragraph = document.At(number);
        std::cout << "paragraph " << static_cast<int>(paragraph.Format.Align) << " pictures "
                  << paragraph.Pictures.size() << '\n';
        for (std::size_t i = 0; i < paragraph.Runs.size(); ++i) {
            const auto begin = paragraph.Runs[i].Begin;
            const auto end =
                i + 1 < paragraph.Runs.size() ? paragraph.Runs[i + 1].Begin : paragraph.Text.size();
            printRun(document.Head(), paragraph.Runs[i], paragraph.Text.substr(begin, end - begin));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "write" && argc == 4) {
        write(argv[2], argv[3]);
    } else if (what == "read" && argc == 3) {
        read(argv[2]);
    } else {
        std::cerr << "usage: office_sample write FOLDER TABLE | read FILE\n";
        return 2;
    }
    return 0;
}
