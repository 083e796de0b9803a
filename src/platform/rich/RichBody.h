#pragma once
// The body of a document that grows at its end by fragments and loses its front line by line. A fragment is a
// stretch of RTF that is read on its own, from the document's base state, and closed at its end: so a stray
// brace in one person's line cannot reach the lines of others. The body owns the text; it is never one
// string.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

namespace talvora {

class RichBody {
  public:
    RichBody();
    RichBody(const RichBody&) = delete;
    RichBody& operator=(const RichBody&) = delete;

    // An empty fragment is none.
    void Append(std::string fragment);
    void Clear();

    // The bytes of all fragments.
    std::size_t Length() const { return length_; }
    // Cuts the body just behind its first "\par" CR LF. False, and nothing is cut, if it has none. What has
    // been searched once is not searched again.
    bool CutFirstLine();
    // Drops the oldest fragments, whole, until at most `length` bytes are left.
    void CutTo(std::size_t length);

    // All fragments in one piece: the exact text of the body.
    std::string Text() const;

    // Fragments by number. A number never comes again, not even after Clear. The front of the first one may
    // have been cut; `FirstCut` is how many bytes of it are gone.
    std::uint64_t FirstNumber() const { return first_; }
    std::uint64_t EndNumber() const { return first_ + fragments_.size(); }
    std::size_t FirstCut() const { return cut_; }
    // What is left of a fragment.
    std::string_view Fragment(std::uint64_t number) const;

    // The same for no other body, as long as somebody holds it.
    const std::shared_ptr<const char>& Identity() const { return identity_; }

  private:
    void dropFirst();
    bool lineEndsAt(std::uint64_t number, std::size_t offset) const;
    void cutBehind(std::uint64_t number, std::size_t offset);

    std::shared_ptr<const char> identity_;
    std::deque<std::string> fragments_;
    std::uint64_t first_ = 0;
    std::size_t cut_ = 0;
    std::size_t length_ = 0;
    // Where the search for a line end goes on; the offset counts in the whole fragment.
    std::uint64_t searchedFragment_ = 0;
    std::size_t searchedOffset_ = 0;
};

}  // namespace talvora
