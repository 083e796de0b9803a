// orrery-desktop: the host program with a face. `orrery` becomes it where there is a screen.

#include <QMessageBox>
#include <array>
#include <cstdio>

#include "desktop/QtText.h"
#include "orrery/Environment.h"
#include "orrery/Orrery.h"
#include "orrery/Program.h"
#include "orrery/face/Face.h"
#include "orrery/face/FirstHost.h"
#include "platform/RuntimeError.h"

namespace talvora {
namespace {

int runHost(const CommandLine& line, GuardedApplication& application, StopSignals& signals) {
    Face face(application, QDBusConnection::sessionBus());
    Orrery orrery(line, QCoreApplication::applicationDirPath().toStdString(), signals, &face);
    orrery.Run();
    return ExitStatus::Ended;
}

int runOrShowFirst(const CommandLine& line, GuardedApplication& application, StopSignals& signals) {
    try {
        return runHost(line, application, signals);
    } catch (const AlreadyRunning& first) {
        if (first.Headless) {
            return complain("Orrery is already running without windows.", ExitStatus::CannotStart);
        }
    }
    if (showFirstHost(Folders::Choose(line).Gate)) {
        std::puts("Orrery is already running; its window is shown.");
        std::fflush(stdout);
        return ExitStatus::Ended;
    }
    // The first one may have ended just now.
    try {
        return runHost(line, application, signals);
    } catch (const AlreadyRunning& first) {
        return complain(std::string(first.what()) + " It does not answer.", ExitStatus::CannotStart);
    }
}

// Who starts the program from a menu reads no terminal.
void showFailure(const std::exception& error, StopSignals& signals) {
    const auto* const fault = dynamic_cast<const RuntimeError*>(&error);
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Talvora cannot start"),
                    fault != nullptr ? toQString(fault->Description) : QString::fromUtf8(error.what()));
    box.setTextFormat(Qt::PlainText);
    signals.listen([] { QCoreApplication::exit(); });
    box.exec();
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
        return runOrShowFirst(line, application, signals);
    } catch (const std::exception& error) {
        showFailure(error, signals);
        throw;
    }
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    return talvora::runProgram(argc, argv, talvora::host);
}
