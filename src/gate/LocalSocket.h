#pragma once
// Local stream sockets by path, for both ends of the gate. Paths are native. Failures are std::system_error
// with the path in their text.

#include <string>

#include "platform_qt/Descriptor.h"

namespace talvora {

// A blocking connection.
Descriptor connectLocal(const std::string& path);
// Creates the socket's file, readable and writable by its owner alone. Does not block.
Descriptor listenLocal(const std::string& path);
// The next waiting connection, which does not block; invalid if there is none (any more).
Descriptor acceptLocal(const Descriptor& listening);

}  // namespace talvora
