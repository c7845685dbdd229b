// Messages: placeholders, SuiteMessageBox and the standard error report, and the
// error log (one line per process, private, bounded).
#include "config/errorlog.h"
#include "core/cverror.h"
#include "core/translate.h"
#include "messages/addressmessages.h"
#include "messages/errorreport.h"
#include "support/errorof.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <sys/stat.h>

namespace {

TEST(TranslateTest, FillsPlaceholders)
{
    const QVariantList values{"Smith", 42, QVariant()};
    const std::pair<const char *, const char *> cases[] = {
        {"|1| and |0|, again |1|", "42 and Smith, again 42"},
        {"Data error: |2|", "Data error: ..."},
        // No closing bar: the value, then the bar and the digits as text.
        {"a|1|b|0", "a42bSmith|0"},
        // The index is the number the rest starts with; blanks inside it are skipped.
        {"|1 st|", "42"},
        {"|x|", "Smith"},
        {"|1.5|", "..."}}; // rounds half to even
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(Translate(text, values), expected) << text;
    EXPECT_EQ(Translate("|0|", {true}), "True");
    // An index outside the values is the caller's error.
    EXPECT_EQ(errorOf([&] { Translate("|3|", values); }), CvError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { Translate("|99999|", values); }), CvError::Overflow);
}

// A message's seven values, to compare at once; OK, icon 6 and flag true unless stated.
using Shown = std::tuple<QString, QString, QString, QString, qint32, int, bool>;
Shown shown(const MessageRequest &r)
{
    return {r.prompt, r.caption, r.title, r.heading, r.buttons, r.iconKind, r.flag};
}
Shown want(const QString &prompt, const QString &caption, const QString &title,
           const QString &heading, qint32 buttons = 0, int iconKind = 6, bool flag = true)
{
    return {prompt, caption, title, heading, buttons, iconKind, flag};
}

class MessagesTest : public ::testing::Test
{
protected:
    MessagesTest() : m_suite(false)
    {
        m_suite.writeIni("[START]\r\nFirm=R&D Farms\r\n");
        resetErrorLogState();
    }
    ~MessagesTest() override { resetErrorLogState(); }

    TempSuite m_suite;
    MessageRecorder m_recorder;
};

TEST_F(MessagesTest, SuiteMessageBoxPassesTheSevenValuesAndDoublesHeadingAmpersands)
{
    m_recorder.answers = {ResultYes};
    EXPECT_EQ(SuiteMessageBox("P & Q", 4, "C & D", "T & U", "Smith & Sons && Co", 9, false),
              ResultYes);
    ASSERT_EQ(m_recorder.requests.size(), 1u);
    EXPECT_EQ(shown(m_recorder.requests[0]),
              want("P & Q", "C & D", "T & U", "Smith && Sons &&&& Co", 4, 9, false));

    SuiteMessageBox("p", 0, "c", "t", QVariant(), 6, true);
    EXPECT_EQ(m_recorder.requests.at(1).heading, "");
}

TEST_F(MessagesTest, WithoutAServiceMessagesAreAnsweredCautiously)
{
    MessageService *recorder = messageService();
    setMessageService(nullptr);
    EXPECT_EQ(SuiteMessageBox("Delete?", 4, "c", "t", QVariant(), 9, true), ResultNo);
    EXPECT_EQ(SuiteMessageBox("Note", 0, "c", "t", QVariant(), 6, true), ResultOk);
    setMessageService(recorder);
}

TEST_F(MessagesTest, StandardErrorReport)
{
    showErrorReport(CvError(3024, "Database", "Could not find file 'x.mdb'."),
                    ErrorOrigin::FormLoad);
    showErrorReport(94, "Invalid use of Null", ErrorOrigin::EditPaysClick, "Error 94 BankID");
    ASSERT_EQ(m_recorder.requests.size(), 2u);
    EXPECT_EQ(shown(m_recorder.requests[0]),
              want("Description - Could not find file 'x.mdb'.(3024) was generated in "
                   "frmAddresses.Form_Load",
                   "R&D Farms Error", "An Error has Occurred", "Error 3024"));
    EXPECT_EQ(shown(m_recorder.requests[1]),
              want("Description - Invalid use of Null(94) was generated in "
                   "frmAddresses.cmdEditPays_Click.",
                   "R&D Farms Error", "An Error has Occurred", "Error 94 BankID"));
}

TEST_F(MessagesTest, LogFirstCallAppendsOneLineAndLaterCallsAreSkipped)
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

    // The caller's text becomes the line, time-stamped, written or not.
    EXPECT_TRUE(first.endsWith("\tfirst\r\n"));
    EXPECT_TRUE(second.endsWith("\tsecond\r\n"));
    EXPECT_EQ(QString::fromUtf8(m_suite.readErrorLog()), "earlier run\r\n" + first);
}

TEST_F(MessagesTest, LogFailureIsSilentAndStillUsesTheProcessTurn)
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

TEST_F(MessagesTest, ANewLogIsPrivateAndAFullOneMovesAsideWhole)
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
