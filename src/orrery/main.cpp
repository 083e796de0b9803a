// orrery: the host program. Without a screen it is the host itself; with one it becomes `orrery-desktop`, so
// that a host without a screen loads nothing of the toolkit's windows.

#include <unistd.h>

#include <QCoreApplication>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "orrery/Orrery.h"
#include "orrery/Program.h"

namespace talvora {
namespace {

bool given(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

std::string desktopProgram() {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path() / "orrery-desktop";
}

int becomeDesktop(char** argv) {
    if (!given("DISPLAY") && !given("WAYLAND_DISPLAY") && !given("QT_QPA_PLATFORM")) {
        return complain(
            "there is no screen here to show windows on (neither DISPLAY nor WAYLAND_DISPLAY is set); "
            "--headless runs without one",
            ExitStatus::WrongUsage);
    }
    const std::string program = desktopProgram();
    ::execv(program.c_str(), argv);
    const int reason = errno;
    return complain("the program with the windows, " + program +
                        ", cannot be started: " + std::generic_category().message(reason),
                    ExitStatus::CannotStart);
}

int host(const CommandLine& line, char** argv) {
    if (!line.Headless) return becomeDesktop(argv);
    prepareEnvironment();
    StopSignals signals;
    int count = 1;  // the command line is ours alone
    std::array<char*, 2> words{argv[0], nullptr};
    QCoreApplication application(count, words.data());
    settleLocale();
    Orrery orrery(line, QCoreApplication::applicationDirPath().toStdString(), signals);
    orrery.Run();
    return ExitStatus::Ended;
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    return talvora::runProgram(argc, argv, talvora::host);
}
