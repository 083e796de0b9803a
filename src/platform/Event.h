#pragma once
// An event of a control or of the engine: handlers run at once, in the order in which they were connected.
//
// A handler may connect, disconnect or destroy its own subscription, or destroy the event itself, while the
// event is raised. A handler that is connected during a raise is first called by the next one. An argument is
// passed by reference only where the handler may answer through it (or where a copy would be wasted).
// One thread only.

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace talvora {

namespace detail {

// What an event and its subscriptions share. Whoever of them goes last deletes it.
struct EventState {
    virtual ~EventState() = default;
    virtual void drop(void* slot) = 0;
    int owners = 1;
};

inline void release(EventState* state) {
    if (state != nullptr && --state->owners == 0) delete state;
}

}  // namespace detail

// Keeps a handler connected for as long as it lives. Movable, not copyable.
class [[nodiscard]] Subscription {
  public:
    Subscription() = default;
    Subscription(detail::EventState* state, void* slot) : state_(state), slot_(slot) { ++state_->owners; }
    Subscription(Subscription&& other) noexcept
        : state_(std::exchange(other.state_, nullptr)), slot_(std::exchange(other.slot_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            disconnect();
            state_ = std::exchange(other.state_, nullptr);
            slot_ = std::exchange(other.slot_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { disconnect(); }

    void disconnect() {
        if (state_ == nullptr) return;
        auto* state = std::exchange(state_, nullptr);
        state->drop(std::exchange(slot_, nullptr));
        detail::release(state);
    }

  private:
    detail::EventState* state_ = nullptr;
    void* slot_ = nullptr;
};

// The subscriptions of an object to the events of others: `on_ += timer.Tick.connect(...)`.
class Subscriptions {
  public:
    void operator+=(Subscription subscription) { all_.push_back(std::move(subscription)); }
    void clear() { all_.clear(); }

  private:
    std::vector<Subscription> all_;
};

template <class... Args>
class Event {
  public:
    using Handler = std::function<void(Args...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() { detail::release(state_); }

    Subscription connect(Handler handler) {
        if (state_ == nullptr) state_ = new State;
        state_->slots.push_back(std::make_unique<Slot>(std::move(handler)));
        return Subscription(state_, state_->slots.back().get());
    }

    void raise(Args... args) {
        if (state_ == nullptr) return;
        Raising raising(state_);
        const std::size_t count = raising.state->slots.size();
        for (std::size_t i = 0; i < count; ++i) {
            Slot& slot = *raising.state->slots[i];
            if (slot.connected) slot.handler(args...);
        }
    }

    bool hasHandlers() const { return state_ != nullptr && !state_->slots.empty(); }

  private:
    struct Slot {
        explicit Slot(Handler h) : handler(std::move(h)) {}
        Handler handler;
        bool connected = true;
    };

    struct State final : detail::EventState {
        void drop(void* slot) override {
            static_cast<Slot*>(slot)->connected = false;
            dropped = true;
            if (raising == 0) sweep();
        }
        void sweep() {
            dropped = false;
            // A handler's own captures may drop further subscriptions while they are destroyed.
            std::vector<std::unique_ptr<Slot>> dead;
            std::vector<std::unique_ptr<Slot>> alive;
            for (auto& slot : slots) (slot->connected ? alive : dead).push_back(std::move(slot));
            slots = std::move(alive);
        }
        std::vector<std::unique_ptr<Slot>> slots;  // by pointer: a running handler must not move
        int raising = 0;
        bool dropped = false;
    };

    struct Raising {
        explicit Raising(State* s) : state(s) {
            ++state->owners;
            ++state->raising;
        }
        Raising(const Raising&) = delete;
        Raising& operator=(const Raising&) = delete;
        ~Raising() {
            if (--state->raising == 0 && state->dropped) state->sweep();
            detail::release(state);
        }
        State* state;
    };

    State* state_ = nullptr;
};

}  // namespace talvora
