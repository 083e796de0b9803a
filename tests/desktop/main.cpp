// The tests of the views need an application object; without a screen they draw into memory.

#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
