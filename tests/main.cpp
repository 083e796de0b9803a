// Every test program begins here. Where there are views there is the program's own kind of application
// object, and without a screen they draw into memory; what else uses the toolkit needs an object of its loop.

#include <gtest/gtest.h>

#include "simulation/Failure.h"

#if defined(QT_WIDGETS_LIB)
#include <QStyleFactory>

#include "desktop/GuardedApplication.h"
#elif defined(QT_NO_KEYWORDS)
#include <QtCore/QCoreApplication>
#endif

int main(int argc, char** argv) {
#if defined(QT_WIDGETS_LIB)
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const talvora::GuardedApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
#elif defined(QT_NO_KEYWORDS)
    const QCoreApplication application(argc, argv);
#endif
    testing::InitGoogleTest(&argc, argv);
    talvora::test::OnFailure([](const std::string& what) { ADD_FAILURE() << what; });
    return RUN_ALL_TESTS();
}
