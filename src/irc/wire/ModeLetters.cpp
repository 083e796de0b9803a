#include "irc/wire/ModeLetters.h"

namespace talvora {

ModeLetters::ModeLetters() {
    mark("ovhaq", Kind::Nick);
    mark("beI", Kind::List);
    mark("k", Kind::Word);
    mark("l", Kind::WordSet);
}

ModeLetters::Kind ModeLetters::kindOf(char letter) const {
    const auto code = static_cast<unsigned char>(letter);
    return code < kinds_.size() ? kinds_[code] : Kind::Plain;
}

void ModeLetters::learn(std::string_view word) {
    constexpr std::string_view kinds = "CHANMODES=";
    constexpr std::string_view nicks = "PREFIX=(";
    if (word.substr(0, kinds.size()) == kinds) {
        learnKinds(word.substr(kinds.size()));
    } else if (word.substr(0, nicks.size()) == nicks) {
        word.remove_prefix(nicks.size());
        learnNicks(word.substr(0, word.find(')')));
    }
}

void ModeLetters::mark(std::string_view letters, Kind kind) {
    for (const char letter : letters) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < kinds_.size()) kinds_[code] = kind;
    }
}

void ModeLetters::learnKinds(std::string_view lists) {
    for (const auto kind : {Kind::List, Kind::Word, Kind::WordSet, Kind::Plain}) {
        const auto comma = lists.find(',');
        mark(lists.substr(0, comma), kind);
        if (comma == std::string_view::npos) return;
        lists.remove_prefix(comma + 1);
    }
}

void ModeLetters::learnNicks(std::string_view letters) {
    for (auto& kind : kinds_) {
        if (kind == Kind::Nick) kind = Kind::Plain;
    }
    mark(letters, Kind::Nick);
}

}  // namespace talvora
