#include "platform/TimerQueue.h"

#include <algorithm>

namespace talvora {

void WakeUp::arm(Loop& loop, int periodMs) {
    disarm();
    loop_ = &loop;
    periodMs_ = std::max(periodMs, 1);
    loop.Timers().insert(*this, loop.Now() + loop.Timers().period(*this));
    loop.TimersChanged();
}

void WakeUp::disarm() {
    rest();
    loop_ = nullptr;
}

void WakeUp::rest() {
    if (place_ != 0) loop_->Timers().remove(*this);
}

void WakeUp::wake() {
    if (loop_ == nullptr || place_ != 0) return;
    loop_->Timers().insert(*this, loop_->Now() + loop_->Timers().period(*this));
    loop_->TimersChanged();
}

std::optional<Microseconds> TimerQueue::nextDue() const {
    if (heap_.empty()) return std::nullopt;
    return heap_.front()->due_;
}

bool TimerQueue::fireNext(Microseconds now, std::uint64_t mark) {
    if (heap_.empty() || heap_.front()->due_ > now || heap_.front()->order_ >= mark) return false;
    WakeUp& entry = *heap_.front();
    const Microseconds step = period(entry);
    // A missed period is not made up for.
    entry.due_ = entry.due_ + step > now ? entry.due_ + step : now + step;
    entry.order_ = nextOrder_++;
    siftDown(0);
    entry.action_();
    return true;
}

Microseconds TimerQueue::period(const WakeUp& entry) const {
    if (entry.periodMs_ == 1 && mode_ == OneMillisecond::AsSoonAsFree) return 0;
    return Microseconds{entry.periodMs_} * 1000;
}

void TimerQueue::insert(WakeUp& entry, Microseconds due) {
    entry.due_ = due;
    entry.order_ = nextOrder_++;
    heap_.push_back(&entry);
    entry.place_ = heap_.size();
    siftUp(heap_.size() - 1);
}

void TimerQueue::remove(WakeUp& entry) {
    const std::size_t index = entry.place_ - 1;
    entry.place_ = 0;
    WakeUp* last = heap_.back();
    heap_.pop_back();
    if (last == &entry) return;
    place(last, index);
    siftUp(index);
    siftDown(last->place_ - 1);
}

bool TimerQueue::earlier(const WakeUp& a, const WakeUp& b) {
    return a.due_ != b.due_ ? a.due_ < b.due_ : a.order_ < b.order_;
}

void TimerQueue::place(WakeUp* entry, std::size_t index) {
    heap_[index] = entry;
    entry->place_ = index + 1;
}

void TimerQueue::siftUp(std::size_t index) {
    WakeUp* entry = heap_[index];
    while (index > 0) {
        const std::size_t parent = (index - 1) / 2;
        if (!earlier(*entry, *heap_[parent])) break;
        place(heap_[parent], index);
        index = parent;
    }
    place(entry, index);
}

void TimerQueue::siftDown(std::size_t index) {
    WakeUp* entry = heap_[index];
    for (;;) {
        std::size_t child = 2 * index + 1;
        if (child >= heap_.size()) break;
        if (child + 1 < heap_.size() && earlier(*heap_[child + 1], *heap_[child])) ++child;
        if (!earlier(*heap_[child], *entry)) break;
        place(heap_[child], index);
        index = child;
    }
    place(entry, index);
}

}  // namespace talvora
