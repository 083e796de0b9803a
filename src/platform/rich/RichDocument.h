#pragma once
// A document: tables, and paragraphs by number. It is always one paragraph long at least. Writing a whole
// document, growing by fragments and editing all end in `Changed` and `Dropped`, by which a view follows
// without looking at what has stayed.
//
// Positions: the plain text joins paragraphs by CR LF, so a paragraph's end counts two characters, a line
// break or picture within a paragraph one. A `Place` is the same as paragraph number and offset.

#include <compare>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Event.h"
#include "platform/rich/RichBody.h"
#include "platform/rich/RichText.h"

namespace talvora {

struct Place {
    std::uint64_t Paragraph = 0;
    std::uint32_t Offset = 0;

    bool operator==(const Place&) const = default;
    std::strong_ordering operator<=>(const Place& b) const {
        return Paragraph == b.Paragraph ? Offset <=> b.Offset : Paragraph <=> b.Paragraph;
    }
};

// `OldCount` paragraphs from number `First` on are now `NewCount` others; what follows has moved up or down.
struct DocumentChange {
    std::uint64_t First = 0;
    std::uint64_t OldCount = 0;
    std::uint64_t NewCount = 0;
};

class PictureStore;
class RichShown;

class RichDocument {
  public:
    RichDocument();
    ~RichDocument();
    RichDocument(const RichDocument&) = delete;
    RichDocument& operator=(const RichDocument&) = delete;

    // ---- What it holds

    const RichHead& Head() const { return head_; }
    std::uint64_t FirstNumber() const { return first_; }
    std::uint64_t EndNumber() const { return first_ + paragraphs_.size(); }
    // Fault 9 if there is no such paragraph.
    const Paragraph& At(std::uint64_t number) const;

    // The plain text; pictures are blanks, line breaks stay LineBreak.
    std::string Text() const;
    std::size_t TextLength() const;
    // From `begin` up to `end`, in the same form.
    std::string Text(Place begin, Place end) const;
    Place Begin() const { return {first_, 0}; }
    Place End() const;
    // The nearest place or position within the document; a position inside a CR LF is the place in front of
    // it.
    Place PlaceAt(std::size_t position) const;
    std::size_t PositionOf(Place place) const;
    // The place itself, or the nearest one that still exists.
    Place Within(Place place) const;

    Event<const DocumentChange&> Changed;
    // So many paragraphs have gone from the front. The numbers of the others stay.
    Event<std::uint64_t> Dropped;
    // Fonts, colours or base format are others.
    Event<> HeadChanged;

    // ---- Whole documents (RtfReader reads, see there)

    // Replaces everything by a document read from RTF. What is no RTF at all is taken as plain text.
    void Read(std::string_view rtf);
    // Replaces everything by plain text in the base format; CR LF, CR and LF end paragraphs.
    void ReadPlain(std::string_view text);

    // Shows head, body and tail as one document: each fragment, and the tail, is read on its own from the
    // state that the head leaves. Of a body that was shown before only what is new is read and what is gone
    // is dropped; the outcome is that of reading everything anew. Any other way of changing the document ends
    // this.
    void Show(std::string_view head, const RichBody& body, std::string_view tail);

    // ---- Editing

    // Replaces what lies from `begin` up to `end` by `by`, whose first and last paragraph join what stands
    // before and behind. Returns the place behind the new text. `by` is never empty; one empty paragraph
    // inserts nothing. Its formats refer to this document's tables, and those of its paragraphs are the new
    // ones of the first and last paragraph too: so putting back what Copy gave before restores everything.
    Place Splice(Place begin, Place end, std::vector<Paragraph> by);
    // The paragraphs from `begin` up to `end`, the first and last one cut to it.
    std::vector<Paragraph> Copy(Place begin, Place end) const;
    // Calls `edit` with each format from `begin` up to `end`.
    void Reformat(Place begin, Place end, const std::function<void(CharFormat&)>& edit);
    // The format of the character in front of a place, or behind it at a paragraph's start; the base format
    // in an empty paragraph.
    CharFormat FormatAt(Place place) const;
    // The index of a font or colour, added to the table if it isn't there; the base's font, or 0, if the
    // table is full.
    std::uint16_t FontIndex(std::string_view name, std::uint8_t charset = 161);
    std::uint16_t ColorIndex(Colour colour);

  private:
    // To be called before any change that is not Show's own.
    void forgetShown();
    void replaceAll(RichHead head, std::deque<Paragraph> paragraphs);
    void raiseChange(std::uint64_t first, std::uint64_t oldEnd);
    void showNew(const RichBody& body, std::string_view tail);

    RichHead head_;
    std::deque<Paragraph> paragraphs_;
    std::uint64_t first_ = 0;
    std::unique_ptr<PictureStore> pictures_;
    std::unique_ptr<RichShown>
        shown_;  // what Show has read; empty if something else has changed the document
};

}  // namespace talvora
