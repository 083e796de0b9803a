#include "e2e/support/Json.h"

#include <charconv>
#include <cstdio>
#include <stdexcept>

namespace talvora::e2e {

namespace {

const Json nothing;

class Reader {
  public:
    explicit Reader(std::string_view text) : rest_(text) {}

    Json value() {
        skip();
        if (take('{')) return object();
        if (take('[')) return array();
        if (!rest_.empty() && rest_.front() == '"') return string();
        if (word("null")) return {};
        if (word("true")) return true;
        if (word("false")) return false;
        double number = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        if (error != std::errc{}) fail();
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return number;
    }
    void end() {
        skip();
        if (!rest_.empty()) fail();
    }

  private:
    [[noreturn]] void fail() const { throw std::invalid_argument("no JSON: " + std::string(rest_)); }
    void skip() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }
    bool take(char wanted) {
        skip();
        if (rest_.empty() || rest_.front() != wanted) return false;
        rest_.remove_prefix(1);
        return true;
    }
    bool word(std::string_view wanted) {
        if (!rest_.starts_with(wanted)) return false;
        rest_.remove_prefix(wanted.size());
        return true;
    }
    char next() {
        if (rest_.empty()) fail();
        const char character = rest_.front();
        rest_.remove_prefix(1);
        return character;
    }

    Json object() {
        JsonObject result;
        if (take('}')) return result;
        do {
            skip();
            const std::string name = string();
            if (!take(':')) fail();
            result[name] = value();
        } while (take(','));
        if (!take('}')) fail();
        return result;
    }
    Json array() {
        JsonArray result;
        if (take(']')) return result;
        do result.push_back(value());
        while (take(','));
        if (!take(']')) fail();
        return result;
    }
    std::string string() {
        if (!take('"')) fail();
        std::string result;
        for (char character; (character = next()) != '"';) {
            if (character == '\\') {
                escape(result);
            } else {
                result += character;
            }
        }
        return result;
    }
    void escape(std::string& to) {
        static constexpr std::string_view letters = "\"\\/bfnrt";
        static constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char letter = next();
        if (const auto at = letters.find(letter); at != std::string_view::npos) {
            to += meanings[at];
        } else if (letter == 'u') {
            appendUtf8(to, codeUnit());
        } else {
            fail();
        }
    }
    unsigned codeUnit() {
        unsigned code = 0;
        if (rest_.size() < 4) fail();
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + 4, code, 16);
        if (error != std::errc{} || end != rest_.data() + 4) fail();
        rest_.remove_prefix(4);
        return code;
    }
    // Nothing of code page 1253 lies beyond the first plane.
    static void appendUtf8(std::string& to, unsigned code) {
        if (code < 0x80) {
            to += static_cast<char>(code);
            return;
        }
        if (code < 0x800) {
            to += static_cast<char>(0xC0 | (code >> 6));
        } else {
            to += static_cast<char>(0xE0 | (code >> 12));
            to += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        }
        to += static_cast<char>(0x80 | (code & 0x3F));
    }

    std::string_view rest_;
};

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') result += '\\';
        if (static_cast<unsigned char>(character) >= 0x20) {
            result += character;
            continue;
        }
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(character));
        result += escaped;
    }
    return result + "\"";
}

struct Writer {
    std::string operator()(std::monostate) const { return "null"; }
    std::string operator()(double number) const {
        char digits[32];
        return std::string(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    }
    std::string operator()(bool truth) const { return truth ? "true" : "false"; }
    std::string operator()(const std::string& text) const { return quoted(text); }
    std::string operator()(const JsonArray& array) const {
        std::string result;
        for (const Json& element : array) result += (result.empty() ? "" : ",") + element.write();
        return "[" + result + "]";
    }
    std::string operator()(const JsonObject& object) const {
        std::string result;
        for (const auto& [name, element] : object) {
            result += (result.empty() ? "" : ",") + quoted(name) + ":" + element.write();
        }
        return "{" + result + "}";
    }
};

}  // namespace

int Json::number() const {
    const auto* number = std::get_if<double>(&value);
    return number != nullptr ? static_cast<int>(*number) : 0;
}

const std::string& Json::text() const {
    static const std::string none;
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : none;
}

const Json& Json::at(std::size_t index) const {
    const auto* array = std::get_if<JsonArray>(&value);
    return array != nullptr && index < array->size() ? (*array)[index] : nothing;
}

const Json& Json::at(const std::string& name) const {
    const auto* object = std::get_if<JsonObject>(&value);
    if (object == nullptr) return nothing;
    const auto found = object->find(name);
    return found != object->end() ? found->second : nothing;
}

std::size_t Json::size() const {
    const auto* array = std::get_if<JsonArray>(&value);
    return array != nullptr ? array->size() : 0;
}

std::string Json::write() const {
    return std::visit(Writer{}, value);
}

Json readJson(std::string_view text) {
    Reader reader(text);
    Json result = reader.value();
    reader.end();
    return result;
}

}  // namespace talvora::e2e
