#pragma once
// What has been edited, so that it can be taken back: for each step what a stretch of the document was and
// what it became. Bounded in number and memory; the oldest steps go first.

#include <cstddef>
#include <deque>
#include <vector>

#include "platform/rich/RichDocument.h"

namespace talvora {

enum class EditKind { Typing, Erasing, Other };

struct Selection {
    Place Anchor;
    Place Caret;

    bool operator==(const Selection&) const = default;
};

struct EditStep {
    EditKind Kind = EditKind::Other;
    Place Begin;
    std::vector<Paragraph> Old;
    std::vector<Paragraph> New;
    Selection Before;
    Selection After;
};

// The place behind paragraphs that stand at `begin`.
Place endOf(Place begin, const std::vector<Paragraph>& paragraphs);

class RichUndo {
  public:
    // Adds what has just been done; what had been undone is forgotten. Typing, and erasing, within one line
    // joins the step before it if it goes on where that one ended.
    void Add(EditStep step);
    // The next edit begins a step of its own.
    void Close() { open_ = false; }
    void Forget();

    // The step to take back or to do again; nothing if there is none.
    const EditStep* Undo();
    const EditStep* Redo();
    bool CanUndo() const { return done_ > 0; }
    bool CanRedo() const { return done_ < steps_.size(); }

    static constexpr std::size_t MaxSteps = 500;
    static constexpr std::size_t MaxBytes = 8 << 20;

  private:
    bool joinLast(const EditStep& step);
    void dropUndone();
    void bound();

    std::deque<EditStep> steps_;
    std::size_t done_ = 0;  // steps in front of this one are done, the others undone
    std::size_t bytes_ = 0;
    bool open_ = false;
};

}  // namespace talvora
