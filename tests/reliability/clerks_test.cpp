// Clerks on several PCs: processes saving the same and different employees' pay details
// at once, on the data files or on the test server.
#include "../paydetails/editor_fixture.h"
#include "data/money.h"

#include <QProcess>
#include <QRegularExpression>

namespace {

using Editor = PayDetailsEditor;

struct Clerk
{
    qint32 address;
    int field;
    QStringList saved; // the values this clerk was told were saved, in order
    int asked = 0;     // times asked whose value stands
    int told = 0;      // failures reported (then retried)
};

class PayClerks : public EditorBooks
{
};

} // namespace

// Three clerks change three different fields of one employee, two clerks the same field of
// another. No saved value is lost unseen: each field holds the last value its clerk saved,
// or, where two change the same field, one of theirs after they were asked; and the change
// log has a line for every pay rate stored, none for one that was not.
TEST_F(PayClerks, ClerksSavingTheSameEmployeesAtOnceLoseNothingUnseen)
{
    const int seconds = qEnvironmentVariableIsSet("CV_CLERK_SECONDS")
                            ? qEnvironmentVariableIntValue("CV_CLERK_SECONDS")
                            : 6;
    suite.execWage("INSERT INTO Employees (EmployeeID, AddressID) VALUES (9, 38)");
    std::vector<Clerk> clerks{{37, Editor::TaxCode, {}},
                              {37, Editor::IRDnumber, {}},
                              {37, Editor::PayRate, {}},
                              {38, Editor::TaxCode, {}},
                              {38, Editor::TaxCode, {}}};
    std::vector<std::unique_ptr<QProcess>> running;
    for (std::size_t i = 0; i < clerks.size(); ++i) {
        QProcess &p = *running.emplace_back(std::make_unique<QProcess>());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("CV_ANSWERS", "retry*");
        p.setProcessEnvironment(env);
        p.start(RELIABILITY_CHILD,
                {"clerk", QString::number(clerks[i].address), QString::number(clerks[i].field),
                 QString::number(i + 1), QString::number(seconds)});
    }
    for (std::size_t i = 0; i < clerks.size(); ++i) {
        QProcess &p = *running[i];
        ASSERT_TRUE(p.waitForFinished((seconds + 60) * 1000));
        const QString err = QString::fromUtf8(p.readAllStandardError());
        EXPECT_EQ(p.exitCode(), 0) << qPrintable(err.right(2000));
        for (const QString &line : QString::fromUtf8(p.readAllStandardOutput()).split(u'\n')) {
            const QStringList words = line.split(u' ');
            if (words[0] == u"SAVED" && words.size() == 3)
                clerks[i].saved << words[2];
            clerks[i].asked += words[0] == u"ASKED";
            clerks[i].told += words[0] == u"TOLD";
        }
        EXPECT_FALSE(clerks[i].saved.isEmpty()) << "clerk " << i + 1 << " saved nothing";
    }
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(clerks[std::size_t(i)].asked, 0) << "different fields never ask";

    const auto stored = [&](qint32 address, const char *column) {
        return suite.wageValue(
            QString("SELECT %1 FROM Employees WHERE AddressID = %2").arg(column).arg(address));
    };
    EXPECT_EQ(stored(37, "TaxCode").toString(), clerks[0].saved.last());
    EXPECT_EQ(stored(37, "IRDnumber").toString(), clerks[1].saved.last());
    EXPECT_EQ(stored(37, "PayRate").toLongLong(), clerks[2].saved.last().toLongLong() * 10000);
    const QString shared = stored(38, "TaxCode").toString();
    EXPECT_TRUE(shared == clerks[3].saved.last() || shared == clerks[4].saved.last())
        << qPrintable(shared);

    const QString notes =
        suite.farmValue("SELECT notes FROM Addresses WHERE AddressID = 37").toString();
    EXPECT_EQ(notes.count(QStringLiteral("Pay rate amended to")), clerks[2].saved.size());
    EXPECT_EQ(suite
                  .wageValue("SELECT COUNT(*) FROM EmployeeDeductions WHERE EmployeeID = 5 AND "
                             "TaxName = 'KiwiSaver'")
                  .toLongLong(),
              1)
        << "one KiwiSaver row, however many saves replaced it";

    int saves = 0, asked = 0, told = 0;
    for (const Clerk &c : clerks)
        saves += int(c.saved.size()), asked += c.asked, told += c.told;
    // A save of an employee another save holds waits its turn instead of failing.
    EXPECT_LE(told, saves / 20) << "saves refused for a race, of " << saves;
    RecordProperty("figures", qPrintable(QString("%1 clerks for %2 s: saves %3, asked whose value "
                                                 "stands %4, locks told and retried %5")
                                             .arg(clerks.size())
                                             .arg(seconds)
                                             .arg(saves)
                                             .arg(asked)
                                             .arg(told)));
    std::printf("%d clerks for %d s: saves %d, asked %d, told %d\n", int(clerks.size()), seconds,
                saves, asked, told);
}
