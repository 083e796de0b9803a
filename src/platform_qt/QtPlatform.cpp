#include "platform_qt/QtPlatform.h"

#include <fcntl.h>

#include <csignal>

namespace talvora {

QtPlatform::QtPlatform(Files& files, SettingsStore& settings, Answer onFault)
    : questions_(std::make_unique<HeadlessQuestions>(loop_, onFault)), platform_{loop_,   network_,
                                                                                 clock_,  *questions_,
                                                                                 files,   settings,
                                                                                 desktop_} {
    prepareProcess();
    loop_.setGuard(platform_.Guarded);
}

QtPlatform::QtPlatform(Files& files, SettingsStore& settings, Questions& questions, Desktop& desktop)
    : platform_{loop_, network_, clock_, questions, files, settings, desktop} {
    prepareProcess();
    loop_.setGuard(platform_.Guarded);
}

void QtPlatform::prepareProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // `open` takes the lowest free number, so each missing stream gets its own place.
    int number = 0;
    do {
        number = ::open("/dev/null", O_RDWR);
    } while (number >= 0 && number <= 2);
    if (number > 2) ::close(number);
}

}  // namespace talvora
