#include "orrery/CommandLine.h"

#include <algorithm>

#include "platform/CodePage1253.h"

namespace talvora {
namespace {

struct Option {
    const char* name;
    bool CommandLine::*flag;  // or
    void (*take)(CommandLine& line, const std::string& value);
};

// A word in a complaint: one line, whatever it holds.
std::string shown(std::string word) {
    std::replace_if(
        word.begin(), word.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return word;
}

void takeAnswer(CommandLine& line, const std::string& value) {
    if (value == "abort") {
        line.ReportAnswer = Answer::Abort;
    } else if (value == "ignore") {
        line.ReportAnswer = Answer::Ignore;
    } else {
        throw UsageError("--answer is abort or ignore, not \"" + shown(value) + "\"");
    }
}

// The section ends at the first "/", the key at the first "=" behind it; the value may hold both.
void takeSetting(CommandLine& line, const std::string& text) {
    const std::size_t slash = text.find('/');
    const std::size_t equals = text.find('=', slash == std::string::npos ? 0 : slash);
    if (slash == std::string::npos || slash == 0 || equals == std::string::npos || equals == slash + 1) {
        throw UsageError("--set needs SECTION/KEY=VALUE, not \"" + shown(text) + "\"");
    }
    line.Settings.push_back({fromUtf8(text.substr(0, slash)),
                             fromUtf8(text.substr(slash + 1, equals - slash - 1)),
                             fromUtf8(text.substr(equals + 1))});
}

template <std::string CommandLine::*Path>
void takePath(CommandLine& line, const std::string& value) {
    line.*Path = value;
}

constexpr Option Options[] = {
    {"--help", &CommandLine::Help, nullptr},
    {"--version", &CommandLine::Version, nullptr},
    {"--headless", &CommandLine::Headless, nullptr},
    {"--profile", nullptr, takePath<&CommandLine::Profile>},
    {"--config", nullptr, takePath<&CommandLine::Config>},
    {"--data", nullptr, takePath<&CommandLine::Data>},
    {"--gate", nullptr, takePath<&CommandLine::Gate>},
    {"--answer", nullptr, takeAnswer},
    {"--set", nullptr, takeSetting},
};

const Option& optionOf(const std::string& name) {
    for (const Option& option : Options) {
        if (name == option.name) return option;
    }
    throw UsageError(name.starts_with('-') ? "unknown option " + shown(name)
                                           : "unexpected word \"" + shown(name) + "\"");
}

}  // namespace

CommandLine CommandLine::Parse(std::span<const std::string> words) {
    CommandLine line;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
        const std::string name = word.substr(0, equals);
        const Option& option = optionOf(name);
        if (option.flag != nullptr) {
            if (equals != std::string::npos) throw UsageError(name + " takes no value");
            line.*option.flag = true;
            continue;
        }
        if (equals == std::string::npos && i + 1 == words.size()) throw UsageError(name + " needs a value");
        const std::string value = equals == std::string::npos ? words[++i] : word.substr(equals + 1);
        if (value.empty()) throw UsageError(name + " needs a value");
        option.take(line, value);
    }
    return line;
}

const char* CommandLine::HelpText() {
    return R"(Usage: orrery [OPTION...]

The host program of Talvora: loads the messenger and keeps it on line. Where
one runs already, that one shows its window.

  --headless               runs without any window
  --profile FILE           the network profile, without it network.ini in the
                           folder of the settings
  --config DIR             the folder of the settings, without it
                           $XDG_CONFIG_HOME/talvora
  --data DIR               the program's folder (mail, lists, received files),
                           without it $XDG_DATA_HOME/talvora
  --gate PATH              the local socket for other programs, without it
                           $XDG_RUNTIME_DIR/talvora/gate
  --answer abort|ignore    what answers a fault report without a screen,
                           without it abort
  --set SECTION/KEY=VALUE  saves a setting before the start; any number
  --help                   this text
  --version                the version

Other users can see the values of --set in the list of processes.

Exit status: 0 ended on request, or the one that runs already shows its window;
1 could not start, or another one runs already and shows none; 2 wrong usage,
wrong network profile, or no screen and no --headless.
)";
}

}  // namespace talvora
