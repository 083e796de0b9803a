// The network profile: any text is read or refused with a line of it.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "profile/NetworkProfile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const auto profile = talvora::parseNetworkProfile(text);
        if (profile.ServerPort < 1 || profile.ServerPort > 65535 || profile.SysChannel[0] != '#')
            std::abort();
    } catch (const talvora::ProfileError& error) {
        if (error.Line < 1) std::abort();
    }
    return 0;
}
