#include "irc/wire/WireProfile.h"

#include <array>

#include "irc/wire/LineView.h"

namespace talvora {

namespace {

struct Row {
    std::string_view name;
    bool standard;
};

constexpr std::array<Row, static_cast<std::size_t>(Rewrite::Count)> rows{{
    {"user-name", true},
    {"password-first", false},  // a server without a password would turn the log-on down
    {"who-all", true},
    {"rejoin", true},
    {"length", true},
    {"pacing", false},
    {"last-colon", true},
    {"channel-modes", true},
    {"names", true},
    {"global-users", true},
    {"moderated", true},
    {"empty-text", true},
    {"given-nick", true},
    {"colons-in-words", true},
    {"one-reply-at-a-time", true},
    {"server-spelling", true},
}};

constexpr std::string_view Separators = " \t,";

std::string_view nextWord(std::string_view& rest) {
    const auto begin = rest.find_first_not_of(Separators);
    if (begin == std::string_view::npos) return rest = {};
    rest.remove_prefix(begin);
    const auto word = rest.substr(0, rest.find_first_of(Separators));
    rest.remove_prefix(word.size());
    return word;
}

std::string allowed(std::string_view wrong) {
    std::string text = "\"" + std::string(wrong) +
                       "\" is not known; allowed are plain or standard, followed by +name or -name for";
    for (const auto& row : rows) {
        text += &row == rows.data() ? " " : ", ";
        text += row.name;
    }
    return text;
}

bool applyChange(std::string_view word, WireProfile& profile) {
    if (word.size() < 2 || (word[0] != '+' && word[0] != '-')) return false;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!sameAscii(rows[i].name, word.substr(1))) continue;
        profile.Rewrites[i] = word[0] == '+';
        return true;
    }
    return false;
}

}  // namespace

WireProfile WireProfile::standard() {
    WireProfile profile;
    profile.RemoveTags = true;
    for (std::size_t i = 0; i < rows.size(); ++i) profile.Rewrites[i] = rows[i].standard;
    return profile;
}

std::string_view rewriteName(Rewrite rewrite) {
    return rows[static_cast<std::size_t>(rewrite)].name;
}

std::optional<std::string> parseDialect(std::string_view value, WireProfile& profile) {
    auto rest = value;
    const auto base = nextWord(rest);
    WireProfile result;
    if (sameAscii(base, "standard")) {
        result = WireProfile::standard();
    } else if (!sameAscii(base, "plain")) {
        return allowed(base);
    }
    for (auto word = nextWord(rest); !word.empty(); word = nextWord(rest)) {
        if (!applyChange(word, result)) return allowed(word);
    }
    result.Encoding = profile.Encoding;
    profile = result;
    return std::nullopt;
}

std::optional<Encoding> parseEncoding(std::string_view value) {
    if (sameAscii(value, "cp1253")) return Encoding::CP1253;
    if (sameAscii(value, "utf-8")) return Encoding::UTF8;
    return std::nullopt;
}

}  // namespace talvora
