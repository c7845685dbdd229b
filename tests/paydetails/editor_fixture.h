#pragma once

#include "controls/inputboxservice.h"
#include "core/clock.h"
#include "data/database.h"
#include "data/recordset.h"
#include "paydetails/paydetailseditor.h"
#include "paydetails/paylists.h"
#include "support/messagerecorder.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <memory>
#include <QStringList>
#include <QVariant>

// Answers the editor's questions for a reason with the queued texts, then as Cancel does.
struct ReasonAnswers : InputBoxService
{
    explicit ReasonAnswers(QStringList queued = {}) : answers(std::move(queued)) {}
    QString ask(const QString &prompt, const QString &, const QString &) override
    {
        prompts << prompt;
        return answers.isEmpty() ? QString() : answers.takeFirst();
    }
    QStringList answers, prompts;
};

// Small books for the pay details editor: entry 37 is an employee (row 5,
// KiwiSaver member), entry 38 has no employee row yet.
class EditorBooks : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setToday(QDate(2024, 5, 20));
        resetDefaultBanks();
        suite.execFarm(
            "INSERT INTO Addresses (AddressID, BusName) VALUES (37, 'Hemi Walker'), (38, 'New "
            "Hand');"
            "INSERT INTO Banks (BanksID, Name, AccountType) VALUES (1, 'Cheque Account', 0),"
            " (2, 'Farm Savings', 0), (995, 'ANZ Direct Credit', 1), (996, 'BNZ Direct', 1);"
            "INSERT INTO PayeInfo (WageAccount) VALUES (401001);"
            "INSERT INTO \"Account Codes\" VALUES (401, 'Wages', -1), (402, 'Hidden', 0);"
            "INSERT INTO \"Secondary Codes\" VALUES (401001, 401, 'Wages - permanent'),"
            " (401002, 401, 'Wages - casual'), (402001, 402, 'Not shown');"
            "INSERT INTO \"tbl No Enterprises\" VALUES (1, 'Dairy'), (2, 'Sheep')");
        suite.execWage(
            "INSERT INTO EmployeeAwardType VALUES (1, 'Farm hand', 'Hour'), (2, 'Shearer', "
            "'Head'), (3, 'Relief milker', NULL);"
            "INSERT INTO TaxTypes VALUES (1, 'Main', 1, 64), (2, 'Secondary', 2, 64);"
            "INSERT INTO PayInterval VALUES (1, 'Weekly', 7, 52.14, 1), (2, 'Fortnightly', 14, "
            "26.07, 2);"
            "INSERT INTO KiwiSaverEnrollType VALUES (1, 'Opted in', -1), (2, 'Member too', 5),"
            " (6, 'Not enrolled', 0);"
            "INSERT INTO DeductNames (DeductNameID, DeductionName, TaxName, CountryPhone, "
            "Percentage) VALUES (1, 'KiwiSaver 3%', 'KiwiSaver', 64, 3), (2, 'KiwiSaver 4%', "
            "'KiwiSaver', 64, 4), (7, 'Union fees', NULL, 0, 0);"
            "INSERT INTO ContributionNames (ContributionNameID, ContributionName, TaxName, "
            "CountryPhone, Percentage) VALUES (1, '<Please Select>', 'KiwiSaver', 0, 0),"
            " (2, 'Employer 3%', 'KiwiSaver', 64, 3);"
            // PayRate $25.00, hired 1/04/2010 (40269), start 1/07/2012 (41091).
            "INSERT INTO Employees (EmployeeID, AddressID, EmployeeTypeID, TaxTypeID, "
            "PayIntervalID, BankID, HeadingID, EnterpriseID, PayRate, Datehired, "
            "KiwiSaverEnrolled, KiwiSaverEnrolID, KiwiSaverStartDate, KiwiSaverEmployerRateID) "
            "VALUES (5, 37, 2, 1, 2, 2, 777, 2, 250000, 40269, -1, 1, 41091, 2);"
            "INSERT INTO EmployeeDeductions (EmployeeID, DeductID, FixedAmount, SpecialRate, "
            "TaxName) VALUES (5, 1, 0, 3, 'KiwiSaver'), (5, 7, 50000, 0, NULL);"
            "INSERT INTO EmployerContributions (EmployeeID, ContributionID, FixedAmount, "
            "SpecialRate, TaxName) VALUES (5, 2, 0, 3, 'KiwiSaver')");
        // Changes are signed with the INI's name, not the login of whoever runs the tests.
        suite.writeIni(suite.readIni().replace("UserName=\r\n", "UserName=Mere\r\n"));
        // The editor's connection, as the windows open it; wage reads what was stored.
        farm = suite.openBooks();
        wage = suite.openBooks();
    }

    // Picks the list's item of that text; types into a field and leaves it, as a user does.
    static void choose(PayDetailsEditor &editor, int list, const QString &text)
    {
        const ComboList &items = editor.list(list);
        int i = items.count() - 1;
        while (i >= 0 && items.item(i).text != text)
            --i;
        editor.listChosen(list, i);
    }
    static bool type(PayDetailsEditor &editor, int field, const QString &text)
    {
        editor.textFocusIn(field);
        editor.textEdited(field, text);
        return editor.textFocusOut(field);
    }

    QVariant stored(qint32 addressId, const QString &column)
    {
        Recordset rs(*wage,
                     "SELECT * FROM Employees WHERE AddressID = " + QString::number(addressId));
        return rs.eof() ? QVariant() : rs.value(column);
    }

    qint64 count(const QString &sql)
    {
        Recordset rs(*wage, sql, Recordset::Snapshot);
        return rs.value(0).toLongLong();
    }

    TempSuite suite;
    MessageRecorder messages;
    std::unique_ptr<Database> farm;
    std::unique_ptr<Database> wage;
};
