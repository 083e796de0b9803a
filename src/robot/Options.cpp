#include "robot/Options.h"

#include <algorithm>

namespace talvora {
namespace {

// A word in a complaint: one line, whatever it holds.
std::string shown(std::string word) {
    std::replace_if(
        word.begin(), word.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return "\"" + word + "\"";
}

bool Options::*flagOf(const std::string& word) {
    if (word == "--help") return &Options::Help;
    if (word == "--version") return &Options::Version;
    if (word == "--check-config") return &Options::CheckConfig;
    return nullptr;
}

}  // namespace

Options Options::Parse(std::span<const std::string> words) {
    constexpr const char* withValue = "--config=";
    Options options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (bool Options::*const flag = flagOf(word)) {
            options.*flag = true;
            continue;
        }
        const bool joined = word.starts_with(withValue);
        if (!joined && word != "--config") throw OptionError("unexpected " + shown(word));
        if (joined) {
            options.Config = word.substr(std::string_view(withValue).size());
        } else if (++i < words.size()) {
            options.Config = words[i];
        }
        if (options.Config.empty()) throw OptionError("--config needs a file");
    }
    return options;
}

const char* Options::HelpText() {
    return R"(Usage: orreryserv [OPTION...]

The robot of a Talvora network: keeps mail and announcements for users who are
not on line, and tells users their own address.

  --config FILE   the configuration, without it the first that is there of
                  $XDG_CONFIG_HOME/talvora/orreryserv.ini and
                  /etc/talvora/orreryserv.ini
  --check-config  reads the configuration, says what it means, and ends
  --help          this text
  --version       the version

Exit status: 0 ended on request; 1 could not start; 2 wrong usage or wrong
configuration.
)";
}

}  // namespace talvora
