#pragma once
// The robot's command line. Paths are native, as they were given.

#include <span>
#include <stdexcept>
#include <string>

namespace talvora {

// Wrong usage; the text is one line in UTF-8.
class OptionError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct Options {
    bool Help = false;
    bool Version = false;
    bool CheckConfig = false;
    std::string Config;  // empty: the first of the usual places that has one

    // `words` without the program's name. Throws OptionError.
    static Options Parse(std::span<const std::string> words);
    static const char* HelpText();
};

}  // namespace talvora
