#pragma once
// The last guard of the platform: every callback into the component runs inside it, so that no exception
// reaches the loop or the toolkit. What strays this far is handed to the reporter.

#include <exception>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/RuntimeError.h"

namespace talvora {

// What a foreign exception looks like as a run-time fault. Call it in a handler (it rethrows).
RuntimeError CurrentFault();

class Guard {
  public:
    // Set by the component's reporter. `where` names the callback.
    std::function<void(const RuntimeError&, const std::string& where)> OnStray;

    template <class Call>
    void run(const char* where, Call&& call) {
        ++depth_;
        try {
            std::forward<Call>(call)();
        } catch (...) {
            stray(where);
        }
        if (--depth_ == 0 && !waiting_.empty()) runWaiting();
    }

    // Runs `call` at the end of the outermost callback, when no handler of the component is on the stack any
    // more: the place to destroy what a running handler may still stand in.
    void WhenIdle(std::function<void()> call) { waiting_.push_back(std::move(call)); }

  private:
    void stray(const char* where) noexcept;
    void runWaiting();

    int depth_ = 0;  // callbacks on the stack; a question or a pump nests them
    std::vector<std::function<void()>> waiting_;
};

}  // namespace talvora
