#include "orrery/Environment.h"

#include <langinfo.h>
#include <sys/stat.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

#include "platform_qt/QtPlatform.h"

namespace talvora {

void prepareEnvironment() {
    QtPlatform::prepareProcess();
    ::umask(077);
    // A loop of its own starts quicker and is smaller than the desktop's.
    ::setenv("QT_NO_GLIB", "1", 1);
    // The toolkit complains about any other encoding of the locale, and then uses this one all the same.
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) ::setenv("LC_ALL", "C.UTF-8", 1);
}

void settleLocale() {
    std::setlocale(LC_NUMERIC, "C");
}

}  // namespace talvora
