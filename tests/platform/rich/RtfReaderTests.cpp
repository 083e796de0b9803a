#include <gtest/gtest.h>

#include "platform/rich/PictureStore.h"
#include "platform/rich/RichDump.h"
#include "platform/rich/RtfReader.h"
#include "simulation/FaultOf.h"

namespace talvora::test {
namespace {

const std::string plainHead =
    "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 Tahoma;}"
    "{\\f1\\fnil\\fcharset204 Cyr{\\*\\falt no}illic;}{\\f7\\fcharset128 Mincho;}}\r\n"
    "{\\colortbl ;\\red255 \\green0\\blue1;\\red0 \\green0\\blue128;}\r\n\\viewkind4\\uc1\\pard\\f0\\fs17 ";

std::string dumpOfRtf(const std::string& rtf) {
    RichDocument document;
    document.Read(rtf);
    return dumpOf(document);
}

struct Case {
    const char* Name;
    std::string Rtf;
    std::string Dump;
};

TEST(RtfReader, TakesTablesFromTheDocument) {
    const RichHead read = readRtfHead(plainHead + "x\\par\\b\\qc\\cf2\\uc2");
    EXPECT_EQ(read.Fonts, (std::vector<FontEntry>{{"Tahoma", 161}, {"Cyrillic", 204}, {"Mincho", 128}}));
    EXPECT_EQ(read.Colors, (std::vector<Colour>{0, 0x0100FF, 0x800000}));
    EXPECT_EQ(read.Base, (CharFormat{2, 0, 0, 17, true}));
    EXPECT_EQ(read.BaseParagraph.Align, Alignment::Center);
    EXPECT_EQ(read.UnicodeSkip, 2);
    // Tables that are too long, unfinished or not there at all.
    std::string fonts = "{\\rtf1{\\fonttbl";
    for (int i = 0; i < 3000; ++i) fonts += "{\\f" + std::to_string(i * 40 - 9) + " x;}";
    EXPECT_EQ(readRtfHead(fonts).Fonts.size(), MaxFonts);
    EXPECT_EQ(readRtfHead("{\\rtf{\\colortbl" + std::string(9999, ';')).Colors.size(), MaxColors);
    EXPECT_EQ(readRtfHead("{\\rtf{\\fonttbl{\\f-1 x;}{\\f0 Unfinished}}{\\colortbl}").Fonts,
              RichHead().Fonts);
    EXPECT_EQ(readRtfHead("{\\rtf{\\fonttbl}{\\colortbl}").Colors, RichHead().Colors);
}

TEST(RtfReader, ReadsTextAndFormats) {
    const Case cases[] = {
        {"flags go on and off", "\\b 1\\i 2\\b0\\ul 3\\i0\\strike1 4\\ulnone\\uldb 5\\ul0 6\\strike0 7",
         "[b]1[b i]2[i u]3[u x]45[x]6[]7"},
        {"neighbours are one run", "{\\b a}{\\b b}\\b c", "[b]abc"},
        {"groups give back", "a{\\b\\cf2\\highlight1 b{\\b0\\i c}d}e", "a[b c2 h1]b[i c2 h1]c[b c2 h1]d[]e"},
        {"plain", "\\b\\fs40\\cf1 a\\plain b", "[b c1]a[s24]b"},
        {"sizes are bounded", "a\\fs1 b\\fs-7 c\\fs99999 d\\fs e", "a[s4]bc[s288]d[s24]e"},
        {"indexes outside the tables", "a\\cf3\\highlight-1 b\\cf2 c\\f9 d\\f1 e\\cf999999999999 f",
         "ab[c2]cd[c2 f1]e[f1]f"},
        {"a blank belongs to its word", "a\\b  b\\b0c\\i\r\nd\\line\\tab e", "a[b] b[]c[i]d^\te"},
        {"line ends are no text",
         "a\r\nb\nc\1d\x7F\x1A\x0B"
         "e",
         "abcde"},
        {"paragraph ends", "a\\par b\\\r\nc\\page d\\sect e\\cell f\\row g", "a|b|c|d|e\tf|g"},
        {"paragraph formats", "\\qc a\\par\\pard\\li720\\ri9\\fi-360\\sb40\\sa99999 b\\par\\pard\\qj\\par c",
         "<center 0 0 0 0 0>a|<left 720 9 -360 40 31680>b|<justify 0 0 0 0 0>|<justify 0 0 0 0 0>c"},
        {"a paragraph is formatted as at its last character", "{\\pard\\qr a\\par}{\\qc b}\\par{\\qc}c",
         "<right 0 0 0 0 0>a|<center 0 0 0 0 0>b|c"},
        {"signs",
         "\\{\\}\\\\\\~\\_\\-\\lquote\\rquote\\ldblquote\\rdblquote\\bullet\\endash\\emdash\\enspace x",
         "{}\\\xA0-\x91\x92\x93\x94\x95\x96\x97 x"},
        {"unknown words and signs", "\\v a\\object b\\field{\\unknown9 c}\\x-1 d\\|\\e", "abcd"},
        {"unknown groups that say so", "a{\\*\\unknown b{\\b c}\\par}d{\\*}e{\r\n\\*\r\n\\b f}g", "adeg"},
        {"what isn't text",
         "{\\info{\\title t}}{\\stylesheet{\\s1 s;}}a{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt b}}"
         "{\\footnote n}{\\header h}{\\object{\\*\\objdata 00}{\\result c}}{\\pntext\\bullet}",
         "abc\x95"},
        {"such a word elsewhere is none", "a\\footnote b\\*\\x c", "abc"},
        {"hexadecimal", "\\'e1\\'E1\\'1a\\'09\\'zz\\'", "\xE1\xE1\tzz"},
        {"code pages of fonts", "\xE1\\f1\xE1\\'e1\\f7\x93\xFA(\\'8a\\'bf)\\f0\\'e1",
         "\xE1[f1]??[f2]?(?)[]\xE1"},
        {"Unicode", "\\u945?\\u-3987 ?{\\uc0\\u8364}\\uc2\\u65\\'41\\'42\\u66 x\\u67 12\\b3 x",
         "\xE1?\x80"
         "ABC[b]x"},
        {"surrogates", "\\u-10179?\\u-8704?,\\u55357?x\\u56832?,\\u9?\\u7?\\u11?.", "?,x?,\t."},
        {"what stands for a character", "\\u945\\~a\\u945\\{a{\\u945 }a",
         "\xE1"
         "a\xE1"
         "a\xE1"
         "a"},
        {"raw data", "a\\bin2 }{\\b\\bin-1 c\\bin d\\bin99999999999", "a[b]cd"},
    };
    for (const Case& one : cases) EXPECT_EQ(dumpOfRtf(plainHead + one.Rtf + "}"), one.Dump) << one.Name;
}

TEST(RtfReader, ReadsCodePagesOfDocuments) {
    const std::pair<std::string, std::string> cases[] = {
        {"\\ansicpg1250 \x8A\xE8", "Sc"},    {"\\ansicpg1251 \xC0\xA9", "?\xA9"},
        {"\\ansicpg1252 \xE9\x80", "e\x80"}, {"\\ansicpg1254 \xFD", "i"},
        {"\\ansicpg1257 \xFE", "z"},         {"\\pc \xE1\xE2", "ss\xC3"},
        {"\\pca \xE1\x9C", "ss\xA3"},        {"\\mac \x8E\xD2", "e\x93"},
        {"\\ansicpg932 \x82\xA0 ", "? "},    {"\\ansicpg1252\\f0\xE1", "a"},
        {"\\ansicpg9 \xE1", "\xE1"},         {"\\ansi \xE1", "\xE1"},
    };
    for (const auto& [rtf, text] : cases) EXPECT_EQ(dumpOfRtf("{\\rtf1" + rtf + "}"), text) << rtf;
}

TEST(RtfReader, OfDocumentsThatEndEarlyOrLate) {
    const std::pair<std::string, std::string> cases[] = {
        {"{\\rtf1 a{\\b b\\par c", "a[b]b|[b]c"},
        {"{\\rtf1 a}}b{}}c", "abc"},
        {"{\\rtf1 a\\par\\qc}\r\n\0", "a|<center 0 0 0 0 0>"},
        {" \r\n{\\rtf", ""},
        {"{\\rtf1 a\\", "a"},
        {"{\\rt a}\r\n\tb\rc\n\1\v\x1A.", "{\\rt a}|\tb|c|^."},
        {"", ""},
        {"{\\rtf1 " + std::string(10000, '{') + "\\b x{\\*\\y h}{\\info h}y" + std::string(10000, '}') + "z",
         "[b]xy[]z"},
    };
    for (const auto& [rtf, dump] : cases) EXPECT_EQ(dumpOfRtf(rtf), dump) << rtf.substr(0, 40);
    // The 256th group still ends what it began; the next one is flattened.
    EXPECT_EQ(dumpOfRtf("{\\rtf1 " + std::string(254, '{') + "a{\\b b}c"), "a[b]b[]c");
    EXPECT_EQ(dumpOfRtf("{\\rtf1 " + std::string(255, '{') + "a{\\b b}c"), "a[b]bc");
}

// ---- Pictures

std::string hexOf(std::string_view bytes) {
    std::string hex;
    for (const char c : bytes) {
        hex += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15];
        if (hex.size() % 61 == 0) hex += "\r\n";
    }
    return hex;
}

std::string big(std::uint32_t number, int bytes) {
    std::string text;
    while (--bytes >= 0) text += static_cast<char>(number >> (8 * bytes));
    return text;
}

std::string little(std::uint32_t number, int bytes) {
    const std::string text = big(number, bytes);
    return {text.rbegin(), text.rend()};
}

std::string png(std::uint32_t width, std::uint32_t height) {
    return "\x89PNG\r\n\x1A\n" + big(13, 4) + "IHDR" + big(width, 4) + big(height, 4) + std::string(40, 'x');
}

std::string jpeg(std::uint32_t width, std::uint32_t height) {
    return "\xFF\xD8\xFF\xE0" + big(4, 2) + "ab\xFF\xFF\xC4" + big(2, 2) + "\xFF\xC2" + big(11, 2) + "\x8" +
           big(height, 2) + big(width, 2);
}

std::string dib(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t data,
                std::uint32_t compression = 0, std::uint32_t colours = 0) {
    return little(40, 4) + little(width, 4) + little(height, 4) + little(1, 2) + little(bits, 2) +
           little(compression, 4) + std::string(12, '\0') + little(colours, 4) + std::string(4 + data, '\1');
}

TEST(RtfReader, ReadsPicturesOfItsKindsAndLeavesOthersOut) {
    const struct {
        std::string Words;
        std::string Bytes;
        const char* Size;  // in pixels and twips; empty if it is left out
    } cases[] = {
        {"\\pngblip\\picw1\\pich2", png(3, 2), "3x2 45x30"},
        {"\\pngblip\\picwgoal100\\pichgoal50\\picscalex50\\picscaley300", png(3, 2), "3x2 50x150"},
        {"\\pngblip\\picwgoal99999\\picscaley2000000000", png(3, 2), "3x2 31680x31680"},
        {"\\pngblip\\picwgoal-5\\picscalex0", png(3000, 2), "3000x2 31680x30"},
        {"\\pngblip", png(60000, 60000), ""},
        {"\\pngblip", png(4096, 4096), "4096x4096 31680x31680"},
        {"\\pngblip", png(0, 1), ""},
        {"\\pngblip", png(1, 0x80000001), ""},
        {"\\pngblip", png(3, 2).substr(0, 23), ""},
        {"\\pngblip", jpeg(3, 2), ""},
        {"\\jpegblip", jpeg(3, 2), "3x2 45x30"},
        {"\\jpegblip", jpeg(3, 2).substr(0, 20), ""},
        {"\\jpegblip", "\xFF\xD8\xFF\xE0" + std::string(2, '\0') + jpeg(3, 2).substr(2), ""},
        {"\\dibitmap0", dib(3, 2, 24, 24), "3x2 45x30"},
        {"\\dibitmap0", dib(3, 2, 24, 23), ""},
        {"\\dibitmap0", dib(3, 0xFFFFFFFE, 24, 24), "3x2 45x30"},
        {"\\dibitmap0", dib(3, 0x80000000, 24, 24), ""},
        {"\\dibitmap0", dib(9, 1, 1, 12), "9x1 135x15"},
        {"\\dibitmap0", dib(9, 1, 8, 12 + 16, 0, 4), "9x1 135x15"},
        {"\\dibitmap0", dib(1, 1, 32, 12 + 4, 3), "1x1 15x15"},
        {"\\dibitmap0", dib(1, 1, 32, 12 + 3, 3), ""},
        {"\\dibitmap0", dib(1, 1, 8, 4 * 256 + 4, 1), ""},
        {"\\dibitmap0", dib(1, 1, 24, 9000, 0, 257), ""},
        {"\\dibitmap0", dib(1, 1, 7, 9000), ""},
        {"\\wmetafile8", png(3, 2), ""},
        {"\\emfblip\\pngblip\\macpict", png(3, 2), ""},
        {"", png(3, 2), ""},
        {"{\\*\\blipuid 00}\\pngblip{\\*\\picprop\\picwgoal7\\jpegblip{\\sn 11}}", png(3, 2), "3x2 45x30"},
    };
    for (const auto& one : cases) {
        for (const std::string& data :
             {" " + hexOf(one.Bytes), "\\bin" + std::to_string(one.Bytes.size()) + " " + one.Bytes}) {
            RichDocument document;
            document.Read("{\\rtf1 a{\\*\\shppict{\\pict" + one.Words + data + "}}{\\nonshppict{\\pict}}b}");
            ASSERT_EQ(dumpOf(document), *one.Size == 0 ? "ab" : "a#b") << one.Words << one.Size;
            if (*one.Size == 0) continue;
            const Picture& picture = *document.At(0).Pictures.at(0);
            EXPECT_TRUE(picture.Bytes == one.Bytes) << one.Words;
            const auto size = [](int width, int height) {
                return std::to_string(width) + "x" + std::to_string(height);
            };
            EXPECT_EQ(size(picture.PixelWidth, picture.PixelHeight) + " " +
                          size(picture.WidthTwips, picture.HeightTwips),
                      one.Size);
        }
    }
}

TEST(RtfReader, EqualPicturesAreOneObjectAndHeldByThoseWhoShowThem) {
    const auto group = [](const std::string& bytes, const char* words = "") {
        return std::string("{\\pict\\pngblip") + words + " " + hexOf(bytes) + "}";
    };
    const std::string small = group(png(3, 2));
    RichDocument document;
    document.Read("{\\rtf1 " + small + small + group(png(3, 2), "\\picw3") + group(png(3, 2), "\\picwgoal9") +
                  group(png(2, 3)) + "}");
    const auto pictures = document.At(0).Pictures;
    ASSERT_EQ(pictures.size(), 5U);
    EXPECT_EQ(pictures[0], pictures[1]);
    EXPECT_EQ(pictures[0], pictures[2]);
    EXPECT_NE(pictures[0], pictures[3]);
    EXPECT_NE(pictures[0], pictures[4]);
    // Different pictures share the pixels that one reading may bring; a picture that is there already is
    // free.
    std::string large;
    for (int i = 0; i < 6; ++i) large += group(png(4096, 4096) + std::to_string(i % 5));
    for (int i = 0; i < 2; ++i) {
        document.Read("{\\rtf1 " + large + small + "}");
        EXPECT_EQ(dumpOf(document), "#####");
    }
    std::string many;
    for (int i = 0; i < 1000; ++i) many += group(png(3, 2) + std::to_string(i));
    document.Read("{\\rtf1 " + many + many + "}");
    EXPECT_EQ(document.At(0).Pictures.size(), 2000U);
    const std::weak_ptr<const Picture> last = document.At(0).Pictures.front();
    document.Read("{\\rtf1 a}");
    EXPECT_TRUE(last.expired());
}

// ---- Positions

TEST(RichDocument, PositionsCountCrLfBetweenParagraphs) {
    RichDocument document;
    document.Read("{\\rtf1 ab\\par\\par c{\\pict\\pngblip " + hexOf(png(1, 1)) + "}\\line d}");
    const std::string text = "ab\r\n\r\nc \vd";
    EXPECT_EQ(document.Text(), text);
    EXPECT_EQ(document.TextLength(), text.size());
    const Place places[] = {{0, 0}, {0, 1}, {0, 2}, {0, 2}, {1, 0}, {1, 0},
                            {2, 0}, {2, 1}, {2, 2}, {2, 3}, {2, 4}, {2, 4}};
    for (std::size_t position = 0; position < std::size(places); ++position) {
        EXPECT_EQ(document.PlaceAt(position), places[position]) << position;
        EXPECT_LE(document.PositionOf(places[position]), position);
        EXPECT_EQ(document.Text({}, document.PlaceAt(position)),
                  text.substr(0, document.PositionOf(places[position])));
    }
    EXPECT_EQ(document.Within({1, 5}), (Place{1, 0}));
    EXPECT_EQ(document.Within({9, 0}), (Place{2, 4}));
    EXPECT_EQ(document.Text({2, 9}, {1, 0}), "");
    EXPECT_EQ(faultOf([&] { document.At(3); }), 9);
}

}  // namespace
}  // namespace talvora::test
