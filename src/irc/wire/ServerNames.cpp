#include "irc/wire/ServerNames.h"

#include <algorithm>
#include <utility>

#include "irc/wire/LineView.h"
#include "platform/CodePage1253.h"

namespace talvora {

namespace {

bool isChannel(std::string_view name) {
    return name.find_first_of("#&+!") == 0;
}

}  // namespace

void ServerNames::reset() {
    *this = ServerNames{};
}

void ServerNames::learn(std::string_view name) {
    if (name.size() > LongestName || isAscii(name)) return;
    Kind& kind = isChannel(name) ? channels_ : nicks_;
    const auto known = kind.young.find(name);
    if (known != kind.young.end()) {
        known->second = name;
        return;
    }
    if (kind.young.size() >= Most) kind.old = std::exchange(kind.young, {});
    kind.young.emplace(name, name);
}

void ServerNames::learnAll(std::string_view list) {
    if (isAscii(list)) return;
    while (!list.empty()) {
        const auto name = list.substr(0, list.find(' '));
        learn(name.substr(std::min(name.find_first_not_of("~&@%+"), name.size())));
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
}

const std::string* ServerNames::find(const Kind& kind, std::string_view name) {
    for (const Names* names : {&kind.young, &kind.old}) {
        const auto known = names->find(name);
        if (known != names->end()) return &known->second;
    }
    return nullptr;
}

std::string_view ServerNames::spelled(std::string_view name) const {
    const std::string* known = find(isChannel(name) ? channels_ : nicks_, name);
    return known == nullptr || sameAscii(*known, name) ? name : std::string_view(*known);
}

}  // namespace talvora
