#pragma once
// What a document has read of a body: where each fragment's text ends, so that new fragments are added behind
// the last and those that have gone are dropped from the front. Whatever was done step by step, the
// paragraphs are those that head, body and tail, read anew, would give.
//
// That holds because a fragment's text doesn't depend on what stands in front of it, and because a
// paragraph's format is that of its last character: what remains of a paragraph keeps it, an empty one has
// the base's.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/rich/RichDocument.h"
#include "platform/rich/RtfFragmentReader.h"

namespace talvora {

class RichShown {
  public:
    // The paragraphs and the number of the first are the document's.
    RichShown(std::deque<Paragraph>& paragraphs, std::uint64_t& first, PictureStore& pictures);
    ~RichShown();

    // Whether the body is the one read before, and something of that is still there.
    bool Continues(const RichBody& body) const;
    bool HeadIs(std::string_view head) const { return reader_ != nullptr && headText_ == head; }
    // Texts as these are read by from now on; what has been read stays.
    void SetHead(std::string_view text, const RichHead& head);

    // Reads everything.
    void ReadAnew(const RichBody& body, std::string_view tail);

    // Drops what the body has dropped, in two steps: whole paragraphs, of which the number is returned, and
    // then what the new front has lost.
    std::uint64_t DropParagraphs(const RichBody& body);
    DocumentChange MendFront();
    // Reads what is new; the number of the first paragraph that may be another, or the document's end.
    std::uint64_t ReadNew(const RichBody& body, std::string_view tail);

  private:
    // Where a fragment's text ends: the low part of a paragraph's number less `shift_`, and an offset.
    struct Ending {
        std::uint32_t Paragraph;
        std::uint32_t Offset;
    };

    std::uint64_t endNumber() const { return fragment_ + endings_.size(); }
    Place placeOf(const Ending& ending) const;
    Place bodyEnd() const;
    void readFragments(const RichBody& body);
    void readTail(std::string_view tail);
    void takeTailOff();
    void eraseFront(std::uint32_t offset);
    void joinFront(Paragraph before);

    // What is left to do at the front: the last of `By` goes in place of what stands before `End`.
    struct Mending {
        Place End;
        std::deque<Paragraph> By;
    };

    std::deque<Paragraph>& paragraphs_;
    std::uint64_t& first_;
    PictureStore& pictures_;

    std::string headText_;
    ParagraphFormat base_;
    std::unique_ptr<RtfFragmentReader> reader_;

    std::shared_ptr<const char> identity_;
    std::uint64_t fragment_ = 0;  // the first one read that is still there
    std::size_t cut_ = 0;
    std::deque<Ending> endings_;
    std::uint32_t shift_ = 0;

    std::optional<Mending> mending_;

    // The paragraph in which the tail begins: its format without it, and how many pictures the tail has
    // added.
    ParagraphFormat openFormat_;
    std::size_t tailPictures_ = 0;
    std::string tail_;
};

}  // namespace talvora
