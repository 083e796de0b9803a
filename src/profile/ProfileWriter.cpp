#include "profile/ProfileWriter.h"

#include <algorithm>
#include <array>
#include <bitset>

#include "irc/wire/LineView.h"
#include "platform/CodePage1253.h"
#include "profile/ProfileText.h"

namespace talvora {

namespace {

std::string writeDialect(const NetworkProfile& profile) {
    const WireProfile& wire = profile.Wire;
    const WireProfile base = wire.RemoveTags ? WireProfile::standard() : WireProfile::plain();
    std::string text = wire.RemoveTags ? "standard" : "plain";
    for (std::size_t i = 0; i < static_cast<std::size_t>(Rewrite::Count); ++i) {
        const auto rewrite = static_cast<Rewrite>(i);
        if (wire.has(rewrite) == base.has(rewrite)) continue;
        text += wire.has(rewrite) ? " +" : " -";
        text += rewriteName(rewrite);
    }
    return text;
}

template <auto Member>
void copyMember(NetworkProfile& to, const NetworkProfile& from) {
    to.*Member = from.*Member;
}

template <bool NetworkProfile::*Member>
std::string writeTruth(const NetworkProfile& profile) {
    return profile.*Member ? "yes" : "no";
}

template <std::string NetworkProfile::*Member>
std::string writeText(const NetworkProfile& profile) {
    return toUtf8(profile.*Member);
}

template <std::string NetworkProfile::*Member>
std::string writeNative(const NetworkProfile& profile) {
    return profile.*Member;
}

std::string writePort(const NetworkProfile& profile) {
    return std::to_string(profile.ServerPort);
}

std::string writeEncoding(const NetworkProfile& profile) {
    return profile.Wire.Encoding == Encoding::UTF8 ? "utf-8" : "cp1253";
}

void copyEncoding(NetworkProfile& to, const NetworkProfile& from) {
    to.Wire.Encoding = from.Wire.Encoding;
}

void copyDialect(NetworkProfile& to, const NetworkProfile& from) {
    to.Wire.Rewrites = from.Wire.Rewrites;
    to.Wire.RemoveTags = from.Wire.RemoveTags;
}

struct WrittenKey {
    std::string_view name;
    std::string (*write)(const NetworkProfile& profile);
    void (*copy)(NetworkProfile& to, const NetworkProfile& from);
};

using P = NetworkProfile;
constexpr std::array<WrittenKey, 10> WrittenKeys{{
    {"ServerHost", writeText<&P::ServerHost>, copyMember<&P::ServerHost>},
    {"ServerPort", writePort, copyMember<&P::ServerPort>},
    {"SysChannel", writeText<&P::SysChannel>, copyMember<&P::SysChannel>},
    {"SysChanKey", writeText<&P::SysChanKey>, copyMember<&P::SysChanKey>},
    {"TLS", writeTruth<&P::TLS>, copyMember<&P::TLS>},
    {"CAFile", writeNative<&P::CAFile>, copyMember<&P::CAFile>},
    {"Encoding", writeEncoding, copyEncoding},
    {"Dialect", writeDialect, copyDialect},
    {"ReceiveAddress", writeNative<&P::ReceiveAddress>, copyMember<&P::ReceiveAddress>},
    {"RobotOnly", writeTruth<&P::RobotOnly>, copyMember<&P::RobotOnly>},
}};

const WrittenKey* keyNamed(std::string_view name) {
    const auto found = std::find_if(WrittenKeys.begin(), WrittenKeys.end(),
                                    [&](const WrittenKey& k) { return sameAscii(k.name, name); });
    return found != WrittenKeys.end() ? &*found : nullptr;
}

// A value is one line, whatever it holds.
std::string valueOf(const WrittenKey& key, const NetworkProfile& profile) {
    std::string value = key.write(profile);
    std::erase_if(value, isControl);
    return value;
}

// A file with nothing in it but this value.
std::string fileWith(std::string_view key, std::string_view value) {
    return "[network]\n" + std::string(key) + " = " + std::string(value) + "\n";
}

class Writer {
  public:
    explicit Writer(const NetworkProfile& profile) : profile_(profile) {}

