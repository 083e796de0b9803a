#pragma once
// What the kernel notes of one folder, for `PosixDisk`.

#include <memory>

#include "platform/DiskDriver.h"
#include "platform_qt/Descriptor.h"

namespace talvora {

// Watches the open folder; null where the kernel can't, or where the user has too many watches already.
std::unique_ptr<FolderWatch> watchByKernel(const Descriptor& folder);

}  // namespace talvora
