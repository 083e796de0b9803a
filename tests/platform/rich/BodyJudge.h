#pragma once
// A body and a document that shows it step by step. The judge reads all anew into another document, holds a
// copy that knows only what the document's events tell, and keeps the body's text as one string: all must
// stay equal.

#include <deque>
#include <string>

#include "platform/rich/RichDump.h"

namespace talvora::test {

class BodyJudge {
  public:
    std::string Head =
        "{\\rtf1{\\fonttbl{\\f0\\fcharset161 Tahoma;}}{\\colortbl;\\red1;\\red2;}\\pard\\fs17 ";
    std::string Tail = "\r\n\\par }";
    RichBody Body;
    RichDocument Document;

    void Append(const std::string& fragment) {
        text_ += fragment;
        Body.Append(fragment);
    }

    void CutFirstLine() {
        const std::size_t end = text_.find("\\par\r\n");
        if (end != std::string::npos) text_.erase(0, end + 6);
        cutWell_ = cutWell_ && Body.CutFirstLine() == (end != std::string::npos);
    }

    // Whole fragments go, so how many bytes are left is the body's to say.
    void CutTo(std::size_t length) {
        Body.CutTo(length);
        cutWell_ = cutWell_ && Body.Length() <= length && Body.Length() <= text_.size();
        text_.erase(0, text_.size() - std::min(text_.size(), Body.Length()));
    }

    void Clear() {
        text_.clear();
        Body.Clear();
    }

    // Shows, and tells what is not as it should be.
    std::string Show() {
        Document.Show(Head, Body, Tail);
        RichDocument anew;
        anew.Show(Head, Body, Tail);
        if (!cutWell_ || Body.Text() != text_ || Body.Length() != text_.size()) return "body: " + Body.Text();
        if (!equal(anew)) return "shown: " + dumpOf(Document) + "\nanew:  " + dumpOf(anew);
        if (!copyIsEqual()) return "the events told something else than " + dumpOf(Document);
        return {};
    }

  private:
    bool equal(const RichDocument& anew) const {
        const std::uint64_t count = Document.EndNumber() - Document.FirstNumber();
        if (anew.EndNumber() - anew.FirstNumber() != count || anew.Head() != Document.Head()) return false;
        for (std::uint64_t i = 0; i < count; ++i)
            if (!(anew.At(anew.FirstNumber() + i) == Document.At(Document.FirstNumber() + i))) return false;
        return true;
    }

    void drop(std::uint64_t count) {
        first_ += count;
        copy_.erase(copy_.begin(), copy_.begin() + static_cast<std::ptrdiff_t>(count));
    }

    void change(const DocumentChange& change) {
        const auto at = copy_.begin() + static_cast<std::ptrdiff_t>(change.First - first_);
        const auto behind = copy_.erase(at, at + static_cast<std::ptrdiff_t>(change.OldCount));
        std::deque<Paragraph> now;
        for (std::uint64_t i = 0; i < change.NewCount; ++i) now.push_back(Document.At(change.First + i));
        copy_.insert(behind, now.begin(), now.end());
    }

    bool copyIsEqual() const {
        if (first_ != Document.FirstNumber() || copy_.size() != Document.EndNumber() - first_) return false;
        for (std::size_t i = 0; i < copy_.size(); ++i)
            if (!(copy_[i] == Document.At(first_ + i))) return false;
        return true;
    }

    std::string text_;
    bool cutWell_ = true;
    std::uint64_t first_ = 0;
    std::deque<Paragraph> copy_ = std::deque<Paragraph>(1);
    Subscription dropped_ = Document.Dropped.connect([this](std::uint64_t count) { drop(count); });
    Subscription changed_ = Document.Changed.connect([this](const DocumentChange& it) { change(it); });
};

}  // namespace talvora::test
