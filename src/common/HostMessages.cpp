#include "common/HostMessages.h"

#include <charconv>

namespace talvora {

const HostValue& HostValue::at(std::size_t index) const {
    const HostArray* array = asArray();
    if (array == nullptr) throw RuntimeError(Fault::TypeMismatch);
    if (index >= array->size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return (*array)[index];
}

std::string HostValue::text() const {
    if (const auto* text = asText()) return *text;
    if (const auto* number = asInteger()) return std::to_string(*number);
    if (const auto* truth = asBoolean()) return *truth ? "True" : "False";
    if (const auto* number = asDouble()) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, *number).ptr;
        return std::string(digits, end);
    }
    throw RuntimeError(Fault::TypeMismatch);
}

}  // namespace talvora
