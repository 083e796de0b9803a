#pragma once

#include <functional>

#include "platform/RuntimeError.h"

namespace talvora::test {

// The number of the fault that `call` ends with; 0 if it ends well.
inline int faultOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& fault) {
        return fault.Number;
    }
    return 0;
}

}  // namespace talvora::test
