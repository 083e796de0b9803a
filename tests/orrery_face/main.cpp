// The face needs an application object; without a screen it draws into memory.

#include <gtest/gtest.h>

#include "desktop/GuardedApplication.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const talvora::GuardedApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
