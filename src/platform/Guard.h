#pragma once
// The last guard of the platform: every callback into the component runs inside it, so that no exception
// reaches the loop or the toolkit. What strays this far is handed to the reporter.

#include <exception>
#include <functional>
#include <new>
#include <string>
#include <utility>

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
        try {
            std::forward<Call>(call)();
        } catch (...) {
            stray(where);
        }
    }

  private:
    void stray(const char* where) noexcept;
};

}  // namespace talvora
