// orrery: the host program.

#include <langinfo.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "host/common/Version.h"
#include "orrery/Orrery.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

constexpr int Ended = 0;
constexpr int CannotStart = 1;
constexpr int WrongUsage = 2;

int complain(const std::string& text, int status) {
    std::fprintf(stderr, "orrery: %s\n", text.c_str());
    return status;
}

void prepareEnvironment() {
    QtPlatform::prepareProcess();
    ::umask(077);
    // A loop of its own starts quicker and is smaller than the desktop's.
    ::setenv("QT_NO_GLIB", "1", 1);
    // The toolkit complains about any other encoding of the locale, and then uses this one all the same.
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) ::setenv("LC_ALL", "C.UTF-8", 1);
}

int host(const CommandLine& line, char* program) {
    prepareEnvironment();
    StopSignals signals;
    int count = 1;  // the command line is ours alone
    char* words[] = {program, nullptr};
    QCoreApplication application(count, words);
    std::setlocale(LC_NUMERIC, "C");
    try {
        Orrery orrery(line, QCoreApplication::applicationDirPath().toStdString(), signals);
        orrery.Run();
        return Ended;
    } catch (const ProfileError& error) {
        return complain(error.what(), WrongUsage);
    } catch (const RuntimeError& error) {
        return complain(toUtf8(error.Description), CannotStart);
    }
}

int run(int argc, char** argv) {
    const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    const CommandLine line = CommandLine::Parse(words);
    if (line.Help) return std::fputs(CommandLine::HelpText(), stdout) < 0 ? CannotStart : Ended;
    if (line.Version) return std::printf("orrery %s\n", Version::text().c_str()) < 0 ? CannotStart : Ended;
    if (!line.Headless)
        return complain("windows are not part of this build; start it with --headless", WrongUsage);
    return host(line, argv[0]);
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    try {
        return talvora::run(argc, argv);
    } catch (const talvora::UsageError& error) {
        return talvora::complain(std::string(error.what()) + " (--help tells more)", talvora::WrongUsage);
    } catch (const std::exception& error) {
        return talvora::complain(error.what(), talvora::CannotStart);
    }
}
