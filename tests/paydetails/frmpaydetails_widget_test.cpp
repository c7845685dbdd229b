// The pay details dialog's wiring: picks, keys, closing and the deductions
// grid reach the editor, and the widgets show what it holds. The rules are
// tested on the editor.
#include "data/database.h"
#include "data/money.h"
#include "data/serialdate.h"
#include "messages/messageservice.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/paydetailseditor.h"
#include "paydetails/ui/frmpaydetails.h"
#include "paydetails/ui/wagestab.h"
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
#include <QFocusEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTabWidget>
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
    EXPECT_TRUE(notes.endsWith("] Hired on " + SerialDate::toShortText(expected)))
        << notes.toStdString();
}

// Enter moves on; a box stops at its column's size (a longer text would be refused by the
// save, silently); the close box takes what is typed.
TEST_F(PayDialogTest, EnterMovesOnBoxesStopAtTheirColumnsSizeAndTheCloseBoxSaves)
{
    const qint32 id = addressOf("Mereana Hōhaia");
    open(id);
    focus(text(Editor::TaxCode));
    QTest::keyClicks(text(Editor::TaxCode), "ME SL+SLCIR");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), text(Editor::IRDnumber));
    QTest::keyClicks(text(Editor::IRDnumber), "123-456-789"); // not left: the close takes it
    dialog->close();
    const QString where = " FROM Employees WHERE AddressID = %1";
    EXPECT_EQ(employeeValue("SELECT TaxCode" + where, id).toString(), "ME SL+SLCI");
    EXPECT_EQ(employeeValue("SELECT IRDnumber" + where, id).toString(), "123-456-789");
}

// The list that has the focus when the dialog opens is entered then: leaving it
// unchanged logs nothing, and neither does a trip to another window and back.
TEST_F(PayDialogTest, OpeningAndLookingAroundLogsNothing)
{
    const qint32 id = addressOf("Wiremu Ngata");
    const QString notes = "SELECT notes FROM Addresses WHERE AddressID = " + QString::number(id);
    const QString before = suite.farmValue(notes).toString();
    open(id);
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "cmbWage_0");

    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));

    focus(text(Editor::TaxCode));
    focus(child<QComboBox>("cmbWage_2"));
    focus(text(Editor::PayRate));
    dialog->close();
    EXPECT_EQ(suite.farmValue(notes).toString(), before);
}

// A window activated by the click that makes a choice gets its focus event after the
// choice: the change is still logged, once.
TEST_F(PayDialogTest, AChoiceBeforeTheLateFocusEventIsLogged)
{
    const qint32 id = addressOf("Wiremu Ngata");
    open(id);
    focus(text(Editor::TaxCode));
    auto *taxType = child<QComboBox>("cmbWage_1");
    const int other = taxType->currentIndex() == 0 ? 1 : 0;
    const QString chosen = taxType->itemText(other);
    taxType->setCurrentIndex(other);
    emit taxType->activated(other);
    QFocusEvent lateIn(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(taxType, &lateIn);
    QFocusEvent out(QEvent::FocusOut, Qt::MouseFocusReason);
    QApplication::sendEvent(taxType, &out);

    const QString notes = dialog->editor().pendingLog().join("\r\n");
    EXPECT_EQ(notes.count("Tax type changed to"), 1);
    EXPECT_TRUE(notes.endsWith("] Tax type changed to " + chosen)) << notes.toStdString();
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
        EXPECT_TRUE(notes.endsWith("] Pay interval changed to " + chosen)) << notes.toStdString();
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

TEST_F(PayDialogTest, TheDeductionDropDownWritesTheDeductionsId)
{
    open(addressOf("Mereana Hōhaia"));
    auto *grid = child<QTableView>("tgrdDeductions");
    const DeductionGrid &rows = dialog->editor().deductionGrid();
    ASSERT_GE(rows.rowCount(), 1);
    const QModelIndex cell = grid->model()->index(0, DeductionGrid::DeductIdColumn);
    const QPoint at = grid->visualRect(cell).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
    auto *combo = grid->findChild<QComboBox *>("gridCombo");
    ASSERT_NE(combo, nullptr);
    const int next = combo->currentIndex() + 1 < combo->count() ? combo->currentIndex() + 1 : 0;
    const QVariant id = combo->itemData(next);
    QTest::keyClick(combo, next == 0 ? Qt::Key_Home : Qt::Key_Down);
    EXPECT_EQ(rows.value(0, DeductionGrid::DeductIdColumn).toLongLong(), id.toLongLong());

    // A deduction chosen in the empty last row adds a row.
    ASSERT_TRUE(QTest::qWaitFor([grid] { return !grid->findChild<QComboBox *>("gridCombo"); }));
    const int before = rows.rowCount();
    const QPoint last =
        grid->visualRect(grid->model()->index(before, DeductionGrid::DeductIdColumn)).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, last);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, last);
    combo = grid->findChild<QComboBox *>("gridCombo");
    ASSERT_NE(combo, nullptr);
    QTest::keyClick(combo, Qt::Key_End);
    ASSERT_EQ(rows.rowCount(), before + 1);
    EXPECT_EQ(rows.value(before, DeductionGrid::DeductIdColumn).toLongLong(),
              combo->itemData(combo->count() - 1).toLongLong());
    EXPECT_EQ(grid->model()->rowCount(), before + 2);
}

// The address window's page shares the panel: the enrolment type, picked with the keys,
// shows and hides the rates with the ESCT tick.
TEST_F(PayDialogTest, WagesTabWiring)
{
    Database farm(suite.farmPath());
    farm.attach(suite.wagePath(), "wage");
    WagesTab tab;
    tab.loadWageTab(farm, addressOf("Aroha Tāwhiri"));
    tab.show();
    tab.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&tab));
    auto *esct = tab.findChild<QWidget *>("chkIncudeESCT");
    auto *employeeRate = tab.findChild<QComboBox *>("cmbWage_7");
    ASSERT_TRUE(esct && employeeRate);
    tab.findChild<QTabWidget *>("tabWages")->setCurrentIndex(1);
    EXPECT_TRUE(esct->isVisible());
    EXPECT_TRUE(employeeRate->isVisible());

    auto *enrolment = namedChild<QComboBox>(&tab, "cmbWage_6");
    ASSERT_TRUE(clickFocus(enrolment));
    // Arrow keys, not typing: a space would open the drop-down.
    const int optedOut = enrolment->findText("Opted out");
    ASSERT_GE(optedOut, 0);
    while (enrolment->currentIndex() != optedOut)
        QTest::keyClick(enrolment,
                        enrolment->currentIndex() < optedOut ? Qt::Key_Down : Qt::Key_Up);
    ASSERT_EQ(enrolment->currentText(), "Opted out");
    EXPECT_FALSE(esct->isVisible());
    EXPECT_FALSE(employeeRate->isVisible());
    EXPECT_FALSE(tab.editor().kiwiSaverEnrolled());
}

} // namespace
