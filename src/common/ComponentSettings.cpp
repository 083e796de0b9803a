#include "common/ComponentSettings.h"

#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora {

std::int32_t ComponentSettings::GetNumber(std::string_view section, std::string_view key,
                                          std::int32_t fallback, std::int32_t least,
                                          std::int32_t most) const {
    const std::string text = Get(section, key, CStr(fallback));
    try {
        const std::int32_t number = CLng(Val(text));
        return number < least || number > most ? fallback : number;
    } catch (const RuntimeError&) {
        return fallback;
    }
}

}  // namespace talvora
