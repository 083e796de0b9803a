#pragma once
// JSON as far as the gate's lines need it. Texts are in UTF-8. Written apart from the program's own reader,
// so that a mistake there does not cancel out here.

#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace talvora::e2e {

struct Json;
using JsonArray = std::vector<Json>;
using JsonObject = std::map<std::string, Json>;

struct Json {
    using Value = std::variant<std::monostate, double, bool, std::string, JsonArray, JsonObject>;

    Json() = default;
    Json(int number) : value(static_cast<double>(number)) {}
    Json(double number) : value(number) {}
    Json(bool truth) : value(truth) {}
    Json(std::string text) : value(std::move(text)) {}
    Json(const char* text) : value(std::string(text)) {}
    Json(JsonArray array) : value(std::move(array)) {}
    Json(JsonObject object) : value(std::move(object)) {}

    // What is not there or of another kind is 0, "" or null: the test's comparison then fails by itself.
    int number() const;
    const std::string& text() const;
    const Json& at(std::size_t index) const;
    const Json& at(const std::string& name) const;
    std::size_t size() const;  // of an array

    std::string write() const;
    bool operator==(const Json&) const = default;

    Value value;
};

// Throws std::invalid_argument for anything but one whole value.
Json readJson(std::string_view text);

}  // namespace talvora::e2e
