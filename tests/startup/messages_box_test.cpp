// SuiteMessageBox, the standard error report and the ready-made messages.
#include "core/cverror.h"
#include "messages/addressmessages.h"
#include "messages/errorreport.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>

namespace {

// What a message should look like; OK, icon 6 and flag true unless stated.
struct Expected
{
    QString prompt;
    QString caption;
    QString title;
    QString heading;
    qint32 buttons = 0;
    int iconKind = 6;
    bool flag = true;
};

void expectRequest(const MessageRequest &got, const Expected &want)
{
    EXPECT_EQ(got.prompt, want.prompt);
    EXPECT_EQ(got.caption, want.caption) << want.prompt.toStdString();
    EXPECT_EQ(got.title, want.title) << want.prompt.toStdString();
    EXPECT_EQ(got.heading, want.heading) << want.prompt.toStdString();
    EXPECT_EQ(got.buttons, want.buttons) << want.prompt.toStdString();
    EXPECT_EQ(got.iconKind, want.iconKind) << want.prompt.toStdString();
    EXPECT_EQ(got.flag, want.flag) << want.prompt.toStdString();
}

class MessagesTest : public ::testing::Test
{
protected:
    MessagesTest() : m_suite(false) { m_suite.writeIni("[START]\r\nFirm=R&D Farms\r\n"); }

    TempSuite m_suite;
    MessageRecorder m_recorder;
};

TEST_F(MessagesTest, SuiteMessageBoxPassesTheSevenValuesAndDoublesHeadingAmpersands)
{
    m_recorder.answers = {ResultYes};
    EXPECT_EQ(SuiteMessageBox("P & Q", 4, "C & D", "T & U", "Smith & Sons && Co", 9, false),
              ResultYes);
    ASSERT_EQ(m_recorder.requests.size(), 1u);
    const MessageRequest &r = m_recorder.requests[0];
    expectRequest(r, {"P & Q", "C & D", "T & U", "Smith && Sons &&&& Co", 4, 9, false});

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
    expectRequest(m_recorder.requests[0],
                  {"Description - Could not find file 'x.mdb'.(3024) was generated in "
                   "frmAddresses.Form_Load",
                   "R&D Farms Error", "An Error has Occurred", "Error 3024"});
    expectRequest(m_recorder.requests[1],
                  {"Description - Invalid use of Null(94) was generated in "
                   "frmAddresses.cmdEditPays_Click.",
                   "R&D Farms Error", "An Error has Occurred", "Error 94 BankID"});
}

TEST_F(MessagesTest, ReadyMadeMessages)
{
    msgSelectionRequired();
    msgSelectionRequiredPayDetails();
    msgNoNameEntered();
    msgWagesExist("O'Neil & Co");
    msgCashbookDataExists("Brown");
    msgWagesAndCashbookExist("Green");
    msgDataError(QVariant());

    const QString firm = "R&D Farms";
    const Expected expected[] = {
        {"Please Select Record From The Selection Box !", firm, "Selection Required", ""},
        {"Select Record From The List", "", "Selection Required", ""},
        {"Enter the Company/Employee name for the New Entry", firm, "No Name Entered!", ""},
        {"Need to delete wages for O'Neil & Co first", firm, "Cannot Delete Employee",
         "Wages Exist"},
        {"Need to delete Cashbook entries for Brown first", firm, "Cannot Delete Employee",
         "Cashbook Data Exists"},
        {"Need to delete Cashbook and Wagebook entries for Green first", firm,
         "Cannot Delete Employee", "Wages/Cashbook Data Exists"},
        {"Data error: ...", firm, "An Error has Occurred", ""},
    };
    ASSERT_EQ(m_recorder.requests.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i)
        expectRequest(m_recorder.requests[i], expected[i]);
}

TEST_F(MessagesTest, ConfirmDeletionIsTrueOnlyForYes)
{
    m_recorder.answers = {ResultYes, ResultNo, ResultOk};
    EXPECT_TRUE(msgConfirmDeletion("Smith"));
    EXPECT_FALSE(msgConfirmDeletion("Smith"));
    EXPECT_FALSE(msgConfirmDeletion("Smith"));
    expectRequest(m_recorder.requests.at(0), {"Are you sure you want to delete Smith", "R&D Farms",
                                              "Confirm Deletion?", "", 4, 9});
}

} // namespace
