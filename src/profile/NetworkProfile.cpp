#include "profile/NetworkProfile.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <optional>

#include "irc/wire/LineView.h"
#include "platform/CodePage1253.h"
#include "profile/ProfileText.h"

namespace talvora {

namespace {

constexpr std::size_t LongestFile = std::size_t{64} * 1024;

// What is wrong with a value; nothing if it was taken.
using Complaint = std::optional<std::string>;

// Text of the file for a message: not too long, and without bytes that would garble it.
std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 80;
    std::string result(text.substr(0, longest));
    std::replace_if(result.begin(), result.end(), isControl, '?');
    return "\"" + result + "\"";
}

Complaint readBool(std::string_view value, bool& place) {
    if (!sameAscii(value, "yes") && !sameAscii(value, "no")) return quoted(value) + "; yes or no is allowed";
    place = sameAscii(value, "yes");
    return std::nullopt;
}

Complaint readHost(std::string_view value, NetworkProfile& profile) {
    if (value.empty() || value.find_first_of(" \t") != std::string_view::npos) {
        return quoted(value) + "; a name or an address without blanks is allowed";
    }
    profile.ServerHost = fromUtf8(value);
    return std::nullopt;
}

Complaint readPort(std::string_view value, NetworkProfile& profile) {
    int port = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), port);
    if (error != std::errc{} || end != value.data() + value.size() || port < 1 || port > 65535) {
        return quoted(value) + "; a number from 1 to 65535 is allowed";
    }
    profile.ServerPort = port;
    return std::nullopt;
}

Complaint readSysChannel(std::string_view value, NetworkProfile& profile) {
    auto channel = fromUtf8(value);
    // A colon would end the name for the line reader.
    if (channel.size() < 2 || channel[0] != '#' || channel.find_first_of(" \t,:") != std::string::npos) {
        return quoted(value) + "; a name that begins with # and holds no blank, comma or colon is allowed";
    }
    profile.SysChannel = std::move(channel);
    return std::nullopt;
}

Complaint readSysChanKey(std::string_view value, NetworkProfile& profile) {
    auto key = fromUtf8(value);
    if (key.find_first_of(" \t,") != std::string::npos || (!key.empty() && key[0] == ':')) {
        return quoted(value) + "; a key without blanks and commas, and without a colon in front, is allowed";
    }
    profile.SysChanKey = std::move(key);
    return std::nullopt;
}

Complaint readTLS(std::string_view value, NetworkProfile& profile) {
    return readBool(value, profile.TLS);
}

Complaint readRobotOnly(std::string_view value, NetworkProfile& profile) {
    return readBool(value, profile.RobotOnly);
}

Complaint readCAFile(std::string_view value, NetworkProfile& profile) {
    profile.CAFile = value;  // goes to the file system as it stands
    return std::nullopt;
}

Complaint readEncoding(std::string_view value, NetworkProfile& profile) {
    const auto encoding = parseEncoding(value);
    if (!encoding) return quoted(value) + "; cp1253 or utf-8 is allowed";
    profile.Wire.Encoding = *encoding;
    return std::nullopt;
}

Complaint readDialect(std::string_view value, NetworkProfile& profile) {
    const auto complaint = parseDialect(value, profile.Wire);
    if (!complaint) return std::nullopt;
    return quoted(value) + "; " + *complaint;
}

Complaint readReceiveAddress(std::string_view value, NetworkProfile& profile) {
    if (value.find_first_not_of("0123456789abcdefABCDEF.:%") != std::string_view::npos) {
        return quoted(value) + "; an address in numbers, or nothing for all, is allowed";
    }
    profile.ReceiveAddress = value;
    return std::nullopt;
}

struct Key {
    std::string_view name;
    Complaint (*read)(std::string_view value, NetworkProfile& profile);
};

constexpr std::array<Key, 10> Keys{{
    {"ServerHost", readHost},
    {"ServerPort", readPort},
    {"SysChannel", readSysChannel},
    {"SysChanKey", readSysChanKey},
    {"TLS", readTLS},
    {"CAFile", readCAFile},
    {"Encoding", readEncoding},
    {"Dialect", readDialect},
    {"ReceiveAddress", readReceiveAddress},
    {"RobotOnly", readRobotOnly},
}};

std::string keyNames() {
    std::string text;
    for (const auto& key : Keys) {
        if (!text.empty()) text += ", ";
        text += key.name;
    }
    return text;
}

class Reader {
  public:
    explicit Reader(const std::string& file) : file_(file) {}

    void line(std::string_view text) {
        ++number_;
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        text = trimmed(text);
        if (text.empty() || text[0] == '#' || text[0] == ';') return;
        if (std::any_of(text.begin(), text.end(), [](char c) { return isControl(c) && c != '\t'; })) {
            fail("a control character; text is allowed");
        }
        if (text[0] == '[') return section(text);
        const auto equals = text.find('=');
        if (equals == std::string_view::npos) {
            fail(quoted(text) + " has no =; a key, = and a value are allowed");
        }
        assign(trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1)));
    }

    [[noreturn]] void fail(const std::string& text) const {
        throw ProfileError(file_, std::max(number_, 1), text);
    }

    NetworkProfile profile;

  private:
    void section(std::string_view text) {
        if (!sameAscii(text, "[network]")) {
            fail(quoted(text) + " is no section of this file; [network] is allowed");
        }
        inSection_ = true;
    }

    void assign(std::string_view name, std::string_view value) {
        if (!inSection_) fail(quoted(name) + " stands before [network]");
        const auto found =
            std::find_if(Keys.begin(), Keys.end(), [&](const Key& k) { return sameAscii(k.name, name); });
        if (found == Keys.end()) fail(quoted(name) + " is no key; allowed are " + keyNames());
        const auto index = static_cast<std::size_t>(found - Keys.begin());
        if (given_[index]) fail(std::string(found->name) + " is given twice; once is allowed");
        given_[index] = true;
        if (const auto complaint = found->read(value, profile))
            fail(std::string(found->name) + " is " + *complaint);
    }

    const std::string& file_;
    int number_ = 0;
    bool inSection_ = false;
    std::bitset<Keys.size()> given_;
};

}  // namespace

NetworkProfile parseNetworkProfile(std::string_view text, const std::string& file) {
    Reader reader(file);
    if (text.size() > LongestFile) reader.fail("the file is too long; 64 KiB are allowed");
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark) text.remove_prefix(byteOrderMark.size());
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        reader.line(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return reader.profile;
}

}  // namespace talvora
