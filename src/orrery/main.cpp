// orrery: the host program as its users call it. It becomes `orrery-headless` or, where there is a screen,
// `orrery-desktop`: so neither waits for libraries that only the other one needs.

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "orrery/Program.h"

namespace talvora {
namespace {

bool given(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

int become(const char* name, char** argv) {
    std::error_code ignored;
    const std::string program = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path() / name;
    ::execv(program.c_str(), argv);
    const int reason = errno;
    return complain(program + " cannot be started: " + std::generic_category().message(reason),
                    ExitStatus::CannotStart);
}

int host(const CommandLine& line, char** argv) {
    if (line.Headless) return become("orrery-headless", argv);
    if (!given("DISPLAY") && !given("WAYLAND_DISPLAY") && !given("QT_QPA_PLATFORM")) {
        return complain(
            "there is no screen here to show windows on (neither DISPLAY nor WAYLAND_DISPLAY is set); "
            "--headless runs without one",
            ExitStatus::WrongUsage);
    }
    return become("orrery-desktop", argv);
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    return talvora::runProgram(argc, argv, talvora::host);
}
