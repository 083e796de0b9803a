// orrery-headless: the host program without a screen. `orrery` becomes it where it is told to.

#include <QCoreApplication>
#include <array>

#include "orrery/Environment.h"
#include "orrery/Orrery.h"
#include "orrery/Program.h"

namespace talvora {
namespace {

int host(const CommandLine& line, char** argv) {
    if (!line.Headless) throw UsageError("the program without windows takes --headless");
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
