#include "chat/IRCWin.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

// The number of a colour here is the number of an IRC colour code.
constexpr std::array<Colour, 16> Palette = {
    0xFFFFFF, 0x000000, 0x800000, 0x008000, 0x0000FF, 0x000080, 0x800080, 0x0080FF,
    0x00FFFF, 0x00FF00, 0x808000, 0xFFFF00, 0xFF0000, 0xFF00FF, 0x404040, 0xC0C0C0,
};

constexpr std::int32_t DefaultTruncSize = 1024 * 1024;
// What a body of a few giant lines, of which each new line takes off one, can grow to.
constexpr std::int64_t CeilingOfTruncSizes = 16;

constexpr std::string_view LineEnd = "\\par\r\n";
constexpr std::string_view Tail = "\r\n\\par }";
constexpr std::string_view PictureStart = "{\\pict";

}  // namespace

IRCWin::IRCWin(Platform& platform, GlobError& globError, const modEmotions& emotions)
    : platform_(platform), globError_(globError), emotions_(emotions) {
    RichTextBox2.Visible = false;
    on_ += RichTextBox1.DblClick.connect([this] { RichTextBox1_DblClick(); });
    on_ += RichTextBox1.MouseUp.connect([this](MouseButton button) { RichTextBox1_MouseUp(button); });
    Reset();
}

void IRCWin::Reset() {
    trapped(globError_, "Reset", [&](Trap&) {
        ColorCount = 0;
        headIsStale_ = true;
        TruncSize = DefaultTruncSize;
        RTFBody.Clear();
        UpdateHead();
        FontName = "Tahoma";
        for (const Colour colour : Palette) AddColor(colour);
        Refresh();
    });
}

void IRCWin::AddColor(Colour ColorValue) {
    trapped(globError_, "AddColor", [&](Trap& step) {
        const bool stored = step([&] {
            if (ColorCount >= MaxColors) throw RuntimeError(Fault::SubscriptOutOfRange);
            ColorTable[ColorCount] = ColorValue;
        });
        if (!stored) return;
        ++ColorCount;
        headIsStale_ = true;
        UpdateHead();
    });
}

void IRCWin::UpdateHead() {
    if (!headIsStale_ && headFont_ == FontName) return;
    trapped(globError_, "UpdateHead", [&](Trap&) {
        // The blank before "\green" and none before "\blue" belong to the format.
        std::string head =
            "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 ";
        head += FontName + ";}}\r\n{\\colortbl ";
        for (std::size_t i = 0; i < ColorCount; ++i) {
            const Colour colour = ColorTable[i];
            head += ";\\red" + std::to_string(colour & 0xFFU) + " \\green" +
                    std::to_string(colour >> 8U & 0xFFU) + "\\blue" + std::to_string(colour >> 16U & 0xFFU);
        }
        RTFHead = head + ";}\r\n\\viewkind4\\uc1\\pard\\f0\\fs17 ";
        headFont_ = FontName;
        headIsStale_ = false;
    });
}

void IRCWin::AddLine(std::uint8_t Color, std::string_view Text, bool ChangeLine) {
    trapped(globError_, "AddLine", [&](Trap&) {
        std::string rtf = "\\cf" + std::to_string(Color);
        rtf += Text;
        if (BoldLine) rtf += "\\b0";
        rtf += "\\cf0";
        RTFBody.Append(std::move(rtf));
        // A fragment of its own, so that an open brace in the text can't swallow it.
        if (ChangeLine) RTFBody.Append(std::string(LineEnd));
        Refresh();
    });
}

void IRCWin::AddRTF(std::string_view RTFScript) {
    trapped(globError_, "AddRTF", [&](Trap&) {
        RTFBody.Append(std::string(RTFScript));
        Refresh();
    });
}

// The scratch box keeps its earlier pictures, and what is taken from it is its first one.
void IRCWin::AddPicture(std::shared_ptr<const Picture> Picture) {
    const Alive::Watch self(alive_);
    trapped(globError_, "AddPicture", [&](Trap& step) {
        Clipboard& clipboard = platform_.Screen.TheClipboard();
        step([&] { clipboard.Clear(); });
        step([&] { clipboard.SetData(Picture); });
        if (self.gone()) return;
        step([&] { RichTextBox2.Paste(clipboard); });
        if (self.gone()) return;
        const std::string document = RichTextBox2.TextRTF();
        std::string inside;
        const bool found = step([&] {
            const auto pieces = Split(document, PictureStart, 2, Compare::Text);
            inside = elementOf(Split(elementOf(pieces, 1), "}", 2), 0);
        });
        if (!found || self.gone()) return;
        RTFBody.Append(std::string(PictureStart) + inside + "}");
        Refresh();
    });
}

// The view shows an over-long body once: it is cut behind the display.
void IRCWin::Refresh() {
    const Alive::Watch self(alive_);
    trapped(globError_, "Refresh", [&](Trap& step) {
        UpdateHead();
        if (self.gone()) return;
        step([&] { RichTextBox1.ShowBody(RTFHead, RTFBody, Tail); });
        if (self.gone()) return;
        RichTextBox1.SetSelStartToEnd();
        truncate();
    });
}

void IRCWin::truncate() {
    const std::int64_t limit = std::max<std::int64_t>(TruncSize, 0);
    if (static_cast<std::int64_t>(RTFBody.Length()) <= limit) return;
    RTFBody.CutFirstLine();
    RTFBody.CutTo(static_cast<std::size_t>(limit * CeilingOfTruncSizes));
}

std::int16_t IRCWin::SelStart() const {
    return CInt(RichTextBox1.SelStart());
}

void IRCWin::SetSelStart(std::int16_t position) {
    if (position < 0) throw RuntimeError(380, "Invalid property value");
    RichTextBox1.SetSelStart(static_cast<std::size_t>(position));
}

std::string IRCWin::Document() const {
    return RTFHead + RTFBody.Text() + std::string(Tail);
}

}  // namespace talvora
