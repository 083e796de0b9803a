#pragma once
// The nearest text in code page 1253 for characters that have no place there. Used by CodePage1253.cpp alone.
// Two sorted tables: runs of neighbouring characters that become one byte each (a blank where a run has a
// gap), and single characters that become several. The nearest text is never longer than the character's
// UTF-8 form and never holds a blank, a control character or one of "!@:,|": a foreign character can't turn
// into a separator of a line or of a list.

#include <string_view>

namespace talvora::nearest {

struct Run {
    char32_t first;
    std::string_view bytes;  // one for each character from `first` on
};

struct Several {
    char32_t code;
    std::string_view bytes;
};

struct Range {
    char32_t first;
    char32_t last;
};

// clang-format off
// Marks that belong to the character before them, and characters without a width: they leave no trace.
inline constexpr Range dropped[] = {
    {0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F}, {0x202A, 0x202E},
    {0x2060, 0x206F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
    {0x1F3FB, 0x1F3FF}, {0xE0000, 0xE01EF},
};

inline constexpr Run runs[] = {
    {0x00A2, "c"},
    {0x00AA, "a    -    \264    1o     AAAAAA CEEEEIIIIDNOOOOOxOUUUUY  aaaaaa ceeeeiiiidnooooo/ouuuuy"
             " yAaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi  JjKkkLlLlLl  LlNnNnNn NnOoOoOo  R"
             "rRrRrSsSsSsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzsbB     Cc      E F G   IKkl  N  Oo  Pp      "
             "TtTUu VYyZz"},
    {0x01CD, "AaIiOoUuUuUuUuUu AaAa    GgKkOoOo  j   Gg  NnAa  OoAaAaEeEeIiIiOoOoRrRrUuUuSsTt  Hh    "
             "  AaEeOoOoOoOoYy   j"},
    {0x0243, "BU"}, {0x0251, "a b     e      ggg     iii"}, {0x0272, "n n"}, {0x0280, "R"},
    {0x0289, "u v   y"}, {0x0299, "b  h  l"}, {0x02B0, "h jr   wy'\"\221\222\221"}, {0x02C6, "^ ' '"},
    {0x02D7, "-    ~\"   lsx"}, {0x0374, "'"}, {0x037E, ";"}, {0x0387, "\267"},
    {0x03CF, "\312\342\350\325\325\325\366\360\352"}, {0x03F0, "\352\361\363 \310\345\345  \323"},
    {0x1680, "\240"}, {0x1D00, "a   cd e  jk m o"}, {0x1D18, "p  tu   vwz"},
    {0x1D2C, "A B DE GHIJKLMN O PRTUWa a bdee  g kmno   ptu  v \342\343\344\366\367iruv\342\343\361"
             "\366\367"},
    {0x1D9C, "c d f g iii    l  n n     u uv z   \350"},
    {0x1E00, "AaBbBbBbCcDdDdDdDdDdEeEeEeEeEeFfGgHhHhHhHhHhIiIiKkKkKkLlLlLlLlMmMmMmNnNnNnNnOoOoOoOoPpP"
             "pRrRrRrRrSsSsSsSsSsTtTtTtTtUuUuUuUuUuVvVvWwWwWwWwWwXxXxYyZzZzZzhtwy s    AaAaAaAaAaAaAa"
             "AaAaAaAaAaEeEeEeEeEeEeEeEeIiIiOoOoOoOoOoOoOoOoOoOoOoOoUuUuUuUuUuUuUuYyYyYyYy      \341"
             "\341\334\334\334\334\334\334\301\301\242\242\242\242\242\242\345\345\335\335\335\335  "
             "\305\305\270\270\270\270  \347\347\336\336\336\336\336\336\307\307\271\271\271\271\271"
             "\271\351\351\337\337\337\337\337\337\311\311\272\272\272\272\272\272\357\357\374\374"
             "\374\374  \317\317\274\274\274\274  \365\365\375\375\375\375\375\375 \325 \276 \276 "
             "\276\371\371\376\376\376\376\376\376\331\331\277\277\277\277\277\277\334\334\335\335"
             "\336\336\337\337\374\374\375\375\376\376  \341\341\334\334\334\334\334\334\301\301\242"
             "\242\242\242\242\242\347\347\336\336\336\336\336\336\307\307\271\271\271\271\271\271"
             "\371\371\376\376\376\376\376\376\331\331\277\277\277\277\277\277\341\341\334\341\334 "
             "\334\334\301\301\242\242\301\222\351\222  \336\347\336 \336\336\270\270\271\271\307\222"
             "\222\222\351\351\300\300  \337\300\311\311\272\272 \221\221\221\365\365\340\340\361\361"
             "\375\340\325\325\276\276\321  `  \376\371\376 \376\376\274\274\277\277\331 \221 \240"
             "\240\240\240\240\240\240\240\240\240\240     ---   \"    \221   \223   \225.  \267\240"
             "\240     \240  '\"\"'\""},
    {0x2043, "-/"}, {0x205F, "\240"},
    {0x2070, "0i  456789+-=()n0123456789+-=() aeoxehklmnpst   \200   \243"}, {0x2102, "C"},
    {0x210A, "gHHHhhIILl N   PQRRR      Z \331 Z KABCeeEF Mo    i  \360\343\303\320\323    Ddeij"},
    {0x2160, "I   V    X  LCDMi   v    x  lcdm"}, {0x2206, "\304"}, {0x220F, "\320 \323-  /\\* \267"},
    {0x223C, "~    ~      ~~"}, {0x226E, "<>"}, {0x22C5, "\267"}, {0x2329, "<>"}, {0x2460, "123456789"},
    {0x24B6, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0"}, {0x25A0, "\225"}, {0x25AA, "\225"},
    {0x25CB, "o   \225"}, {0x25E6, "\225"}, {0x275B, "\221\222\223\224"}, {0x27E8, "<>"}, {0x2981, "\225"},
    {0x2C60, "LlLPR"}, {0x2C7C, "jV"}, {0x2E3A, "\227\227      \204"}, {0x3000, "\240"},
    {0x3008, "<>\253\273\"\""}, {0x301D, "\"\"\""}, {0xA730, "fs"}, {0xA7AF, "q"}, {0xA7F2, "CFQ   H"},
    {0xFB29, "+"}, {0xFE14, ";"},
    {0xFE31, "\227\226__(){}    \253\273<>\"\"    []    ___  . ;   \227(){}  #&*+-<>= \\$%"},
    {0xFF02, "\"#$%&'()*+ -./0123456789 ;<=>  ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuv"
             "wxyz{ }~   \"\""},
    {0xFFE0, "c\243\254 \246\245"}, {0xFFED, "\225o"}, {0x10784, "bb"}, {0x10792, "gg hh"},
    {0x107A2, "o  q    R"}, {0x107B2, "y"},
    {0x1D400, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefg i"
             "jklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzA CD  G  JK  NOPQ "
             "STUVWXYZabcd f hijklmn pqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzA"
             "B DEFG  JKLMNOPQ STUVWXY abcdefghijklmnopqrstuvwxyzAB DEFG IJKLM O   STUVWXY abcdefghij"
             "klmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRS"
             "TUVWXYZabcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzAB"
             "CDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijk"
             "lmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyzij  \301\302\303\304"
             "\305\306\307\310\311\312\313\314\315\316\317\320\321\310\323\324\325\326\327\330\331 "
             "\341\342\343\344\345\346\347\350\351\352\353\354\355\356\357\360\361\362\363\364\365"
             "\366\367\370\371 \345\350\352\366\361\360\301\302\303\304\305\306\307\310\311\312\313"
             "\314\315\316\317\320\321\310\323\324\325\326\327\330\331 \341\342\343\344\345\346\347"
             "\350\351\352\353\354\355\356\357\360\361\362\363\364\365\366\367\370\371 \345\350\352"
             "\366\361\360\301\302\303\304\305\306\307\310\311\312\313\314\315\316\317\320\321\310"
             "\323\324\325\326\327\330\331 \341\342\343\344\345\346\347\350\351\352\353\354\355\356"
             "\357\360\361\362\363\364\365\366\367\370\371 \345\350\352\366\361\360\301\302\303\304"
             "\305\306\307\310\311\312\313\314\315\316\317\320\321\310\323\324\325\326\327\330\331 "
             "\341\342\343\344\345\346\347\350\351\352\353\354\355\356\357\360\361\362\363\364\365"
             "\366\367\370\371 \345\350\352\366\361\360\301\302\303\304\305\306\307\310\311\312\313"
             "\314\315\316\317\320\321\310\323\324\325\326\327\330\331 \341\342\343\344\345\346\347"
             "\350\351\352\353\354\355\356\357\360\361\362\363\364\365\366\367\370\371 \345\350\352"
             "\366\361\360    01234567890123456789012345678901234567890123456789"},
    {0x1F12B, "CR   ABCDEFGHIJKLMNOPQRSTUVWXYZ      ABCDEFGHIJKLMNOPQRSTUVWXYZ      ABCDEFGHIJKLMNOPQR"
             "STUVWXYZ"},
    {0x1F1E6, "ABCDEFGHIJKLMNOPQRSTUVWXYZ"}, {0x1FBF0, "0123456789"},
};

inline constexpr Several several[] = {
    {0x00C6, "AE"}, {0x00DE, "TH"}, {0x00DF, "ss"}, {0x00E6, "ae"}, {0x00FE, "th"}, {0x0132, "IJ"},
    {0x0133, "ij"}, {0x013F, "L\267"}, {0x0140, "l\267"}, {0x0149, "\222n"}, {0x0152, "OE"}, {0x0153, "oe"},
    {0x01C4, "DZ"}, {0x01C5, "Dz"}, {0x01C6, "dz"}, {0x01C7, "LJ"}, {0x01C8, "Lj"}, {0x01C9, "lj"},
    {0x01CA, "NJ"}, {0x01CB, "Nj"}, {0x01CC, "nj"}, {0x01E2, "AE"}, {0x01E3, "ae"}, {0x01F1, "DZ"},
    {0x01F2, "Dz"}, {0x01F3, "dz"}, {0x01FC, "AE"}, {0x01FD, "ae"}, {0x03DA, "\323\324"},
    {0x03DB, "\363\364"}, {0x1D2D, "AE"}, {0x1E9E, "SS"}, {0x2025, ".."}, {0x2037, "'''"}, {0x2047, "??"},
    {0x20A8, "Rs"}, {0x2100, "a/c"}, {0x2101, "a/s"}, {0x2103, "\260C"}, {0x2105, "c/o"}, {0x2106, "c/u"},
    {0x2109, "\260F"}, {0x2116, "No"}, {0x2117, "(P)"}, {0x2120, "SM"}, {0x2121, "TEL"}, {0x213B, "FAX"},
    {0x2150, "1/7"}, {0x2151, "1/9"}, {0x2153, "1/3"}, {0x2154, "2/3"}, {0x2155, "1/5"}, {0x2156, "2/5"},
    {0x2157, "3/5"}, {0x2158, "4/5"}, {0x2159, "1/6"}, {0x215A, "5/6"}, {0x215B, "1/8"}, {0x215C, "3/8"},
    {0x215D, "5/8"}, {0x215E, "7/8"}, {0x215F, "1/"}, {0x2161, "II"}, {0x2162, "III"}, {0x2163, "IV"},
    {0x2165, "VI"}, {0x2166, "VII"}, {0x2168, "IX"}, {0x216A, "XI"}, {0x216B, "XII"}, {0x2171, "ii"},
    {0x2172, "iii"}, {0x2173, "iv"}, {0x2175, "vi"}, {0x2176, "vii"}, {0x2178, "ix"}, {0x217A, "xi"},
    {0x217B, "xii"}, {0x2189, "0/3"}, {0x2190, "<-"}, {0x2192, "->"}, {0x2194, "<->"}, {0x219A, "<-"},
    {0x219B, "->"}, {0x21AE, "<->"}, {0x21CD, "<="}, {0x21CF, "=>"}, {0x21D0, "<="}, {0x21D2, "=>"},
    {0x2260, "<>"}, {0x2264, "<="}, {0x2265, ">="}, {0x2270, "<="}, {0x2271, ">="}, {0x2469, "10"},
    {0x246A, "11"}, {0x246B, "12"}, {0x246C, "13"}, {0x246D, "14"}, {0x246E, "15"}, {0x246F, "16"},
    {0x2470, "17"}, {0x2471, "18"}, {0x2472, "19"}, {0x2473, "20"}, {0x2474, "(1)"}, {0x2475, "(2)"},
    {0x2476, "(3)"}, {0x2477, "(4)"}, {0x2478, "(5)"}, {0x2479, "(6)"}, {0x247A, "(7)"}, {0x247B, "(8)"},
    {0x247C, "(9)"}, {0x2488, "1."}, {0x2489, "2."}, {0x248A, "3."}, {0x248B, "4."}, {0x248C, "5."},
    {0x248D, "6."}, {0x248E, "7."}, {0x248F, "8."}, {0x2490, "9."}, {0x2491, "10."}, {0x2492, "11."},
    {0x2493, "12."}, {0x2494, "13."}, {0x2495, "14."}, {0x2496, "15."}, {0x2497, "16."}, {0x2498, "17."},
    {0x2499, "18."}, {0x249A, "19."}, {0x249B, "20."}, {0x249C, "(a)"}, {0x249D, "(b)"}, {0x249E, "(c)"},
    {0x249F, "(d)"}, {0x24A0, "(e)"}, {0x24A1, "(f)"}, {0x24A2, "(g)"}, {0x24A3, "(h)"}, {0x24A4, "(i)"},
    {0x24A5, "(j)"}, {0x24A6, "(k)"}, {0x24A7, "(l)"}, {0x24A8, "(m)"}, {0x24A9, "(n)"}, {0x24AA, "(o)"},
    {0x24AB, "(p)"}, {0x24AC, "(q)"}, {0x24AD, "(r)"}, {0x24AE, "(s)"}, {0x24AF, "(t)"}, {0x24B0, "(u)"},
    {0x24B1, "(v)"}, {0x24B2, "(w)"}, {0x24B3, "(x)"}, {0x24B4, "(y)"}, {0x24B5, "(z)"}, {0x2A75, "=="},
    {0x2A76, "==="}, {0x3250, "PTE"}, {0x3251, "21"}, {0x3252, "22"}, {0x3253, "23"}, {0x3254, "24"},
    {0x3255, "25"}, {0x3256, "26"}, {0x3257, "27"}, {0x3258, "28"}, {0x3259, "29"}, {0x325A, "30"},
    {0x325B, "31"}, {0x325C, "32"}, {0x325D, "33"}, {0x325E, "34"}, {0x325F, "35"}, {0x32B1, "36"},
    {0x32B2, "37"}, {0x32B3, "38"}, {0x32B4, "39"}, {0x32B5, "40"}, {0x32B6, "41"}, {0x32B7, "42"},
    {0x32B8, "43"}, {0x32B9, "44"}, {0x32BA, "45"}, {0x32BB, "46"}, {0x32BC, "47"}, {0x32BD, "48"},
    {0x32BE, "49"}, {0x32BF, "50"}, {0x32CC, "Hg"}, {0x32CD, "erg"}, {0x32CE, "eV"}, {0x32CF, "LTD"},
    {0x3371, "hPa"}, {0x3372, "da"}, {0x3373, "AU"}, {0x3374, "bar"}, {0x3375, "oV"}, {0x3376, "pc"},
    {0x3377, "dm"}, {0x3378, "dm2"}, {0x3379, "dm3"}, {0x337A, "IU"}, {0x3380, "pA"}, {0x3381, "nA"},
    {0x3382, "\354A"}, {0x3383, "mA"}, {0x3384, "kA"}, {0x3385, "KB"}, {0x3386, "MB"}, {0x3387, "GB"},
    {0x3388, "cal"}, {0x338A, "pF"}, {0x338B, "nF"}, {0x338C, "\354F"}, {0x338D, "\354g"}, {0x338E, "mg"},
    {0x338F, "kg"}, {0x3390, "Hz"}, {0x3391, "kHz"}, {0x3392, "MHz"}, {0x3393, "GHz"}, {0x3394, "THz"},
    {0x3395, "\354l"}, {0x3396, "ml"}, {0x3397, "dl"}, {0x3398, "kl"}, {0x3399, "fm"}, {0x339A, "nm"},
    {0x339B, "\354m"}, {0x339C, "mm"}, {0x339D, "cm"}, {0x339E, "km"}, {0x339F, "mm2"}, {0x33A0, "cm2"},
    {0x33A1, "m2"}, {0x33A2, "km2"}, {0x33A3, "mm3"}, {0x33A4, "cm3"}, {0x33A5, "m3"}, {0x33A6, "km3"},
    {0x33A7, "m/s"}, {0x33A9, "Pa"}, {0x33AA, "kPa"}, {0x33AB, "MPa"}, {0x33AC, "GPa"}, {0x33AD, "rad"},
    {0x33B0, "ps"}, {0x33B1, "ns"}, {0x33B2, "\354s"}, {0x33B3, "ms"}, {0x33B4, "pV"}, {0x33B5, "nV"},
    {0x33B6, "\354V"}, {0x33B7, "mV"}, {0x33B8, "kV"}, {0x33B9, "MV"}, {0x33BA, "pW"}, {0x33BB, "nW"},
    {0x33BC, "\354W"}, {0x33BD, "mW"}, {0x33BE, "kW"}, {0x33BF, "MW"}, {0x33C0, "k\331"}, {0x33C1, "M\331"},
    {0x33C3, "Bq"}, {0x33C4, "cc"}, {0x33C5, "cd"}, {0x33C7, "Co."}, {0x33C8, "dB"}, {0x33C9, "Gy"},
    {0x33CA, "ha"}, {0x33CB, "HP"}, {0x33CC, "in"}, {0x33CD, "KK"}, {0x33CE, "KM"}, {0x33CF, "kt"},
    {0x33D0, "lm"}, {0x33D1, "ln"}, {0x33D2, "log"}, {0x33D3, "lx"}, {0x33D4, "mb"}, {0x33D5, "mil"},
    {0x33D6, "mol"}, {0x33D7, "PH"}, {0x33D9, "PPM"}, {0x33DA, "PR"}, {0x33DB, "sr"}, {0x33DC, "Sv"},
    {0x33DD, "Wb"}, {0x33DE, "V/m"}, {0x33DF, "A/m"}, {0x33FF, "gal"}, {0xA7F9, "oe"}, {0xFB00, "ff"},
    {0xFB01, "fi"}, {0xFB02, "fl"}, {0xFB03, "ffi"}, {0xFB04, "ffl"}, {0xFB05, "st"}, {0xFB06, "st"},
    {0xFE19, "..."}, {0xFE30, ".."}, {0xFFE9, "<-"}, {0xFFEB, "->"}, {0x10783, "ae"}, {0x1F100, "0."},
    {0x1F110, "(A)"}, {0x1F111, "(B)"}, {0x1F112, "(C)"}, {0x1F113, "(D)"}, {0x1F114, "(E)"},
    {0x1F115, "(F)"}, {0x1F116, "(G)"}, {0x1F117, "(H)"}, {0x1F118, "(I)"}, {0x1F119, "(J)"},
    {0x1F11A, "(K)"}, {0x1F11B, "(L)"}, {0x1F11C, "(M)"}, {0x1F11D, "(N)"}, {0x1F11E, "(O)"},
    {0x1F11F, "(P)"}, {0x1F120, "(Q)"}, {0x1F121, "(R)"}, {0x1F122, "(S)"}, {0x1F123, "(T)"},
    {0x1F124, "(U)"}, {0x1F125, "(V)"}, {0x1F126, "(W)"}, {0x1F127, "(X)"}, {0x1F128, "(Y)"},
    {0x1F129, "(Z)"}, {0x1F12D, "CD"}, {0x1F12E, "WZ"}, {0x1F14A, "HV"}, {0x1F14B, "MV"}, {0x1F14C, "SD"},
    {0x1F14D, "SS"}, {0x1F14E, "PPV"}, {0x1F14F, "WC"}, {0x1F16A, "MC"}, {0x1F16B, "MD"}, {0x1F16C, "MR"},
    {0x1F190, "DJ"},
};
// clang-format on

}  // namespace talvora::nearest
