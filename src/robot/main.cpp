// orreryserv: the network's robot.

#include <langinfo.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "common/Version.h"
#include "platform/CodePage1253.h"
#include "platform_qt/QtPlatform.h"
#include "platform_qt/StopSignals.h"
#include "robot/ConfigFile.h"
#include "robot/Options.h"
#include "robot/Service.h"

namespace talvora {
namespace {

constexpr int Ended = 0;
constexpr int CannotStart = 1;
constexpr int WrongUsage = 2;

int complain(const std::string& text, int status) {
    std::fprintf(stderr, "orreryserv: %s\n", text.c_str());
    return status;
}

int print(const std::string& text) {
    return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? CannotStart : Ended;
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

int serve(const RobotConfig& config, char* program) {
    StopSignals signals;
    int count = 1;  // the command line is ours alone
    char* words[] = {program, nullptr};
    QCoreApplication application(count, words);
    std::setlocale(LC_NUMERIC, "C");
    Service(config, signals).Run();
    return Ended;
}

int run(int argc, char** argv) {
    const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Options options = Options::Parse(words);
    if (options.Help) return print(Options::HelpText());
    if (options.Version) return print("orreryserv " + Version::text() + "\n");
    prepareEnvironment();
    const std::string file = ChooseConfigFile(options.Config);
    const RobotConfig config = ReadConfigFile(file);
    if (options.CheckConfig) return print(file + ": all is well\n" + DescribeConfig(config));
    return serve(config, argv[0]);
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    using namespace talvora;
    try {
        return run(argc, argv);
    } catch (const OptionError& error) {
        return complain(std::string(error.what()) + " (--help tells more)", WrongUsage);
    } catch (const ProfileError& error) {
        return complain(error.what(), WrongUsage);
    } catch (const RuntimeError& error) {
        return complain(toUtf8(error.Description), CannotStart);
    } catch (const std::exception& error) {
        return complain(error.what(), CannotStart);
    }
}
