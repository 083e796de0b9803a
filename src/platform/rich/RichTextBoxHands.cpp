// What hands and code put into the document and take out of it.

#include <algorithm>

#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/PictureStore.h"
#include "platform/rich/RichTextBox.h"
#include "platform/rich/RtfReader.h"

namespace talvora {

namespace {

constexpr int TwipsPerPixel = 15;

// Finds the fonts and colours of another document in the tables of this one, each once.
class Tables {
  public:
    Tables(RichDocument& to, const RichHead& from)
        : to_(to), from_(from), fonts_(from.Fonts.size()), colours_(from.Colors.size()) {}

    void translate(std::vector<Paragraph>& paragraphs) {
        for (Paragraph& paragraph : paragraphs) {
            for (Run& run : paragraph.Runs) {
                run.Format.Font = font(run.Format.Font);
                run.Format.Color = colour(run.Format.Color);
                run.Format.Highlight = colour(run.Format.Highlight);
            }
            normalise(paragraph.Runs);
        }
    }

  private:
    using Slots = std::vector<std::optional<std::uint16_t>>;

    static std::optional<std::uint16_t>& slot(Slots& slots, std::uint16_t index) {
        if (index >= slots.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
        return slots[index];
    }
    std::uint16_t font(std::uint16_t index) {
        auto& known = slot(fonts_, index);
        if (!known) known = to_.FontIndex(from_.Fonts[index].Name, from_.Fonts[index].Charset);
        return *known;
    }
    std::uint16_t colour(std::uint16_t index) {
        if (index == 0) return 0;
        auto& known = slot(colours_, index);
        if (!known) known = to_.ColorIndex(from_.Colors[index]);
        return *known;
    }

    RichDocument& to_;
    const RichHead& from_;
    Slots fonts_;
    Slots colours_;
};

// The picture in its natural size on the page, smaller if the page can't hold it.
std::shared_ptr<const Picture> sized(const std::shared_ptr<const Picture>& picture) {
    const int longer = std::max(picture->PixelWidth, picture->PixelHeight);
    const double scale = std::min<double>(TwipsPerPixel, MaxTwips / std::max(1.0, double(longer)));
    const int width = std::max(1, static_cast<int>(picture->PixelWidth * scale));
    const int height = std::max(1, static_cast<int>(picture->PixelHeight * scale));
    if (picture->WidthTwips == width && picture->HeightTwips == height) return picture;
    auto copy = std::make_shared<Picture>(*picture);
    copy->WidthTwips = width;
    copy->HeightTwips = height;
    return copy;
}

}  // namespace

// ---- What is put in

std::vector<Paragraph> RichTextBox::plain(std::string_view text) const {
    return plainParagraphs(text, formatOfNext(), document_.At(range().first.Paragraph).Format);
}

std::vector<Paragraph> RichTextBox::adopted(std::string_view rtf) {
    if (!isRtf(rtf)) return plain(rtf);
    PictureStore pictures;
    RtfContent content = readRtf(rtf, pictures);
    Tables(document_, content.Head).translate(content.Paragraphs);
    return std::move(content.Paragraphs);
}

std::vector<Paragraph> RichTextBox::pastedFrom(const Clipboard& clipboard) {
    if (const auto rtf = clipboard.GetText(ClipboardFormat::RTF)) return adopted(*rtf);
    if (const auto picture = clipboard.GetData()) {
        auto paragraphs = plain({});
        paragraphs[0].Text = PictureMark;
        paragraphs[0].Runs = {{0, formatOfNext()}};
        paragraphs[0].Pictures = {sized(picture)};
        return paragraphs;
    }
    const auto text = clipboard.GetText();
    return text ? plain(*text) : std::vector<Paragraph>{};
}

void RichTextBox::insertPlain(std::string_view text, EditKind kind, Hand hand) {
    const CharFormat format = formatOfNext();
    insert(plain(text), kind, hand, format);
}

void RichTextBox::insert(std::vector<Paragraph> by, EditKind kind, Hand hand,
                         std::optional<CharFormat> next) {
    if (by.empty()) return;
    const auto [begin, end] = range();
    if (hand == Hand::User && !fitLength(begin, end, by)) return;
    fitParagraphs(begin, end, by);
    replace(begin, end, std::move(by), kind, next);
}

bool RichTextBox::fitLength(Place begin, Place end, std::vector<Paragraph>& by) {
    if (!length_) length_ = document_.TextLength();
    const std::size_t stays = *length_ - lengthOf(document_.Copy(begin, end));
    const std::size_t asked = lengthOf(by);
    shorten(by, MaxTextByHand - std::min(stays, MaxTextByHand));
    return asked == 0 || lengthOf(by) != 0;
}

// What remains of a paragraph in front of or behind the new text keeps its format.
void RichTextBox::fitParagraphs(Place begin, Place end, std::vector<Paragraph>& by) const {
    const Paragraph& first = document_.At(begin.Paragraph);
    const Paragraph& last = document_.At(end.Paragraph);
    if (end.Offset < last.Text.size()) by.back().Format = last.Format;
    if (begin.Offset > 0) by.front().Format = first.Format;
}

void RichTextBox::erase(Place begin, Place end, EditKind kind) {
    if (begin == end) return;
    const CharFormat format = begin.Offset < document_.At(begin.Paragraph).Text.size()
                                  ? formatOf(document_.At(begin.Paragraph), begin.Offset)
                                  : document_.FormatAt(begin);
    std::vector<Paragraph> nothing(1);
    nothing[0].Format = document_.At(begin.Paragraph).Format;
    fitParagraphs(begin, end, nothing);
    replace(begin, end, std::move(nothing), kind, format);
}

// ---- The one way in which the text changes

void RichTextBox::replace(Place begin, Place end, std::vector<Paragraph> by, EditKind kind,
                          std::optional<CharFormat> next) {
    EditStep step{kind, begin, document_.Copy(begin, end), std::move(by), selection(), {}};
    const Place after = endOf(begin, step.New);
    step.After = {after, after};
    if (step.Old == step.New) return select(after, after);
    exchange(begin, step.Old, step.New);
    put(step.After);
    next_ = document_.At(after.Paragraph).Text.empty() ? next : std::nullopt;
    undo_.Add(std::move(step));
    Change.raise();
    SelChange.raise();
}

void RichTextBox::exchange(Place begin, const std::vector<Paragraph>& old, std::vector<Paragraph> by) {
    if (length_) *length_ = *length_ - lengthOf(old) + lengthOf(by);
    document_.Splice(begin, endOf(begin, old), std::move(by));
}

void RichTextBox::userUndoes() {
    if (Locked) return;
    if (const EditStep* step = undo_.Undo()) restore(step->Begin, step->New, step->Old, step->Before);
}

void RichTextBox::userRedoes() {
    if (Locked) return;
    if (const EditStep* step = undo_.Redo()) restore(step->Begin, step->Old, step->New, step->After);
}

void RichTextBox::restore(Place begin, const std::vector<Paragraph>& from, const std::vector<Paragraph>& to,
                          Selection selected) {
    exchange(begin, from, to);
    put(selected);
    next_.reset();
    Change.raise();
    SelChange.raise();
}

bool RichTextBox::CanUndo() const {
    return !Locked && undo_.CanUndo();
}

bool RichTextBox::CanRedo() const {
    return !Locked && undo_.CanRedo();
}

// ---- Hands

void RichTextBox::userTypes(std::string_view text) {
    if (Locked || text.empty()) return;
    insertPlain(text, EditKind::Typing, Hand::User);
}

void RichTextBox::userInsertsLineBreak() {
    userTypes(std::string_view(&LineBreak, 1));
}

void RichTextBox::userErasesBackward() {
    if (Locked) return;
    const auto [begin, end] = range();
    if (begin != end) return erase(begin, end, EditKind::Other);
    if (begin.Offset > 0) {
        erase({begin.Paragraph, begin.Offset - 1}, begin, EditKind::Erasing);
    } else if (begin.Paragraph > document_.FirstNumber()) {
        const std::uint64_t before = begin.Paragraph - 1;
        erase({before, static_cast<std::uint32_t>(document_.At(before).Text.size())}, begin, EditKind::Other);
    }
}

void RichTextBox::userErasesForward() {
    if (Locked) return;
    const auto [begin, end] = range();
    if (begin != end) return erase(begin, end, EditKind::Other);
    if (begin.Offset < document_.At(begin.Paragraph).Text.size()) {
        erase(begin, {begin.Paragraph, begin.Offset + 1}, EditKind::Erasing);
    } else if (begin.Paragraph + 1 < document_.EndNumber()) {
        erase(begin, {begin.Paragraph + 1, 0}, EditKind::Other);
    }
}

void RichTextBox::userPastes(const Clipboard& clipboard) {
    if (!Locked) insert(pastedFrom(clipboard), EditKind::Other, Hand::User);
}

void RichTextBox::userPastesPlain(const Clipboard& clipboard) {
    if (Locked) return;
    if (const auto text = clipboard.GetText()) insertPlain(*text, EditKind::Other, Hand::User);
}

void RichTextBox::userCopies(Clipboard& clipboard) const {
    const auto [begin, end] = range();
    if (begin == end) return;
    clipboard.Clear();
    clipboard.SetText(SelRTF(), ClipboardFormat::RTF);
    clipboard.SetText(Replace(SelText(), std::string_view(&LineBreak, 1), "\r\n"), ClipboardFormat::Text);
}

void RichTextBox::userCuts(Clipboard& clipboard) {
    if (Locked) return;
    userCopies(clipboard);
    const auto [begin, end] = range();
    erase(begin, end, EditKind::Other);
}

}  // namespace talvora
