#include "platform/rich/CodePages.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/CodePage1253.h"

namespace talvora {
namespace {

using Upper = std::array<char16_t, 128>;

// The characters of the bytes from 80 to FF.
constexpr Upper upper(const char16_t (&characters)[129]) {
    Upper table{};
    std::copy_n(characters, table.size(), table.begin());
    return table;
}

constexpr Upper CentralEurope = upper(
    u"€\uFFFD‚\uFFFD„…†‡\uFFFD‰Š‹ŚŤŽŹ\uFFFD‘’“”•–—\uFFFD™š›śťžź\u00A0ˇ˘Ł¤Ą¦§¨©Ş«¬\u00AD®Ż°±˛ł´µ¶·¸ąş»Ľ˝ľżŔ"
    u"ÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢßŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ˙");
constexpr Upper Cyrillic = upper(
    u"ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏђ‘’“”•–—\uFFFD™љ›њќћџ\u00A0ЎўЈ¤Ґ¦§Ё©Є«¬\u00AD®Ї°±Ііґµ¶·ё№є»јЅѕїАБВГДЕЖЗИЙКЛМНОПРСТУФ"
    u"ХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя");
constexpr Upper Western = upper(
    u"€\uFFFD‚ƒ„…†‡ˆ‰Š‹Œ\uFFFDŽ\uFFFD\uFFFD‘’“”•–—˜™š›œ\uFFFDžŸ\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿À"
    u"ÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ");
constexpr Upper Turkish = upper(
    u"€\uFFFD‚ƒ„…†‡ˆ‰Š‹Œ\uFFFD\uFFFD\uFFFD\uFFFD‘’“”•–—˜™š›œ\uFFFD\uFFFDŸ\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶"
    u"·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞßàáâãäåæçèéêëìíîïğñòóôõö÷øùúûüışÿ");
constexpr Upper Baltic = upper(
    u"€\uFFFD‚\uFFFD„…†‡\uFFFD‰\uFFFD‹\uFFFD¨ˇ¸\uFFFD‘’“”•–—\uFFFD™\uFFFD›\uFFFD¯˛\uFFFD\u00A0\uFFFD¢£¤"
    u"\uFFFD¦§Ø©Ŗ«¬\u00AD®Æ°±²³´µ¶·ø¹ŗ»¼½¾æĄĮĀĆÄÅĘĒČÉŹĖĢĶĪĻŠŃŅÓŌÕÖ×ŲŁŚŪÜŻŽßąįāćäåęēčéźėģķīļšńņóōõö÷ųłśūüżž"
    u"˙");
constexpr Upper Dos = upper(
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀αßΓπ"
    u"ΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0");
constexpr Upper DosLatin = upper(
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒáíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀ÓßÔÒ"
    u"õÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0");
constexpr Upper Macintosh = upper(
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁ"
    u"ﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ");

constexpr CodePage allPages[] = {
    {1250, CentralEurope.data()},
    {1251, Cyrillic.data()},
    {1252, Western.data()},
    {1254, Turkish.data()},
    {1257, Baltic.data()},
    {437, Dos.data()},
    {850, DosLatin.data()},
    {10000, Macintosh.data()},
    {932, nullptr},
    {936, nullptr},
    {949, nullptr},
    {950, nullptr},
    {1361, nullptr},
    {42, nullptr},
};

struct PageOfCharset {
    int Charset;
    int Page;
};

constexpr PageOfCharset charsets[] = {
    {0, 1252},  {2, 42},     {77, 10000}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},
    {136, 950}, {161, 1253}, {162, 1254}, {186, 1257}, {204, 1251}, {238, 1250}, {254, 437},
};

constexpr int SymbolPage = 42;

void appendByte(std::string& to, unsigned char byte, const CodePage& page) {
    if (byte < 0x80)
        to += static_cast<char>(byte);
    else if (page.Upper != nullptr)
        appendCodePoint(to, page.Upper[byte - 0x80]);
    else
        to += page.Number == SymbolPage && byte == 0xB7 ? '\x95' : '?';
}

}  // namespace

const CodePage* codePageOf(int number) {
    const auto* const page = std::ranges::find(allPages, number, &CodePage::Number);
    return page == std::end(allPages) ? nullptr : page;
}

const CodePage* codePageOfCharset(int charset, const CodePage* otherwise) {
    const auto* const entry = std::ranges::find(charsets, charset, &PageOfCharset::Charset);
    return entry == std::end(charsets) ? otherwise : codePageOf(entry->Page);
}

void appendFromPage(std::string& to, std::string_view text, const CodePage& page, bool& inPair) {
    const bool pairs = page.Upper == nullptr && page.Number != SymbolPage;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (!std::exchange(inPair, false)) {
            appendByte(to, byte, page);
            inPair = pairs && byte > 0x80 && byte < 0xFF;
        }
    }
}

}  // namespace talvora
