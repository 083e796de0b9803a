#include <gtest/gtest.h>

#include <QDateTime>

#include "platform_qt/SystemClock.h"

namespace talvora::test {

TEST(SystemClock, TellsTheLocalTime) {
    const QDateTime before = QDateTime::currentDateTime();
    const DateTime now = SystemClock().Now();
    const QDateTime told(QDate(now.Year, now.Month, now.Day), QTime(now.Hour, now.Minute, now.Second));
    EXPECT_LE(before.addSecs(-1), told);
    EXPECT_LE(told, QDateTime::currentDateTime());
}

}  // namespace talvora::test