    // `line` with its end.
    void take(std::string_view line) {
        const std::string_view text = trimmed(line.substr(0, line.find_last_not_of("\r\n") + 1));
        if (text.starts_with('[')) {
            inSection_ = sameAscii(text, "[network]");
        } else if (inSection_ && !text.empty() && text[0] != '#' && text[0] != ';' && assignment(line)) {
            return;
        }
        text_ += line;
        if (inSection_ && !text.empty()) keepPlace(line);
    }

    std::string finish() {
        std::string missing;
        for (std::size_t i = 0; i < WrittenKeys.size(); ++i) {
            const std::string value = valueOf(WrittenKeys[i], profile_);
            if (given_[i] || value == valueOf(WrittenKeys[i], NetworkProfile{})) continue;
            missing.append(WrittenKeys[i].name).append(" = ").append(value).append(end_);
        }
        if (missing.empty()) return std::move(text_);
        if (!seen_) missing = "[network]" + end_ + missing;
        if (!seen_) place_ = text_.size();
        if (place_ > 0 && text_[place_ - 1] != '\n') missing.insert(0, end_);
        return text_.insert(place_, missing);
    }

  private:
    // False if the line is to stay as it is.
    bool assignment(std::string_view line) {
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) return false;
        const WrittenKey* const found = keyNamed(trimmed(line.substr(0, equals)));
        if (found == nullptr) return false;
        given_[static_cast<std::size_t>(found - WrittenKeys.data())] = true;
        const auto ending = line.substr(line.find_last_not_of("\r\n") + 1);
        const auto old = trimmed(line.substr(equals + 1, line.size() - ending.size() - equals - 1));
        const std::string value = valueOf(*found, profile_);
        if (saysSame(*found, old, value)) return false;
        text_.append(line.substr(0, equals + 1));
        if (!value.empty()) text_.append(" ").append(value);
        text_ += ending;
        keepPlace(line);
        return true;
    }

    static bool saysSame(const WrittenKey& key, std::string_view old, const std::string& value) {
        NetworkProfile profile;
        return !setProfileValue(profile, key.name, old) && valueOf(key, profile) == value;
    }

    // What is added stands behind the last line of the section that says something.
    void keepPlace(std::string_view line) {
        seen_ = true;
        place_ = text_.size();
        if (line.ends_with("\r\n")) end_ = "\r\n";
    }

    const NetworkProfile& profile_;
    std::string text_;
    std::string end_ = "\n";
    std::size_t place_ = 0;
    bool inSection_ = false;
    bool seen_ = false;
    std::bitset<WrittenKeys.size()> given_;
};

}  // namespace

std::string withProfile(std::string_view oldText, const NetworkProfile& profile) {
    Writer writer(profile);
    std::string start;
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (oldText.starts_with(byteOrderMark)) {
        start = byteOrderMark;
        oldText.remove_prefix(byteOrderMark.size());
    }
    while (!oldText.empty()) {
        const auto end = std::min(oldText.find('\n'), oldText.size() - 1) + 1;
        writer.take(oldText.substr(0, end));
        oldText.remove_prefix(end);
    }
    return start + writer.finish();
}

std::string profileValue(const NetworkProfile& profile, std::string_view key) {
    const WrittenKey* const found = keyNamed(key);
    return found != nullptr ? valueOf(*found, profile) : std::string();
}

std::optional<std::string> setProfileValue(NetworkProfile& profile, std::string_view key,
                                           std::string_view value) {
    const WrittenKey* const found = keyNamed(key);
    if (found == nullptr) return "no key of a profile";
    if (std::any_of(value.begin(), value.end(), isControl)) return "not one line of text";
    try {
        found->copy(profile, parseNetworkProfile(fileWith(found->name, value), ""));
        return std::nullopt;
    } catch (const ProfileError& error) {
        // ":2: ServerPort is ...", of which the words about the value are wanted.
        const std::string text = error.what();
        const std::string before = " " + std::string(found->name) + " is ";
        const auto at = text.find(before);
        return at == std::string::npos ? text : text.substr(at + before.size());
    }
}

}  // namespace talvora
