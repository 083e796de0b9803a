#pragma once
// The text view of every chat surface. It turns a line of IRC text into rich text in two stages, control
// characters into tags and tags into RTF, and shows the growing document. Each window owns its own; what the
// constructor is given outlives it.
//
// A tag is character 5, a letter and an argument. A colour byte is the number of a palette colour + 2; 1 is
// the automatic colour. Nothing in a line is escaped: a backslash or a brace in it is read as RTF.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "chat/Alive.h"
#include "chat/modEmotions.h"
#include "common/Trap.h"
#include "platform/Platform.h"
#include "platform/rich/RichTextBox.h"

namespace talvora {

class IRCWin {
  public:
    IRCWin(Platform& platform, GlobError& globError, const modEmotions& emotions);
    IRCWin(const IRCWin&) = delete;
    IRCWin& operator=(const IRCWin&) = delete;

    RichTextBox RichTextBox1{true};  // the view
    RichTextBox RichTextBox2;        // hidden; AddPicture has pictures turned into RTF here

    std::string FontName;
    // How long the body may be before each line that comes costs the oldest one.
    std::int32_t TruncSize = 0;
    // The time stands in front of each line.
    bool TimeStamp = false;

    // Raised at every mouse-up on the view; the window answers by putting the focus to its input box.
    Event<> ReleaseFocus;

    // Empties the view and puts font and palette back.
    void Reset();
    // The only call for lines. Control characters: 2 bold, 3 colour, 15 the line's colours, 22 italic, 28
    // reverse, 29 strike-through, 31 underline; links are marked.
    void AddIRCLine(std::string_view Text, std::uint8_t ForeColor, std::uint8_t BackColor);
    void AddBBText(std::string_view SrcBBText, bool ChangeLine, bool ReplaceSlash, bool Emotions);
    // `Color` is an index of the RTF colour table.
    void AddLine(std::uint8_t Color, std::string_view Text, bool ChangeLine);
    void AddRTF(std::string_view RTFScript);
    void AddPicture(std::shared_ptr<const Picture> Picture);
    void AddColor(Colour ColorValue);
    void UpdateHead();
    void Refresh();

    // Fault 6 beyond what 16 bits count.
    std::int16_t SelStart() const;
    void SetSelStart(std::int16_t position);

    // The whole document as RTF.
    std::string Document() const;

  private:
    static constexpr std::size_t MaxColors = 101;

    void RichTextBox1_DblClick();
    void RichTextBox1_MouseUp(MouseButton button);
    void truncate();

    Platform& platform_;
    GlobError& globError_;
    const modEmotions& emotions_;

    bool BoldLine = false;  // nothing sets it
    std::string RTFHead;
    RichBody RTFBody;
    std::array<Colour, MaxColors> ColorTable{};
    std::uint8_t ColorCount = 0;

    // What RTFHead was made of.
    std::string headFont_;
    bool headIsStale_ = true;

    // Buffers that lines use again. A procedure takes one out while it runs, for another may run meanwhile.
    std::string spareTags_;
    std::string spareRTF_;

    bool opensLink_ = false;  // the question of a double click stands
    Alive alive_;
    Subscriptions on_;
};

}  // namespace talvora
