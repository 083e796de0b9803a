// The formats of the selection and of what is typed next.

#include <cmath>

#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/RichTextBox.h"

namespace talvora {

CharFormat RichTextBox::formatOfNext() const {
    if (next_) return *next_;
    const auto [begin, end] = range();
    const Paragraph& paragraph = document_.At(begin.Paragraph);
    const bool replaces = begin != end && begin.Offset < paragraph.Text.size();
    return replaces ? formatOf(paragraph, begin.Offset) : document_.FormatAt(begin);
}

template <class Value>
std::optional<Value> RichTextBox::common(Value (*of)(const RichHead&, const CharFormat&)) const {
    const auto [begin, end] = range();
    std::optional<Value> value;
    for (std::uint64_t number = begin.Paragraph; number <= end.Paragraph; ++number) {
        const Paragraph& paragraph = document_.At(number);
        const std::size_t from = number == begin.Paragraph ? begin.Offset : 0;
        const std::size_t to = number == end.Paragraph ? end.Offset : paragraph.Text.size();
        for (const Run& run : runsWithin(paragraph, from, to)) {
            const Value here = of(document_.Head(), run.Format);
            if (value && *value != here) return std::nullopt;
            value = here;
        }
    }
    return value ? value : of(document_.Head(), formatOfNext());
}

std::optional<bool> RichTextBox::SelBold() const {
    return common<bool>([](const RichHead&, const CharFormat& format) { return format.Bold; });
}

std::optional<bool> RichTextBox::SelItalic() const {
    return common<bool>([](const RichHead&, const CharFormat& format) { return format.Italic; });
}

std::optional<bool> RichTextBox::SelUnderline() const {
    return common<bool>([](const RichHead&, const CharFormat& format) { return format.Underline; });
}

std::optional<bool> RichTextBox::SelStrikeThru() const {
    return common<bool>([](const RichHead&, const CharFormat& format) { return format.StrikeThru; });
}

std::optional<Colour> RichTextBox::SelColor() const {
    return common<Colour>([](const RichHead& head, const CharFormat& format) {
        return format.Color == 0 ? Colour{0} : elementOf(head.Colors, format.Color);
    });
}

std::optional<std::string> RichTextBox::SelFontName() const {
    return common<std::string>([](const RichHead& head, const CharFormat& format) {
        return elementOf(head.Fonts, format.Font).Name;
    });
}

std::optional<double> RichTextBox::SelFontSize() const {
    return common<double>([](const RichHead&, const CharFormat& format) { return format.HalfPoints / 2.0; });
}

void RichTextBox::SetSelBold(bool on) {
    reformat([on](CharFormat& format) { format.Bold = on; });
}

void RichTextBox::SetSelItalic(bool on) {
    reformat([on](CharFormat& format) { format.Italic = on; });
}

void RichTextBox::SetSelUnderline(bool on) {
    reformat([on](CharFormat& format) { format.Underline = on; });
}

void RichTextBox::SetSelStrikeThru(bool on) {
    reformat([on](CharFormat& format) { format.StrikeThru = on; });
}

void RichTextBox::SetSelColor(Colour colour) {
    const std::uint16_t index = colour == 0 ? 0 : document_.ColorIndex(colour & 0xFFFFFF);
    reformat([index](CharFormat& format) { format.Color = index; });
}

void RichTextBox::SetSelFontName(std::string_view name) {
    const std::uint16_t index = document_.FontIndex(name);
    reformat([index](CharFormat& format) { format.Font = index; });
}

void RichTextBox::SetSelFontSize(double points) {
    const double halves = std::round(points * 2);
    if (!(halves >= MinHalfPoints && halves <= MaxHalfPoints))
        throw RuntimeError(Fault::InvalidProcedureCall);
    reformat([halves](CharFormat& format) { format.HalfPoints = static_cast<std::uint16_t>(halves); });
}

void RichTextBox::reformat(const std::function<void(CharFormat&)>& edit) {
    const auto [begin, end] = range();
    if (begin == end) {
        next_ = formatOfNext();
        edit(*next_);
        return;
    }
    EditStep step{EditKind::Other, begin, document_.Copy(begin, end), {}, selection(), selection()};
    document_.Reformat(begin, end, edit);
    step.New = document_.Copy(begin, end);
    if (step.New == step.Old) return;
    undo_.Add(std::move(step));
    Change.raise();
}

}  // namespace talvora
