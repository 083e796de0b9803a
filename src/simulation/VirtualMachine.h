#pragma once
// One platform on virtual time, alone on its network, with the component's reporter and its view of the
// settings: what a part of the component is made of when it is looked at for itself.

#include "common/ComponentSettings.h"
#include "common/GlobError.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {

struct VirtualMachine {
    VirtualTime time;
    VirtualNetwork network{time};
    VirtualPlatform around{time, network};
    GlobError globError{around.platform};
    ComponentSettings settings{around.settings};
};

}  // namespace talvora::test
