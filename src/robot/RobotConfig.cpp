#include "robot/RobotConfig.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>

#include "irc/wire/LineView.h"
#include "platform/CodePage1253.h"
#include "platform/Text.h"

namespace talvora {

namespace {

// What is wrong with a value; nothing if it was taken.
using Complaint = std::optional<std::string>;

constexpr int Million = 1'000'000;

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string_view trimmed(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(" \t"), text.size());
    return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

// Text of the file for a message: not too long.
std::string quoted(std::string_view text) {
    return "\"" + std::string(text.substr(0, 80)) + "\"";
}

Complaint readNumber(std::string_view value, int low, int high, int& place) {
    int number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc{} || end != value.data() + value.size() || number < low || number > high) {
        return quoted(value) + "; a number from " + CStr(low) + " to " + CStr(high) + " is allowed";
    }
    place = number;
    return std::nullopt;
}

bool isBareNick(std::string_view nick) {
    return !nick.empty() && nick.size() <= 64 &&
           nick.find_first_of(" \t,:!@*?[#&") == std::string_view::npos && (nick[0] < '0' || nick[0] > '9') &&
           nick[0] != '-';
}

template <auto Member, int Low, int High>
Complaint number(std::string_view value, RobotConfig& config) {
    return readNumber(value, Low, High, config.*Member);
}

template <auto Member>
Complaint text(std::string_view value, RobotConfig& config) {
    config.*Member = fromUtf8(value);
    return std::nullopt;
}

template <auto Member>
Complaint storeText(std::string_view value, RobotConfig& config) {
    config.Store.*Member = value;
    return std::nullopt;
}

Complaint nick(std::string_view value, RobotConfig& config) {
    if (!isBareNick(value)) return quoted(value) + "; a nick without a state is allowed";
    config.Nick = fromUtf8(value);
    return std::nullopt;
}

Complaint onLogin(std::string_view value, RobotConfig& config) {
    if (value.empty() || value.size() > 510) return quoted(value) + "; a line of 1 to 510 bytes is allowed";
    config.OnLogin.push_back(fromUtf8(value));
    return std::nullopt;
}

Complaint channelModes(std::string_view value, RobotConfig& config) {
    if (!value.empty() && value[0] != '+' && value[0] != '-') {
        return quoted(value) + "; modes that begin with + or - are allowed";
    }
    return text<&RobotConfig::ChannelModes>(value, config);
}

Complaint addressHost(std::string_view value, RobotConfig& config) {
    if (value.find_first_of(" \t") != std::string_view::npos) {
        return quoted(value) + "; a name or an address without blanks, or nothing, is allowed";
    }
    return text<&RobotConfig::AddressHost>(value, config);
}

Complaint addressListen(std::string_view value, RobotConfig& config) {
    if (value.find_first_not_of("0123456789abcdefABCDEF.:%") != std::string_view::npos) {
        return quoted(value) + "; an address in numbers, or nothing for all, is allowed";
    }
    return text<&RobotConfig::AddressListen>(value, config);
}

Complaint driver(std::string_view value, RobotConfig& config) {
    for (const char* const known : {"QSQLITE", "QPSQL"}) {
        if (!sameAscii(value, known)) continue;
        config.Store.Driver = known;
        return std::nullopt;
    }
    return quoted(value) + "; QSQLITE or QPSQL is allowed";
}

Complaint database(std::string_view value, RobotConfig& config) {
    if (value.empty()) return quoted(value) + "; a file, or the name of a database, is allowed";
    return storeText<&StoreSettings::Database>(value, config);
}

Complaint storePort(std::string_view value, RobotConfig& config) {
    return readNumber(value, 0, 65535, config.Store.Port);
}

Complaint megabytes(std::string_view value, RobotConfig& config) {
    return readNumber(value, 0, Million, config.Store.Megabytes);
}

// Words between blanks or commas.
Complaint readList(std::string_view value, bool (*isOne)(std::string_view), const char* allowed,
                   std::vector<std::string>& list) {
    while (!(value = trimmed(value)).empty()) {
        const auto end = std::min(value.find_first_of(" \t,"), value.size());
        const auto one = value.substr(0, end);
        if (!isOne(one)) return quoted(one) + "; " + allowed + ", and commas between, are allowed";
        list.push_back(fromUtf8(one));
        value = trimmed(value.substr(end));
        if (!value.empty() && value[0] == ',') value.remove_prefix(1);
    }
    return std::nullopt;
}

Complaint posterStates(std::string_view value, RobotConfig& config) {
    const auto isState = [](std::string_view word) {
        return !word.empty() && word.find_first_of("[]!@:") == std::string_view::npos;
    };
    return readList(value, isState, "states without their brackets", config.PosterStates);
}

struct Key {
    std::string_view section;
    std::string_view name;
    Complaint (*read)(std::string_view value, RobotConfig& config);
    bool oftenAllowed = false;
};

using Config = RobotConfig;

constexpr std::array Keys{
    Key{"robot", "Nick", nick},
    Key{"robot", "RealName", text<&Config::RealName>},
    Key{"robot", "Password", text<&Config::Password>},
    Key{"robot", "OnLogin", onLogin, true},
    Key{"robot", "ChannelModes", channelModes},
    Key{"mail", "MailsPerUser", number<&Config::MailsPerUser, 1, Million>},
    Key{"mail", "KilobytesPerUser", number<&Config::KilobytesPerUser, 1, Million>},
    // The count of the users' programs overflows at piece 328.
    Key{"mail", "PiecesPerMail", number<&Config::PiecesPerMail, 1, 327>},
    Key{"mail", "KeepDays", number<&Config::KeepDays, 1, 36'500>},
    Key{"mail", "UsersSending", number<&Config::UsersSending, 1, Million>},
    Key{"announcements", "PosterStates", posterStates},
    Key{"pacing", "LinesPerSecond", number<&Config::LinesPerSecond, 0, Million>},
    Key{"pacing", "Burst", number<&Config::Burst, 1, Million>},
    Key{"pacing", "RequestsPerMinute", number<&Config::RequestsPerMinute, 1, Million>},
    Key{"address", "AddressHost", addressHost},
    Key{"address", "AddressPort", number<&Config::AddressPort, 0, 65535>},
    Key{"address", "AddressListen", addressListen},
    Key{"store", "Driver", driver},
    Key{"store", "Database", database},
    Key{"store", "Host", storeText<&StoreSettings::Host>},
    Key{"store", "Port", storePort},
    Key{"store", "User", storeText<&StoreSettings::User>},
    Key{"store", "Password", storeText<&StoreSettings::Password>},
    Key{"store", "Megabytes", megabytes},
};

Complaint posters(std::string_view value, CategoryRules& rules) {
    return readList(value, isBareNick, "nicks without a state", rules.Posters);
}

struct CategoryKey {
    std::string_view name;
    Complaint (*read)(std::string_view value, CategoryRules& rules);
};

constexpr std::array CategoryKeys{
    CategoryKey{"MaxHours.",
                [](std::string_view value, CategoryRules& rules) {
                    return readNumber(value, 0, 24 * 366, rules.MaxHours);
                }},
    CategoryKey{"PerDay.", [](std::string_view value,
                              CategoryRules& rules) { return readNumber(value, 0, Million, rules.PerDay); }},
    CategoryKey{"Posters.", posters},
};

constexpr std::array<std::string_view, 6> OwnSections{"robot",  "mail",    "announcements",
                                                      "pacing", "address", "store"};

std::string namesIn(std::string_view section) {
    if (section == "announcements")
        return "MaxHours.N, PerDay.N and Posters.N for N from 0 to 7, PosterStates";
    std::string names;
    for (const auto& key : Keys) {
        if (key.section == section) names += (names.empty() ? "" : ", ") + std::string(key.name);
    }
    return names;
}

class Reader {
  public:
    explicit Reader(const std::string& file) : file_(file) {
        constexpr int week = 168, month = 720;
        constexpr std::array hours{48, month, week, week, week, month, 48, 48};
        for (std::size_t i = 0; i < hours.size(); ++i) config_.Categories.at(i).MaxHours = hours.at(i);
    }

    RobotConfig read(std::string_view text) {
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
        if (text.size() > LongestConfig) fail("the file is too long; 64 KiB are allowed");
        while (!text.empty()) {
            const auto end = std::min(text.find('\n'), text.size());
            ++number_;
            line(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        config_.Network = parseNetworkProfile(network_, file_);
        return std::move(config_);
    }

  private:
    static constexpr std::size_t LongestConfig = std::size_t{64} * 1024;

    [[noreturn]] void fail(const std::string& text) const {
        throw ProfileError(file_, std::max(number_, 1), text);
    }

    // The profile's reader gets an empty line for each that is not its own, so that it counts as we do.
    void line(std::string_view whole) {
        auto text = whole;
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        text = trimmed(text);
        const bool isText = !text.empty() && text[0] != '#' && text[0] != ';';
        if (isText && text[0] == '[') {
            section(text);
        } else if (isText && !section_.empty()) {
            ownLine(text);
        }
        if (section_.empty()) network_ += whole;
        network_ += '\n';
    }

    void section(std::string_view text) {
        section_ = {};
        if (sameAscii(text, "[network]")) return;
        for (const auto name : OwnSections) {
            if (sameAscii(text, "[" + std::string(name) + "]")) section_ = name;
        }
        if (!section_.empty()) return;
        std::string allowed = "[network]";
        for (const auto name : OwnSections) allowed += ", [" + std::string(name) + "]";
        const bool garbled = std::any_of(text.begin(), text.end(), isControl);
        fail((garbled ? "this" : quoted(text)) + " is no section of this file; allowed are " + allowed);
    }

    void ownLine(std::string_view text) {
        if (std::any_of(text.begin(), text.end(), [](char c) { return isControl(c) && c != '\t'; })) {
            fail("a control character; text is allowed");
        }
        const auto equals = text.find('=');
        if (equals == std::string_view::npos) {
            fail(quoted(text) + " has no =; a key, = and a value are allowed");
        }
        const auto name = trimmed(text.substr(0, equals));
        const auto complaint = assign(name, trimmed(text.substr(equals + 1)));
        if (complaint) fail(std::string(name) + " is " + *complaint);
    }

    Complaint assign(std::string_view name, std::string_view value) {
        for (const auto& key : Keys) {
            if (key.section != section_ || !sameAscii(key.name, name)) continue;
            if (!key.oftenAllowed) once(name);
            return key.read(value, config_);
        }
        if (section_ == "announcements") return assignCategory(name, value);
        noKey(name);
    }

    Complaint assignCategory(std::string_view name, std::string_view value) {
        for (const auto& key : CategoryKeys) {
            if (!sameAscii(key.name, name.substr(0, key.name.size()))) continue;
            const auto category = name.substr(key.name.size());
            if (category.size() != 1 || category[0] < '0' || category[0] >= '0' + CategoryCount) break;
            once(name);
            return key.read(value, config_.Categories.at(static_cast<std::size_t>(category[0] - '0')));
        }
        noKey(name);
    }

    void once(std::string_view name) {
        std::string id(section_);
        id += ' ';
        appendLower(name, id);
        if (!given_.insert(id).second) fail(std::string(name) + " is given twice; once is allowed");
    }

    [[noreturn]] void noKey(std::string_view name) const {
        fail(quoted(name) + " is no key of [" + std::string(section_) + "]; allowed are " +
             namesIn(section_));
    }

    const std::string& file_;
    int number_ = 0;
    std::string_view section_;  // empty in the profile's
    std::string network_;
    std::set<std::string> given_;
    RobotConfig config_;
};

}  // namespace

RobotConfig parseRobotConfig(std::string_view text, const std::string& file) {
    return Reader(file).read(text);
}

}  // namespace talvora
