#pragma once

#include "addressbook/addressbooklogic.h"
#include "addressbook/helpopener.h"
#include "addressbook/paydetailsopener.h"
#include "controls/inputboxservice.h"
#include "messages/messageservice.h"
#include "support/messagerecorder.h"
#include "support/tempsuite.h"

#include <deque>
#include <gtest/gtest.h>
#include <QStringList>
#include <QVariant>
#include <vector>

using BookMessages = MessageRecorder;

// Answers the input box with the queued texts; empty (cancel) when none is left.
class ScriptedInput : public InputBoxService
{
public:
    QString ask(const QString &prompt, const QString &title, const QString &defaultText) override;

    std::deque<QString> answers;
    QStringList prompts;
    QStringList titles;
};

class RecordingOpeners : public PayDetailsOpener, public HelpOpener
{
public:
    void openPayDetails(qint32 addressId) override { payDetails.push_back(addressId); }
    void openHelp(const QString &helpFile, const QString &topic) override
    {
        helpCalls << helpFile + u'#' + topic;
    }
    void closeHelp() override { ++helpClosed; }

    std::vector<qint32> payDetails;
    QStringList helpCalls;
    int helpClosed = 0;
};

// Real suite files in a temporary folder, the logic of one window on them.
class BookLogicTest : public ::testing::Test
{
protected:
    BookLogicTest();
    ~BookLogicTest() override;

    // Rows straight into the data files; identifiers are given, not assigned.
    void addAddress(qint32 id, const QVariant &name, bool wageFlag = false);
    void addEmployee(qint32 employeeId, qint32 addressId, const QVariant &dateFinished = {});

    // Loads and shows the window in the mode.
    void start(qint16 launchMode, qint32 currentAddressId = 0);

    QStringList listed() const;
    std::vector<qint32> listedIds() const;
    // The first column of the first row of a query on a data file; an
    // invalid value when there is none or it is Null.
    QVariant farmValue(const QString &sql) const;
    QVariant wageValue(const QString &sql) const;
    qint64 farmCount(const QString &whereClause = QString()) const;
    int indexOf(const QString &name) const;

    TempSuite suite;
    BookMessages messages;
    ScriptedInput input;
    RecordingOpeners openers;
    AddressBookLogic logic;
};
