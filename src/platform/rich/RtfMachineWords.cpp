// What control words do, and the tables of a document.

#include <algorithm>
#include <utility>

#include "platform/rich/CodePages.h"
#include "platform/rich/RtfMachine.h"

namespace talvora {
namespace {

constexpr int MaxUnicodeSkip = 16;
constexpr int MaxFontNumber = 0xFFFF;
constexpr std::size_t LongestFontName = 128;
constexpr std::uint16_t NoFont = 0xFFFF;
static_assert(MaxFonts < NoFont);

std::int16_t twips(std::int32_t number, int least) {
    return static_cast<std::int16_t>(std::clamp(number, least, MaxTwips));
}

}  // namespace

RtfMachine::RtfMachine(PictureStore& pictures) : pictures_(pictures), fragments_(false), baseKnown_(false) {}

RtfMachine::RtfMachine(PictureStore& pictures, const RichHead& head)
    : pictures_(pictures), fragments_(true), head_(head) {
    const CodePage* const page = codePageOf(head.CodePage);
    for (const FontEntry& font : head.Fonts) pageOfFont_.push_back(codePageOfCharset(font.Charset, page));
    base_.Format = head.Base;
    base_.Block = head.BaseParagraph;
    base_.UnicodeSkip = head.UnicodeSkip;
    base_.Page = head.Base.Font < pageOfFont_.size() ? pageOfFont_[head.Base.Font] : page;
}

RichHead RtfMachine::HeadAtEnd() const {
    RichHead head = head_;
    head.Base = end_.Format;
    head.BaseParagraph = end_.Block;
    head.UnicodeSkip = end_.UnicodeSkip;
    return head;
}

RichHead RtfMachine::HeadOfDocument() const {
    RichHead head = head_;
    const CharFormat& first = baseKnown_ ? firstFormat_ : end_.Format;
    head.Base = {};
    head.Base.Font = first.Font;
    head.Base.HalfPoints = first.HalfPoints;
    return head;
}

void RtfMachine::noteBase() {
    baseKnown_ = true;
    firstFormat_ = state_.Format;
}

// What stands behind the document's end doesn't count.
void RtfMachine::noteEnd() {
    if (closed_ && stack_.empty()) return;
    end_ = state_;
    if (open_->Text.empty()) open_->Format = state_.Block;
}

// ---- Words

void RtfMachine::apply(const RtfWord& word) {
    if (word.Kind == RtfKind::Symbol) return ownByte(static_cast<char>(word.What));
    toSkip_ = 0;
    switch (word.Kind) {
        case RtfKind::Flag:
            setFlag(static_cast<RtfFlag>(word.What), scanner_.Number(1) != 0);
            break;
        case RtfKind::Value:
            setValue(static_cast<RtfValue>(word.What));
            break;
        case RtfKind::Action:
            act(static_cast<RtfAction>(word.What));
            break;
        case RtfKind::Align:
            state_.Block.Align = static_cast<Alignment>(word.What);
            break;
        case RtfKind::Symbol:
        case RtfKind::Destination:  // only at a group's beginning
        case RtfKind::Unknown:
            break;
    }
}

void RtfMachine::setFlag(RtfFlag flag, bool on) {
    switch (flag) {
        case RtfFlag::Bold:
            state_.Format.Bold = on;
            break;
        case RtfFlag::Italic:
            state_.Format.Italic = on;
            break;
        case RtfFlag::Underline:
            state_.Format.Underline = on;
            break;
        case RtfFlag::StrikeThru:
            state_.Format.StrikeThru = on;
            break;
    }
}

void RtfMachine::setValue(RtfValue value) {
    const std::int32_t number = scanner_.Number(0);
    ParagraphFormat& block = state_.Block;
    switch (value) {
        case RtfValue::Color:
            state_.Format.Color = colorOf(number);
            break;
        case RtfValue::Highlight:
            state_.Format.Highlight = colorOf(number);
            break;
        case RtfValue::Font:
            if (state_.Destination == RtfDestination::Fonts)
                startFont(number);
            else
                selectFont(number);
            break;
        case RtfValue::HalfPoints:
            state_.Format.HalfPoints = static_cast<std::uint16_t>(
                std::clamp(scanner_.Number(CharFormat{}.HalfPoints), MinHalfPoints, MaxHalfPoints));
            break;
        case RtfValue::LeftIndent:
            block.LeftIndent = twips(number, -MaxTwips);
            break;
        case RtfValue::RightIndent:
            block.RightIndent = twips(number, -MaxTwips);
            break;
        case RtfValue::FirstIndent:
            block.FirstIndent = twips(number, -MaxTwips);
            break;
        case RtfValue::SpaceBefore:
            block.SpaceBefore = twips(number, 0);
            break;
        case RtfValue::SpaceAfter:
            block.SpaceAfter = twips(number, 0);
            break;
        case RtfValue::UnicodeSkip:
            state_.UnicodeSkip = std::clamp(scanner_.Number(1), 0, MaxUnicodeSkip);
            break;
        case RtfValue::Unicode:
            unicode(number);
            break;
        default:
            setDocumentValue(value, number);
            break;
    }
}

void RtfMachine::setDocumentValue(RtfValue value, std::int32_t number) {
    const auto colour = static_cast<Colour>(std::clamp(number, 0, 255));
    switch (value) {
        case RtfValue::CodePage:
            setCodePage(number);
            break;
        case RtfValue::DefaultFont:
            if (!fragments_) defaultFont_ = number;
            break;
        case RtfValue::Charset:
            font_.Charset = static_cast<std::uint8_t>(std::clamp(number, 0, 255));
            break;
        case RtfValue::Red:
            color_ = (color_ & 0xFFFF00U) | colour;
            break;
        case RtfValue::Green:
            color_ = (color_ & 0xFF00FFU) | colour << 8;
            break;
        case RtfValue::Blue:
            color_ = (color_ & 0x00FFFFU) | colour << 16;
            break;
        default:
            if (state_.Destination == RtfDestination::Picture) setPictureValue(value, number);
            break;
    }
}

void RtfMachine::setPictureValue(RtfValue value, std::int32_t number) {
    switch (value) {
        case RtfValue::GoalWidth:
            picture_.SetGoalWidth(number);
            break;
        case RtfValue::GoalHeight:
            picture_.SetGoalHeight(number);
            break;
        case RtfValue::ScaleX:
            picture_.SetScaleX(number);
            break;
        case RtfValue::ScaleY:
            picture_.SetScaleY(number);
            break;
        default:
            break;
    }
}

void RtfMachine::act(RtfAction action) {
    switch (action) {
        case RtfAction::EndParagraph:
            endParagraph();
            break;
        case RtfAction::Plain:
            state_.Format = {};
            if (fragments_)
                selectFont(base_.Format.Font);
            else
                selectFont(defaultFont_);
            break;
        case RtfAction::PlainParagraph:
            state_.Block = {};
            break;
        case RtfAction::NoUnderline:
            state_.Format.Underline = false;
            break;
        case RtfAction::Macintosh:
            setCodePage(10000);
            break;
        case RtfAction::Dos:
            setCodePage(437);
            break;
        case RtfAction::DosLatin:
            setCodePage(850);
            break;
        case RtfAction::Png:
            setPictureKind(Picture::Kind::Png);
            break;
        case RtfAction::Jpeg:
            setPictureKind(Picture::Kind::Jpeg);
            break;
        case RtfAction::Dib:
            setPictureKind(Picture::Kind::Dib);
            break;
        case RtfAction::OtherPicture:
            setPictureKind(std::nullopt);
            break;
    }
}

void RtfMachine::setPictureKind(std::optional<Picture::Kind> kind) {
    if (state_.Destination == RtfDestination::Picture) picture_.SetKind(kind);
}

// ---- Tables

void RtfMachine::startTable(RtfDestination table) {
    if (table == RtfDestination::Fonts)
        startFont(0);
    else
        color_ = 0;
}

void RtfMachine::startFont(int number) {
    fontNumber_ = number;
    font_ = {};
}

void RtfMachine::addToFonts(std::string_view text) {
    for (;;) {
        const std::size_t end = text.find(';');
        const std::size_t room = LongestFontName - std::min(LongestFontName, font_.Name.size());
        font_.Name += text.substr(0, std::min(end, room));
        if (end == std::string_view::npos) return;
        addFont();
        text.remove_prefix(end + 1);
    }
}

void RtfMachine::addFont() {
    const bool possible = fontNumber_ >= 0 && fontNumber_ <= MaxFontNumber && head_.Fonts.size() < MaxFonts;
    const auto number = static_cast<std::size_t>(fontNumber_);
    if (possible && number >= fontOfNumber_.size()) fontOfNumber_.resize(number + 1, NoFont);
    if (possible && fontOfNumber_[number] == NoFont) {
        if (!std::exchange(fontsRead_, true)) head_.Fonts.clear();
        fontOfNumber_[number] = static_cast<std::uint16_t>(head_.Fonts.size());
        pageOfFont_.push_back(codePageOfCharset(font_.Charset, codePageOf(head_.CodePage)));
        head_.Fonts.push_back(std::move(font_));
    }
    font_ = {};
}

// Of a number that no font has, the first.
void RtfMachine::selectFont(int number) {
    std::size_t font = 0;
    if (fragments_) {
        if (number >= 0) font = static_cast<std::size_t>(number);
    } else if (number >= 0 && static_cast<std::size_t>(number) < fontOfNumber_.size()) {
        font = fontOfNumber_[static_cast<std::size_t>(number)];
    }
    if (font >= pageOfFont_.size()) font = fragments_ ? base_.Format.Font : 0;
    state_.Format.Font = static_cast<std::uint16_t>(font);
    state_.Page = font < pageOfFont_.size() ? pageOfFont_[font] : codePageOf(head_.CodePage);
}

void RtfMachine::addToColors(std::string_view text) {
    auto ends = std::count(text.begin(), text.end(), ';');
    if (ends > 0 && !std::exchange(colorsRead_, true)) head_.Colors.clear();
    for (; ends > 0 && head_.Colors.size() < MaxColors; --ends)
        head_.Colors.push_back(std::exchange(color_, 0));
}

std::uint16_t RtfMachine::colorOf(int number) const {
    const bool known = number > 0 && static_cast<std::size_t>(number) < head_.Colors.size();
    return static_cast<std::uint16_t>(known ? number : 0);
}

void RtfMachine::setCodePage(int number) {
    if (fragments_) return;
    state_.Page = codePageOf(number);
    head_.CodePage = state_.Page == nullptr ? 1253 : number;
}

}  // namespace talvora
