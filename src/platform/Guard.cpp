#include "platform/Guard.h"

#include <cstdio>

namespace talvora {

RuntimeError CurrentFault() {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return RuntimeError(Fault::OutOfMemory);
    } catch (const std::exception& error) {
        return RuntimeError(static_cast<int>(Fault::InternalError), error.what());
    } catch (...) {
        return RuntimeError(Fault::InternalError);
    }
}

void Guard::runWaiting() {
    const auto calls = std::exchange(waiting_, {});
    for (const auto& call : calls) run("Deferred call", call);
}

void Guard::stray(const char* where) noexcept {
    try {
        const RuntimeError error = CurrentFault();
        if (OnStray) {
            OnStray(error, where);
        } else {
            std::fprintf(stderr, "%s: %s (%d)\n", where, error.what(), error.Number);
        }
    } catch (...) {
        std::fputs("A fault could not be reported.\n", stderr);
    }
}

}  // namespace talvora
