#pragma once
// The command line of the host program. Paths are native, as they were given; texts for the settings store
// are in code page 1253.

#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Questions.h"

namespace talvora {

// Wrong usage; the text is one line in UTF-8.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct CommandLine {
    struct Setting {
        std::string Section;
        std::string Key;
        std::string Value;
        bool operator==(const Setting&) const = default;
    };

    bool Help = false;
    bool Version = false;
    bool Headless = false;
    // Empty: the default of its kind.
    std::string Profile;
    std::string Config;
    std::string Data;
    std::string Gate;
    // What a fault report is answered with where there is no screen.
    Answer ReportAnswer = Answer::Abort;
    std::vector<Setting> Settings;  // saved before the start, in this order

    // `words` without the program's name. Throws UsageError.
    static CommandLine Parse(std::span<const std::string> words);
    static const char* HelpText();
};

}  // namespace talvora
