#pragma once
// Lets the loop run until something has come.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace talvora::test {

template <class Come>
void until(Come come) {
    QTimer wake;  // so that a test that waits in vain ends
    wake.start(1000);
    const QDeadlineTimer deadline(20'000);
    while (!come() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_TRUE(come());
}

}  // namespace talvora::test
