#pragma once
// A second start of the same user: the host that runs already is asked, through its gate, to show its window.

#include <string>

namespace talvora {

// False if nobody answers at the gate (native path) within some seconds.
bool showFirstHost(const std::string& gate);

}  // namespace talvora
