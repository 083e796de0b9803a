#include <gtest/gtest.h>

#include <random>

#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/PictureStore.h"
#include "platform/rich/RtfReader.h"
#include "platform/rich/RtfWriter.h"

namespace talvora::test {
namespace {

// One pixel of 24 bits, in a row of four bytes.
std::shared_ptr<const Picture> dib(int width, int height) {
    const std::string header("\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18", 15);
    return std::make_shared<Picture>(
        Picture{Picture::Kind::Dib, header + std::string(29, '\0'), 1, 1, width, height});
}

TEST(RtfWriter, WritesOnlyWhatChanges) {
    RichHead head;
    head.Fonts.push_back({"Ari;}al", 0});
    head.Colors.push_back(0x0080FF);
    const CharFormat plain = head.Base;
    CharFormat bold = plain;
    bold.Bold = true;
    const CharFormat other{1, 0, 1, 24, true, false, false, true};
    const Paragraph first{"a{b}\\\v\t\xe1", {{0, plain}, {2, bold}}, {}, {}};
    Paragraph second{"\xe1 c", {{0, other}, {2, plain}}, {}, {}};
    second.Format = {Alignment::Center, 720, 0, -360, 0, 60};
    const Paragraph third{
        "\x1a", {{0, plain}}, {std::make_shared<Picture>(Picture{{}, "\x01\xfe", 3, 4, 5, 6})}, {}};
    EXPECT_EQ(writeRtf(head, {first, second, third, {}}),
              "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032"
              "{\\fonttbl{\\f0\\fnil\\fcharset161 Tahoma;}{\\f1\\fnil\\fcharset0 Arial;}}\r\n"
              "{\\colortbl ;\\red255\\green128\\blue0;}\r\n"
              "\\viewkind4\\uc1\\pard\\f0\\fs17 a\\{\\b b\\}\\\\\\line \\tab \xe1\\par\r\n"
              "\\pard\\qc\\li720\\fi-360\\sa60 \\cf1\\f1\\fs24\\strike \\u945? \\cf0\\f0\\fs17\\b0\\strike0 "
              "c\\par\r\n"
              "\\pard {\\pict\\pngblip\\picw3\\pich4\\picwgoal5\\pichgoal6\r\n01fe}\\par\r\n}");
}

class Chance {
  public:
    explicit Chance(unsigned seed) : random_(seed) {}

    Paragraph paragraph() {
        Paragraph made;
        made.Format = {Alignment(below(4)), twips(-MaxTwips), twips(-MaxTwips),
                       twips(-MaxTwips),    twips(0),         0};
        for (int runs = below(4); runs > 0; --runs) join(made, piece());
        return made;
    }
    int below(int end) { return std::uniform_int_distribution<>(0, end - 1)(random_); }

  private:
    std::int16_t twips(int from) { return std::int16_t(below(4) == 0 ? from + below(MaxTwips - from) : 0); }
    bool on() { return below(2) != 0; }
    std::uint16_t index(int end) { return std::uint16_t(below(end)); }

    Paragraph piece() {
        const std::uint16_t size = index(MaxHalfPoints - MinHalfPoints);
        Paragraph piece{"\x1a", {{0, {index(3), index(3), index(4), size, on(), on(), on(), on()}}}, {}, {}};
        piece.Runs[0].Format.HalfPoints += MinHalfPoints;
        if (below(6) == 0) {
            piece.Pictures = {dib(1 + below(MaxTwips), 1 + below(MaxTwips))};
            return piece;
        }
        constexpr std::string_view kOdd = "\\{}\t\v \x80\xa0\xaa\xad\xd2\xff;-?'019abc";
        piece.Text.clear();
        for (int i = 1 + below(9); i > 0; --i) piece.Text += kOdd[index(int{kOdd.size()})];
        return piece;
    }

    std::mt19937 random_;
};

TEST(RtfWriter, WhatIsWrittenIsReadBack) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    Chance chance(seed);
    RichHead head;
    head.Fonts = {{"Tahoma", 161}, {"Arial", 0}, {"Symbol", 2}, {"Any", 1}};
    head.Colors = {0, 0xFF, 0x804020};
    for (int round = 0; round < 500; ++round) {
        std::vector<Paragraph> paragraphs;
        for (int i = 1 + chance.below(5); i > 0; --i) paragraphs.push_back(chance.paragraph());
        const std::string rtf = writeRtf(head, paragraphs);
        PictureStore pictures;
        const RtfContent content = readRtf(rtf, pictures);
        ASSERT_TRUE(content.Head.Fonts == head.Fonts && content.Head.Colors == head.Colors) << rtf;
        ASSERT_TRUE(content.Paragraphs == paragraphs) << rtf;
    }
}

}  // namespace
}  // namespace talvora::test
