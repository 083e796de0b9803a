#include "mail/MailRecipients.h"

#include <algorithm>

#include "chat/modNickDecode.h"
#include "platform/Text.h"

namespace talvora {

namespace {

void addOnce(std::vector<std::string>& to, const std::string& name) {
    const auto same = [&](const std::string& other) { return EqualText(other, name); };
    if (!name.empty() && std::ranges::none_of(to, same)) to.push_back(name);
}

}  // namespace

std::vector<std::string> MailRecipients::earlier() const {
    return Split(settings_.Get(Section::Storage, "Recipients", ""), "|");
}

std::vector<std::string> MailRecipients::Matches(std::string_view start) const {
    std::vector<std::string> matches;
    if (start.empty()) return matches;
    for (const auto& names : {earlier(), people_.Friends(), people_.OnLine()}) {
        for (const std::string& nick : names) {
            if (matches.size() == MostMatches) return matches;
            const std::string name = TruncNick(Trim(nick));
            if (EqualText(Left(name, std::ssize(start)), start)) addOnce(matches, name);
        }
    }
    return matches;
}

void MailRecipients::Remember(const std::vector<std::string>& names) {
    std::vector<std::string> kept;
    for (const std::string& name : names) addOnce(kept, Replace(TruncNick(Trim(name)), "|", ""));
    for (const std::string& name : earlier()) addOnce(kept, name);
    if (kept.size() > Kept) kept.resize(Kept);
    settings_.Save(Section::Storage, "Recipients", Join(kept, "|"));
}

}  // namespace talvora
