#include <gtest/gtest.h>

#include <QDateTime>

#include "platform_qt/SystemClock.h"

namespace talvora::test {

TEST(SystemClock, TellsTheLocalTime) {
    const SystemClock clock;
    const QDateTime before = QDateTime::currentDateTime();
    const DateTime now = clock.Now();
    const double seconds = clock.SecondsSinceMidnight();
    const QDateTime told(QDate(now.Year, now.Month, now.Day), QTime(now.Hour, now.Minute, now.Second));
    EXPECT_LE(before.addSecs(-1), told);
    EXPECT_LE(told, QDateTime::currentDateTime());
    EXPECT_GE(seconds, 0);
    EXPECT_LT(seconds, 86'400);
    // Midnight may lie between the two readings.
    EXPECT_TRUE(seconds < 60 || told.time().msecsSinceStartOfDay() / 1000 <= seconds);
}

}  // namespace talvora::test
