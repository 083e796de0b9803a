#include "orrery/Program.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "common/Version.h"
#include "platform/CodePage1253.h"
#include "platform/RuntimeError.h"
#include "profile/NetworkProfile.h"

namespace talvora {
namespace {

int print(const std::string& text) {
    return std::fputs(text.c_str(), stdout) < 0 ? ExitStatus::CannotStart : ExitStatus::Ended;
}

}  // namespace

int complain(const std::string& text, int status) {
    std::fprintf(stderr, "orrery: %s\n", text.c_str());
    return status;
}

int runProgram(int argc, char** argv, int (*host)(const CommandLine& line, char** argv)) {
    try {
        const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
        const CommandLine line = CommandLine::Parse(words);
        if (line.Help) return print(CommandLine::HelpText());
        if (line.Version) return print("orrery " + Version::text() + "\n");
        return host(line, argv);
    } catch (const UsageError& error) {
        return complain(std::string(error.what()) + " (--help tells more)", ExitStatus::WrongUsage);
    } catch (const ProfileError& error) {
        return complain(error.what(), ExitStatus::WrongUsage);
    } catch (const RuntimeError& error) {
        return complain(toUtf8(error.Description), ExitStatus::CannotStart);
    } catch (const std::exception& error) {
        return complain(error.what(), ExitStatus::CannotStart);
    }
}

}  // namespace talvora
