// orrery-desktop: the host program with a face. `orrery` becomes it where there is a screen.

#include <array>
#include <cstdio>

#include "orrery/Orrery.h"
#include "orrery/Program.h"
#include "orrery/face/Face.h"
#include "orrery/face/FirstHost.h"

namespace talvora {
namespace {

int runHost(const CommandLine& line, GuardedApplication& application, StopSignals& signals) {
    Face face(application, QDBusConnection::sessionBus());
    Orrery orrery(line, QCoreApplication::applicationDirPath().toStdString(), signals, &face);
    orrery.Run();
    return ExitStatus::Ended;
}

int showFirst(const CommandLine& line, const AlreadyRunning& reason) {
    if (!showFirstHost(Folders::Choose(line).Gate)) {
        return complain(std::string(reason.what()) + " It does not answer.", ExitStatus::CannotStart);
    }
    std::puts("Orrery is already running; its window is shown.");
    std::fflush(stdout);
    return ExitStatus::Ended;
}

int host(const CommandLine& line, char** argv) {
    if (line.Headless) throw UsageError("the program with the windows does not take --headless");
    prepareEnvironment();
    StopSignals signals;
    int count = 1;  // the command line is ours alone
    std::array<char*, 2> words{argv[0], nullptr};
    GuardedApplication application(count, words.data());
    QApplication::setApplicationName(QStringLiteral("Talvora"));
    QApplication::setDesktopFileName(QStringLiteral("talvora"));
    settleLocale();
    try {
        return runHost(line, application, signals);
    } catch (const AlreadyRunning& reason) {
        return showFirst(line, reason);
    }
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    return talvora::runProgram(argc, argv, talvora::host);
}
