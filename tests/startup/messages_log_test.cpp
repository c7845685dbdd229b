// The error log: one line per process, private, bounded; none at all for a suite
// cvsuite made.
#include "config/errorlog.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <sys/stat.h>

namespace {

class LogErrorTest : public ::testing::Test
{
protected:
    LogErrorTest() : m_suite(false) { resetErrorLogState(); }
    ~LogErrorTest() override { resetErrorLogState(); }

    TempSuite m_suite;
};

TEST_F(LogErrorTest, FirstCallAppendsOneLineAndLaterCallsAreSkipped)
{
    {
        QFile log(m_suite.errorLogPath());
        ASSERT_TRUE(log.open(QIODevice::WriteOnly));
        log.write("earlier run\r\n");
    }
    QString first = "first";
    QString second = "second";
    LogError(first);
    LogError(second);

    // en_NZ: short date with a four-digit year, then the time with seconds.
    static const QRegularExpression line(
        R"(^\d{1,2}/\d{2}/\d{4} \d{1,2}:\d{2}:\d{2} [ap]\.?m\.?\tfirst\r\n$)",
        QRegularExpression::CaseInsensitiveOption);
    EXPECT_TRUE(line.match(first).hasMatch()) << first.toStdString();
    // The caller's text becomes the line, written or not.
    EXPECT_TRUE(second.endsWith("\tsecond\r\n"));
    EXPECT_EQ(QString::fromUtf8(m_suite.readErrorLog()), "earlier run\r\n" + first);
}

TEST_F(LogErrorTest, FailureIsSilentAndStillUsesTheProcessTurn)
{
    QDir(m_suite.commonDir()).removeRecursively();
    QString text = "lost";
    LogError(text);
    EXPECT_TRUE(text.endsWith("\tlost\r\n"));

    QDir().mkpath(m_suite.commonDir());
    QString later = "later";
    LogError(later);
    EXPECT_TRUE(m_suite.readErrorLog().isEmpty());
}

TEST_F(LogErrorTest, ANewLogIsPrivateAndAFullOneMovesAsideWhole)
{
    QString text = "names a person";
    LogError(text);
    struct stat st;
    ASSERT_EQ(stat(QFile::encodeName(m_suite.errorLogPath()).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);

    const QString old = m_suite.errorLogPath() + ".old";
    for (const qint64 size : {kErrorLogLimit - 1, kErrorLogLimit}) {
        const QByteArray earlier(size, 'x');
        QFile log(m_suite.errorLogPath());
        ASSERT_TRUE(log.open(QIODevice::WriteOnly | QIODevice::Truncate));
        log.write(earlier);
        log.close();
        QFile::remove(old);
        resetErrorLogState();
        text = "next";
        LogError(text);
        const bool moved = size >= kErrorLogLimit;
        EXPECT_EQ(m_suite.readErrorLog(), moved ? text.toUtf8() : earlier + text.toUtf8()) << size;
        EXPECT_EQ(QFileInfo(old).size(), moved ? size : 0) << size;
    }
}

} // namespace
