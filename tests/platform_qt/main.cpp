// The tests of the real platform need an application object for Qt's loop and plug-ins.

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
