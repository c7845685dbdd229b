// The pay details dialog's wiring: picks, keys, closing and the deductions
// grid reach the editor, and the widgets show what it holds. The rules are
// tested on the editor.
#include "data/money.h"
#include "data/serialdate.h"
#include "messages/messageservice.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"
#include "paydetails/ui/frmpaydetails.h"
#include "suitefiles.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"
#include "support/widgets.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace {

using Editor = PayDetailsEditor;

class PayDialogTest : public ::testing::Test
{
protected:
    void SetUp() override { SuiteFiles::demoSuite(suite.dir(), true); }
    void TearDown() override
    {
        if (dialog && dialog->isVisible())
            dialog->close();
        dialog.reset();
        EXPECT_TRUE(messages.requests.empty()) << messages.titles().join('\n').toStdString();
    }

    // The wage file's answer for the entry's employee; %1 is the entry.
    QVariant employeeValue(const QString &sql, qint32 id) const
    {
        return suite.wageValue(sql.arg(id));
    }
    qint32 addressOf(const QString &name) const
    {
        return suite.farmValue("SELECT AddressID FROM Addresses WHERE BusName = '" + name + "'")
            .toInt();
    }

    void open(qint32 addressId)
    {
        dialog = std::make_unique<frmPaydetails>(addressId);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    template <typename T> T *child(const QString &name) const
    {
        return namedChild<T>(dialog.get(), name);
    }
    QLineEdit *text(int field) const
    {
        return child<QLineEdit>(QStringLiteral("TxtWage_%1").arg(field));
    }
    static void focus(QWidget *widget) { ASSERT_TRUE(clickFocus(widget)); }

    TempSuite suite{false};
    MessageRecorder messages;
    std::unique_ptr<frmPaydetails> dialog;
};

TEST_F(PayDialogTest, APickedDateIsWrittenIntoItsFieldAndLoggedWhenLeft)
{
    const qint32 id = addressOf("Mereana Hōhaia");
    open(id);
    auto *picker = child<QDateEdit>("CvDatePicker_HireDate");
    const QDate expected = picker->date().addDays(7);
    QTest::mouseClick(picker, Qt::LeftButton, {},
                      QPoint(picker->width() - 6, picker->height() / 2));
    QCalendarWidget *calendar = picker->calendarWidget();
    ASSERT_TRUE(QTest::qWaitFor([calendar] { return calendar->isVisible(); }));
    QWidget *days = calendar->focusWidget() ? calendar->focusWidget() : calendar;
    QTest::keyClick(days, Qt::Key_Down);
    QTest::keyClick(days, Qt::Key_Return);
    EXPECT_EQ(dialog->editor().text(Editor::Datehired), SerialDate::toShortText(expected));
    EXPECT_EQ(text(Editor::Datehired)->text(), SerialDate::toShortText(expected));

    // The box has the focus now; leaving it logs the hiring.
    // The offscreen platform leaves the pop-up's window active; a desktop gives the
    // dialog back its activation.
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return text(Editor::Datehired)->hasFocus(); }));
    focus(text(Editor::TaxCode));
    const QString notes = dialog->editor().pendingLog().join("\r\n"); // for the save
    EXPECT_TRUE(notes.contains("] Hired on " + SerialDate::toShortText(expected) + " (by "))
        << notes.toStdString();
}

// Every way of closing takes what is still being typed: an amount in a grid cell not
// yet entered, and a list changed with the keyboard (logged, though the list never
// loses the focus). A cell that cannot hold its text keeps the dialog open.
TEST_F(PayDialogTest, EveryWayOfClosingTakesThePendingEdit)
{
    const qint32 id = addressOf("Wiremu Ngata");
    const QString where = " WHERE AddressID = " + QString::number(id);
    const QString amount = "SELECT d.FixedAmount FROM EmployeeDeductions d JOIN Employees e ON "
                           "d.EmployeeID = e.EmployeeID WHERE d.TaxName IS NULL AND "
                           "e.AddressID = %1 ORDER BY d.rowid LIMIT 1";
    const std::function<void(QDialog *)> closes[] = {
        [](QDialog *d) { namedChild<QPushButton>(d, "cmdOK")->click(); },
        [](QDialog *d) { d->close(); }, // the close box, Alt+F4
        [](QDialog *d) { QTest::keyClick(d, Qt::Key_Escape); }};
    int round = 0;
    for (const auto &close : closes) {
        ++round;
        open(id);
        auto *grid = child<QTableView>("tgrdDeductions");
        focus(grid);
        grid->setCurrentIndex(grid->model()->index(0, DeductionGrid::FixedAmountColumn));
        QTest::keyClick(grid, Qt::Key_F2);
        auto *cell = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        ASSERT_NE(cell, nullptr);
        cell->selectAll();
        QTest::keyClicks(cell, "abc");
        close(dialog.get());
        ASSERT_TRUE(dialog->isVisible()) << "round " << round;
        ASSERT_EQ(messages.titles(), QStringList{"Check the Fixed Amount"});
        messages.requests.clear();
        ASSERT_TRUE(QTest::qWaitFor([&] { return cell->hasFocus(); }));
        EXPECT_EQ(cell->text(), "abc");
        cell->selectAll();
        QTest::keyClicks(cell, QString::number(10 + round) + ".50");

        auto *interval = child<QComboBox>("cmbWage_2");
        focus(interval);
        QTest::keyClick(interval, interval->currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
        const QString chosen = interval->currentText();
        close(dialog.get());
        EXPECT_FALSE(dialog->isVisible()) << "round " << round;
        EXPECT_EQ(employeeValue(amount, id).toLongLong(),
                  Money::parse(QString::number(10 + round) + ".50")->scaled());
        const QString notes = suite.farmValue("SELECT notes FROM Addresses" + where).toString();
        EXPECT_TRUE(notes.contains("] Pay interval changed to " + chosen + " (by "))
            << notes.toStdString();
        dialog.reset();
    }
}

TEST_F(PayDialogTest, DeleteOnTheGridRemovesTheDeductionButNotWhileEditing)
{
    const qint32 id = addressOf("Wiremu Ngata");
    open(id);
    auto *grid = child<QTableView>("tgrdDeductions");
    const int rows = dialog->editor().deductionGrid().rowCount();
    ASSERT_GE(rows, 1);
    focus(grid);
    grid->setCurrentIndex(grid->model()->index(0, DeductionGrid::FixedAmountColumn));
    QTest::keyClick(grid, Qt::Key_F2); // editing the amount: Delete edits the text
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_EQ(dialog->editor().deductionGrid().rowCount(), rows);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([grid] { return grid->hasFocus(); }));

    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(dialog->editor().deductionGrid().rowCount(), rows - 1);
    EXPECT_EQ(grid->model()->rowCount(), rows); // the add-new row stays
    grid->setCurrentIndex(grid->model()->index(rows - 1, DeductionGrid::DeductIdColumn));
    QTest::keyClick(grid, Qt::Key_Delete); // the add-new row: nothing to delete
    EXPECT_EQ(dialog->editor().deductionGrid().rowCount(), rows - 1);

    dialog->close();
    EXPECT_EQ(employeeValue("SELECT COUNT(*) FROM EmployeeDeductions d JOIN Employees e ON "
                            "d.EmployeeID = e.EmployeeID WHERE d.TaxName IS NULL AND "
                            "e.AddressID = %1",
                            id)
                  .toInt(),
              rows - 1);
}

} // namespace
