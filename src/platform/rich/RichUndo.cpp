#include "platform/rich/RichUndo.h"

#include <utility>

#include "platform/rich/ParagraphEdit.h"

namespace talvora {

namespace {

std::size_t bytesOf(const std::vector<Paragraph>& paragraphs) {
    std::size_t bytes = 0;
    for (const Paragraph& paragraph : paragraphs) {
        bytes += sizeof(Paragraph) + paragraph.Text.size() + paragraph.Runs.size() * sizeof(Run);
        for (const auto& picture : paragraph.Pictures) bytes += sizeof(Picture) + picture->Bytes.size();
    }
    return bytes;
}

std::size_t bytesOf(const EditStep& step) {
    return sizeof(EditStep) + bytesOf(step.Old) + bytesOf(step.New);
}

bool withinOneLine(const EditStep& step) {
    return step.Old.size() == 1 && step.New.size() == 1;
}

}  // namespace

Place endOf(Place begin, const std::vector<Paragraph>& paragraphs) {
    const auto last = static_cast<std::uint32_t>(paragraphs.back().Text.size());
    if (paragraphs.size() == 1) return {begin.Paragraph, begin.Offset + last};
    return {begin.Paragraph + paragraphs.size() - 1, last};
}

void RichUndo::Add(EditStep step) {
    dropUndone();
    if (!joinLast(step)) {
        bytes_ += bytesOf(step);
        steps_.push_back(std::move(step));
    }
    open_ = steps_.back().Kind != EditKind::Other && withinOneLine(steps_.back());
    done_ = steps_.size();
    bound();
}

bool RichUndo::joinLast(const EditStep& step) {
    if (!open_ || steps_.empty() || !withinOneLine(step)) return false;
    EditStep& last = steps_.back();
    if (last.Kind != step.Kind) return false;
    const std::size_t before = bytesOf(last);
    if (step.Kind == EditKind::Typing) {
        if (!step.Old[0].Text.empty() || step.Begin != endOf(last.Begin, last.New)) return false;
        join(last.New[0], step.New[0]);
    } else if (step.Begin == last.Begin) {
        join(last.Old[0], step.Old[0]);
    } else if (endOf(step.Begin, step.Old) == last.Begin) {
        Paragraph longer = step.Old[0];
        join(longer, last.Old[0]);
        last.Old[0] = std::move(longer);
        last.Begin = step.Begin;
    } else {
        return false;
    }
    last.After = step.After;
    bytes_ = bytes_ - before + bytesOf(last);
    return true;
}

void RichUndo::Forget() {
    steps_.clear();
    done_ = 0;
    bytes_ = 0;
    open_ = false;
}

const EditStep* RichUndo::Undo() {
    open_ = false;
    return CanUndo() ? &steps_[--done_] : nullptr;
}

const EditStep* RichUndo::Redo() {
    open_ = false;
    return CanRedo() ? &steps_[done_++] : nullptr;
}

void RichUndo::dropUndone() {
    for (; steps_.size() > done_; steps_.pop_back()) bytes_ -= bytesOf(steps_.back());
}

void RichUndo::bound() {
    // The newest step is kept, however large it is.
    while (steps_.size() > MaxSteps || (steps_.size() > 1 && bytes_ > MaxBytes)) {
        bytes_ -= bytesOf(steps_.front());
        steps_.pop_front();
    }
    done_ = steps_.size();
}

}  // namespace talvora
