#include "gate/GateJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/CodePage1253.h"

namespace talvora {
namespace {

// How each byte of the page stands in a JSON text. Short, and counted by the last of the bytes.
class Spellings {
  public:
    Spellings() {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string spelling = spell(static_cast<char>(byte));
            Entry& entry = entries_[static_cast<std::size_t>(byte)];
            spelling.copy(entry.text, sizeof entry.text);
            entry.size = static_cast<unsigned char>(spelling.size());
            entry.plain = spelling.size() == 1;
        }
    }

    bool plain(char byte) const { return entry(byte).plain; }
    std::string_view of(char byte) const { return {entry(byte).text, entry(byte).size}; }

  private:
    struct Entry {
        char text[6];
        unsigned char size;
        bool plain;  // written as it stands
    };

    const Entry& entry(char byte) const { return entries_[static_cast<unsigned char>(byte)]; }

    static std::string spell(char byte) {
        if (byte == '"' || byte == '\\') return {'\\', byte};
        if (byte == '\n') return "\\n";
        if (byte == '\r') return "\\r";
        if (byte == '\t') return "\\t";
        const unsigned code = codePointOf(static_cast<unsigned char>(byte));
        // A terminal obeys the second block of control characters (80 to 9F) too.
        if (code >= 0x20 && (code < 0x7F || code > 0x9F)) return toUtf8(std::string_view(&byte, 1));
        constexpr std::string_view digits = "0123456789abcdef";
        return std::string("\\u00") + digits[code >> 4] + digits[code & 15];
    }

    std::array<Entry, 256> entries_{};
};

void appendText(std::string& to, std::string_view text) {
    static const Spellings spellings;
    to += '"';
    std::size_t written = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (spellings.plain(text[i])) continue;
        to.append(text, written, i - written);
        to += spellings.of(text[i]);
        written = i + 1;
    }
    to.append(text, written);
    to += '"';
}

template <class Number>
void appendNumber(std::string& to, Number number) {
    char digits[32];
    to.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void appendValue(std::string& to, const HostValue& value, int depth) {
    if (const auto* text = value.asText()) {
        appendText(to, *text);
    } else if (const auto* integer = value.asInteger()) {
        appendNumber(to, *integer);
    } else if (const auto* array = value.asArray(); array != nullptr && depth < GateArrayDepth) {
        to += '[';
        for (std::size_t i = 0; i < array->size(); ++i) {
            if (i > 0) to += ',';
            appendValue(to, (*array)[i], depth + 1);
        }
        to += ']';
    } else if (const auto* truth = value.asBoolean()) {
        to += *truth ? "true" : "false";
    } else if (const auto* number = value.asDouble(); number != nullptr && std::isfinite(*number)) {
        appendNumber(to, *number);
    } else {
        to += "null";
    }
}

std::string textOf(const QString& text) {
    return fromUtf8(text.toStdString());
}

std::optional<std::int32_t> integerOf(const QJsonValue& value) {
    if (!value.isDouble()) return std::nullopt;
    const double number = value.toDouble();
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    if (!(number >= lowest && number <= highest) || number != std::trunc(number)) return std::nullopt;
    return static_cast<std::int32_t>(number);
}

// Nothing for an object, a number without end and what is nested too deep.
std::optional<HostValue> valueOf(const QJsonValue& value, int depth) {
    switch (value.type()) {
        case QJsonValue::Null:
            return HostValue();
        case QJsonValue::Bool:
            return HostValue(value.toBool());
        case QJsonValue::String:
            return HostValue(textOf(value.toString()));
        case QJsonValue::Double:
            if (const auto integer = integerOf(value)) return HostValue(*integer);
            if (!std::isfinite(value.toDouble())) return std::nullopt;
            return HostValue(value.toDouble());
        case QJsonValue::Array:
            break;
        default:
            return std::nullopt;
    }
    if (depth >= GateArrayDepth) return std::nullopt;
    HostArray elements;
    for (const QJsonValue element : value.toArray()) {
        auto read = valueOf(element, depth + 1);
        if (!read) return std::nullopt;
        elements.push_back(std::move(*read));
    }
    return HostValue(std::move(elements));
}

// Takes over one field; what is wrong with it, or an empty text.
std::string takeField(HostMessage& message, const QString& name, const QJsonValue& value) {
    if (name == u"MsgID" || name == u"ToID") {
        const auto integer = integerOf(value);
        if (!integer) return name.toStdString() + " is no 32-bit integer";
        (name == u"MsgID" ? message.MsgID : message.ToID) = *integer;
    } else if (name == u"Tag") {
        if (!value.isString()) return "Tag is no text";
        message.Tag = textOf(value.toString());
    } else if (name == u"Data" || name == u"Extra") {
        auto read = valueOf(value, 0);
        if (!read) return name.toStdString() + " holds an object, a number without end or too deep an array";
        (name == u"Data" ? message.Data : message.Extra) = std::move(*read);
    } else if (name != u"FromID") {
        return "unknown field " + textOf(name.left(40));
    }
    return {};
}

QJsonDocument parse(std::string_view line, std::string& error) {
    QJsonParseError told;
    auto document = QJsonDocument::fromJson(
        QByteArray::fromRawData(line.data(), static_cast<qsizetype>(line.size())), &told);
    if (told.error != QJsonParseError::NoError) {
        error = "no JSON at byte " + std::to_string(told.offset) + ": " + told.errorString().toStdString();
    }
    return document;
}

}  // namespace

