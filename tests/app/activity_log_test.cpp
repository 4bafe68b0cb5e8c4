#include "app/activity_log.h"
#include "platform/runtime_error.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace
{
class Log : public testing::Test
{
protected:
    PrivateHome home;
    QDateTime now = QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7));
    ActivityLog log{[this] {
        const QDateTime told = now;
        now = now.addSecs(1);
        return told;
    }};

    QByteArray content(const QString &name) const
    {
        QFile file(home.file("data/Ostrix/" + name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
};

TEST_F(Log, ABatchIsTheTimeTheEntriesAndALineEnd)
{
    QDir().mkpath(home.file("data/Ostrix"));
    log.write_batch("\r\nann@example.org\r\nbob@example.org");
    EXPECT_EQ(content("log.log"), "2026-03-04 05:06:07\r\nann@example.org\r\nbob@example.org\r\n");
    // The time is read anew for the second file.
    EXPECT_EQ(content("system.log"),
              "2026-03-04 05:06:08\r\nann@example.org\r\nbob@example.org\r\n");
}

TEST_F(Log, TheFirstFileHoldsEveryBatchTheSecondTheLast)
{
    QDir().mkpath(home.file("data/Ostrix"));
    log.write_batch("\r\na");
    log.write_batch("");
    EXPECT_EQ(content("log.log"), "2026-03-04 05:06:07\r\na\r\n2026-03-04 05:06:09\r\n");
    EXPECT_EQ(content("system.log"), "2026-03-04 05:06:10\r\n");
}

TEST_F(Log, WithoutTheFolderWritingFails)
{
    EXPECT_THROW(log.write_batch("\r\na"), RuntimeError);
}
} // namespace
