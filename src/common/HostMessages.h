#pragma once
// The messages by which a host and its plug-ins speak, and the database that carries them.
//
// A broadcast is synchronous: every listener has seen a message when `Broadcast` returns, and a listener may
// broadcast in turn (its message is then nested in the first). Text is in code page 1253.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Event.h"
#include "platform/RuntimeError.h"

namespace talvora {

class HostValue;
using HostArray = std::vector<HostValue>;

// What a message carries: nothing, a number, a text, a truth value or an array of these.
class HostValue {
  public:
    HostValue() = default;
    HostValue(std::int32_t number) : value_(number) {}
    HostValue(double number) : value_(number) {}
    HostValue(bool truth) : value_(truth) {}
    HostValue(std::string text) : value_(std::move(text)) {}
    HostValue(std::string_view text) : value_(std::string(text)) {}
    HostValue(const char* text) : value_(std::string(text)) {}
    HostValue(HostArray array) : value_(std::move(array)) {}

    bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
    const std::int32_t* asInteger() const { return std::get_if<std::int32_t>(&value_); }
    const double* asDouble() const { return std::get_if<double>(&value_); }
    const bool* asBoolean() const { return std::get_if<bool>(&value_); }
    const std::string* asText() const { return std::get_if<std::string>(&value_); }
    const HostArray* asArray() const { return std::get_if<HostArray>(&value_); }

    // Element `index` of an array. Faults with 13 if this is no array, with 9 if there is no such element.
    const HostValue& at(std::size_t index) const;
    // As text, numbers by their shortest decimal form. Faults with 13 for nothing and for an array.
    std::string text() const;

    bool operator==(const HostValue&) const = default;

  private:
    std::variant<std::monostate, std::int32_t, double, bool, std::string, HostArray> value_;
};

// Addressees that are no plug-in.
namespace HostAddress {
constexpr std::int32_t Everybody = -1;
constexpr std::int32_t Host = -2;
constexpr std::int32_t SettingsManager = -3;
}  // namespace HostAddress

struct HostMessage {
    std::int32_t MsgID = 0;
    std::int32_t FromID = 0;
    std::int32_t ToID = HostAddress::Everybody;
    std::string Tag;  // the sender's short name
    HostValue Data;
    HostValue Extra{std::int32_t{0}};
};

class MessageDatabase {
  public:
    virtual ~MessageDatabase() = default;
    virtual void Broadcast(const HostMessage& message) = 0;

    Event<const HostMessage&> MessageBroadcasted;
};

}  // namespace talvora