void appendMessage(std::string& to, const HostMessage& message) {
    to += "{\"MsgID\":";
    appendNumber(to, message.MsgID);
    to += ",\"FromID\":";
    appendNumber(to, message.FromID);
    to += ",\"ToID\":";
    appendNumber(to, message.ToID);
    to += ",\"Tag\":";
    appendText(to, message.Tag);
    to += ",\"Data\":";
    appendValue(to, message.Data, 0);
    to += ",\"Extra\":";
    appendValue(to, message.Extra, 0);
    to += '}';
}

void appendError(std::string& to, std::string_view reason) {
    to += "{\"error\":";
    appendText(to, reason);
    to += '}';
}

GateLine readMessage(std::string_view line) {
    GateLine result;
    if (line.find_first_not_of(" \t\r") == std::string_view::npos) {
        result.Error = GateEmptyLine;
        return result;
    }
    if (line.size() > GateLineLimit) {
        result.Error = "line too long";
        return result;
    }
    const QJsonDocument document = parse(line, result.Error);
    if (!result.Error.empty()) return result;
    const QJsonObject object = document.object();
    if (!object.contains(QLatin1String("MsgID"))) {
        result.Error = "no object with a MsgID";
        return result;
    }
    HostMessage message;
    for (auto field = object.begin(); field != object.end(); ++field) {
        result.Error = takeField(message, field.key(), field.value());
        if (!result.Error.empty()) return result;
    }
    result.Message = std::move(message);
    return result;
}

std::optional<HostValue> readValue(std::string_view json) {
    std::string error;
    const QJsonArray one = parse('[' + std::string(json) + ']', error).array();
    if (!error.empty() || one.size() != 1) return std::nullopt;
    return valueOf(one.first(), 0);
}

std::optional<std::string> readError(std::string_view line) {
    if (!line.starts_with("{\"error\":")) return std::nullopt;
    std::string error;
    return textOf(parse(line, error).object().value(QLatin1String("error")).toString());
}

std::optional<std::int32_t> peekMsgID(std::string_view line) {
    constexpr std::string_view start = "{\"MsgID\":";
    if (!line.starts_with(start)) return std::nullopt;
    std::int32_t number = 0;
    const char* const end = line.data() + line.size();
    if (std::from_chars(line.data() + start.size(), end, number).ec != std::errc{}) return std::nullopt;
    return number;
}

}  // namespace talvora
