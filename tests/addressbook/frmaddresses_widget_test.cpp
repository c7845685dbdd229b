// The address book window's wiring: keys, focus and clicks reach the logic,
// and the widgets show what the logic holds. The rules themselves are tested
// on the logic. Also grabs the window to PNG for a person to look at.
#include "addressbook/addressbooklogic.h"
#include "addressbook/helpopener.h"
#include "addressbook/ui/addressbookwindow.h"
#include "addressbook/ui/frmaddresses.h"
#include "addressbook/ui/wagestabadapter.h"
#include "controls/inputboxservice.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "launch/addressglobals.h"
#include "messages/messageservice.h"
#include "suitefiles.h"
#include "support/messagerecorder.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"
#include "support/widgets.h"

#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCursor>
#include <QDir>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

namespace {

using Logic = AddressBookLogic;

class ScriptedInputBox : public InputBoxService
{
public:
    QString ask(const QString &prompt, const QString &, const QString &) override
    {
        prompts << prompt;
        return answer;
    }
    QString answer;
    QStringList prompts;
};

class RecordingHelp : public HelpOpener
{
public:
    void openHelp(const QString &, const QString &topic) override { opened << topic; }
    void closeHelp() override {}
    QStringList opened;
};

enum Mode : qint16 { AddressBookMode = 0, EmployeeMode = 1 };

// The demo book in a fresh shared folder, with the window open on it.
class WindowTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        if (form && form->isVisible())
            form->close();
        form.reset();
        wagesHook.reset();
        logic.reset();
        AddressGlobals::reset();
    }

    void open(Mode mode, int country = 64)
    {
        SuiteFiles::demoSuite(suite.dir(), true);
        QByteArray ini = suite.readIni();
        ini.replace("Country=64", "Country=" + QByteArray::number(country));
        suite.writeIni(ini);
        AddressGlobals::reset();
        AddressGlobals::LaunchMode = mode;

        logic = std::make_unique<Logic>(AddressGlobals::context());
        logic->setInputBox(&inputBox);
        logic->setHelpOpener(&help);
        form = std::make_unique<frmAddresses>(*logic);
        // The Pay Information page shows the employee, as in the real window.
        wagesHook = std::make_unique<WagesTabAdapter>(*form->wagesTab());
        logic->setWageTab(wagesHook.get());
        logic->load();
        form->show();
        logic->activate();
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }

    template <typename T> T *child(const QString &name) const
    {
        return namedChild<T>(form.get(), name);
    }
    QLineEdit *field(int index) const
    {
        return child<QLineEdit>(QStringLiteral("txtFields_%1").arg(index));
    }
    QTabWidget *tabs() const { return child<QTabWidget>("Tab1"); }
    QComboBox *names() const { return child<QComboBox>("cmbName"); }

    static void focus(QWidget *widget) { ASSERT_TRUE(clickFocus(widget)); }
    static void key(Qt::Key k, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), k, modifiers);
    }
    static void retype(QLineEdit *edit, const QString &text)
    {
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }

    TempSuite suite{false};
    MessageRecorder messages;
    ScriptedInputBox inputBox;
    RecordingHelp help;
    std::unique_ptr<Logic> logic;
    std::unique_ptr<frmAddresses> form;
    std::unique_ptr<WagesTabAdapter> wagesHook;
};

TEST_F(WindowTest, EnterMovesOnAndCtrlEnterMakesANewLineInTheNotes)
{
    open(AddressBookMode);
    // From the name list straight to the first field, then down the column.
    focus(names());
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), field(Logic::BusName));
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), field(Logic::ContactTitle));
    EXPECT_EQ(field(Logic::BusName)->text(), logic->field(Logic::BusName));

    key(Qt::Key_Tab, Qt::ControlModifier);
    ASSERT_EQ(logic->currentTab(), logic->notesTab());
    auto *notes = child<QPlainTextEdit>("txtNotes");
    ASSERT_EQ(QApplication::focusWidget(), notes);
    QTest::keyClick(notes, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(notes, "first");
    key(Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClicks(notes, "second");
    EXPECT_TRUE(notes->toPlainText().endsWith("first\nsecond"));
    // The suite keeps CR LF between lines.
    EXPECT_TRUE(logic->notes().endsWith("first\r\nsecond")) << logic->notes().toStdString();
    key(Qt::Key_Return);
    EXPECT_NE(QApplication::focusWidget(), notes);
    EXPECT_TRUE(logic->notes().endsWith("second"));
}

TEST_F(WindowTest, CtrlTabSelectsTheNextTabAndWraps)
{
    open(EmployeeMode);
    QTabWidget *tab = tabs();
    focus(field(Logic::BusCity));
    for (int expected : {1, 2, 0, 1}) {
        key(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(logic->currentTab(), expected);
        EXPECT_EQ(tab->currentIndex(), expected);
    }
    // A click on a tab goes through the logic as well.
    QTabBar *bar = tab->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(2).center());
    EXPECT_EQ(logic->currentTab(), 2);
    EXPECT_TRUE(child<QWidget>("vseNotes")->isEnabled());
}

TEST_F(WindowTest, TypingReachesTheLogicAndIsKeptWhenTheEntryChanges)
{
    open(AddressBookMode);
    const QString first = logic->nameList().item(0).text;
    QLineEdit *city = field(Logic::BusCity);
    focus(city);
    retype(city, "Te Awamutu West");
    EXPECT_EQ(logic->field(Logic::BusCity), "Te Awamutu West");

    // Down to the next name with the keyboard, then back.
    focus(names());
    key(Qt::Key_Down);
    ASSERT_EQ(logic->nameList().listIndex(), 1);
    EXPECT_EQ(names()->currentText(), logic->nameList().item(1).text);
    EXPECT_NE(city->text(), "Te Awamutu West");
    key(Qt::Key_Up);
    ASSERT_EQ(names()->currentText(), first);
    EXPECT_EQ(city->text(), "Te Awamutu West");

    // Emptying the business name and leaving the box brings the name back.
    QLineEdit *name = field(Logic::BusName);
    focus(name);
    retype(name, "");
    key(Qt::Key_Return);
    EXPECT_EQ(name->text(), first);

    // The same when the box's focus event comes only after the keys (a window that the
    // click into the box activates).
    focus(names());
    QLineEdit *lastName = field(Logic::ContactLastName);
    lastName->setText("Hay");
    logic->editField(Logic::ContactLastName, "Hay");
    lastName->selectAll();
    QTest::keyClick(lastName, Qt::Key_Delete);
    QFocusEvent lateIn(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(lastName, &lateIn);
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(lastName, &out);
    EXPECT_EQ(logic->field(Logic::ContactLastName), "Hay");
    EXPECT_EQ(lastName->text(), "Hay");
}

TEST_F(WindowTest, NameListShowsTheLogicsNamesInOrder)
{
    for (Mode mode : {AddressBookMode, EmployeeMode}) {
        open(mode);
        const ComboList &list = logic->nameList();
        ASSERT_GT(list.count(), 1);
        ASSERT_EQ(names()->count(), list.count());
        for (int i = 0; i < list.count(); ++i) {
            EXPECT_EQ(names()->itemText(i), list.item(i).text);
            EXPECT_EQ(names()->itemData(i).toInt(), list.item(i).data);
        }
        EXPECT_EQ(names()->currentIndex(), list.listIndex());
        EXPECT_EQ(child<QComboBox>("cmbHeading")->count(), logic->headingList().count());
        TearDown();
    }
}

TEST_F(WindowTest, PayInformationTabAndEmployeeSwitchOnlyInEmployeeMode)
{
    open(AddressBookMode);
    QStringList captions;
    for (int i = 0; i < tabs()->count(); ++i)
        captions << tabs()->tabText(i);
    EXPECT_EQ(captions, QStringList({"Addresses", "Notes"}));
    EXPECT_FALSE(child<QCheckBox>("chk_employee")->isVisible());
    EXPECT_TRUE(child<QWidget>("AlphaListFilter")->isEnabled());
    EXPECT_TRUE(child<QPushButton>("cmdEditPays")->isVisible());
    TearDown();

    open(EmployeeMode);
    captions.clear();
    for (int i = 0; i < tabs()->count(); ++i)
        captions << tabs()->tabText(i);
    EXPECT_EQ(captions, QStringList({"Addresses", "Pay Information", "Notes"}));
    EXPECT_TRUE(child<QCheckBox>("chk_employee")->isVisible());
    EXPECT_FALSE(child<QWidget>("AlphaListFilter")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("cmdEditPays")->isVisible());

    // The switch's caption clicks the switch.
    auto *sw = child<QCheckBox>("chk_employee");
    const bool before = sw->isChecked();
    QTest::mouseClick(child<QLabel>("lbl_chk_employee"), Qt::LeftButton);
    EXPECT_EQ(logic->employeeSwitchChecked(), !before);
    EXPECT_EQ(sw->isChecked(), !before);
    EXPECT_EQ(sw->toolTip(), logic->employeeSwitchToolTip());
}

struct BankCase
{
    int country;
    QString group;
    bool hyphen;
    bool suffix;
    int branchMax;
};

TEST_F(WindowTest, BankBoxesFollowTheCountry)
{
    const BankCase cases[] = {
        {64, "Bank", false, true, 4},
        {61, "BSB", true, false, 3},
        {27, "Bank", true, true, 6},
    };
    for (const BankCase &c : cases) {
        SCOPED_TRACE(c.country);
        open(AddressBookMode, c.country);
        EXPECT_EQ(child<QGroupBox>("fraBank")->title(), c.group);
        EXPECT_EQ(child<QLabel>("lblHyphen")->isVisible(), c.hyphen);
        EXPECT_EQ(field(Logic::BusBankAcSuffix)->isVisible(), c.suffix);
        EXPECT_EQ(field(Logic::BusBankAcBranch)->maxLength(), c.branchMax);
        EXPECT_EQ(field(Logic::BusBankAcBank)->maxLength(), 3);
        EXPECT_EQ(field(Logic::BusBankAcNo)->maxLength(), 9);
        if (c.country == 61) {
            EXPECT_EQ(field(Logic::BusBankAcBranch)->width(), field(Logic::BusBankAcBank)->width());
        }
        TearDown();
    }
}

TEST_F(WindowTest, AddAsksForTheNameAndShowsTheNewEntry)
{
    open(AddressBookMode);
    inputBox.answer = "  Zephyr Contracting  ";
    QTest::mouseClick(child<QPushButton>("cmdAdd"), Qt::LeftButton);
    ASSERT_EQ(inputBox.prompts.size(), 1);
    EXPECT_EQ(names()->currentText(), "Zephyr Contracting");
    EXPECT_EQ(field(Logic::BusName)->text(), "Zephyr Contracting");
    EXPECT_EQ(names()->count(), logic->nameList().count());
    EXPECT_TRUE(messages.requests.empty());
}

TEST_F(WindowTest, F1OpensHelpAndTheHourglassFollowsTheLogic)
{
    open(AddressBookMode);
    focus(field(Logic::BusPhone));
    key(Qt::Key_F1);
    EXPECT_EQ(help.opened, QStringList({logic->helpTopic()}));

    emit logic->busyChanged(true);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    emit logic->busyChanged(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

// The adapter the start-up code sees: a modal show returns when the window
// is closed, and what was typed is saved on the way out.
TEST(AddressBookWindowTest, ModalShowReturnsWhenClosedAndSaves)
{
    TempSuite suite(false);
    SuiteFiles::demoSuite(suite.dir(), true);
    MessageRecorder messages;
    AddressGlobals::reset();

    AddressBookWindow window;
    int closedSignals = 0;
    QObject::connect(&window, &AddressWindow::closed, [&] { ++closedSignals; });
    qint32 shownId = 0;
    QTimer::singleShot(0, [&] {
        ASSERT_TRUE(window.isOpen());
        frmAddresses *form = window.form();
        shownId = form->logic().shownAddressId();
        auto *city =
            form->findChild<QLineEdit *>(QStringLiteral("txtFields_%1").arg(Logic::BusCity));
        city->setFocus();
        city->selectAll();
        QTest::keyClicks(city, "Ohaupo");
        QTest::mouseClick(form->findChild<QPushButton *>("cmdClose"), Qt::LeftButton);
    });
    window.showModal();

    EXPECT_FALSE(window.isOpen());
    EXPECT_FALSE(window.isLoaded());
    EXPECT_EQ(closedSignals, 1);
    ASSERT_NE(shownId, 0);
    EXPECT_EQ(AddressGlobals::CurrentAddressID, shownId);

    // Shown again, the window loads afresh and reads the saved city back.
    window.showModeless();
    ASSERT_TRUE(window.isLoaded());
    auto *city =
        window.form()->findChild<QLineEdit *>(QStringLiteral("txtFields_%1").arg(Logic::BusCity));
    EXPECT_EQ(window.form()->logic().shownAddressId(), shownId);
    EXPECT_EQ(city->text(), "Ohaupo");
    window.form()->close();
    EXPECT_EQ(closedSignals, 2);
    AddressGlobals::reset();
}

// The employee window's Pay Information page is the pay details editor: a rate
// typed there is saved to the employee's row when the user picks another name.
TEST(AddressBookWindowTest, PayInformationPageSavesWhenTheEntryChanges)
{
    TempSuite suite(false);
    SuiteFiles::demoSuite(suite.dir(), true);
    MessageRecorder messages;
    AddressGlobals::reset();
    AddressGlobals::LaunchMode = 1;

    AddressBookWindow window;
    window.showModeless();
    frmAddresses *form = window.form();
    ASSERT_NE(form, nullptr);
    Logic &logic = form->logic();
    form->findChild<QTabWidget *>("Tab1")->setCurrentIndex(logic.payTab());
    ASSERT_EQ(logic.currentTab(), logic.payTab());
    const qint32 employee = logic.shownAddressId();

    auto *rate = namedChild<QLineEdit>(form, "Text2_2");
    ASSERT_TRUE(clickFocus(rate));
    rate->selectAll();
    QTest::keyClicks(rate, "41.25");
    QTest::keyClick(rate, Qt::Key_Tab);
    logic.chooseName(1);
    ASSERT_NE(logic.shownAddressId(), employee);

    Database wage(suite.wagePath());
    Recordset row(
        wage,
        QStringLiteral("Select Distinctrow * from Employees where AddressID = %1").arg(employee));
    ASSERT_FALSE(row.eof());
    EXPECT_EQ(row.value("PayRate").value<Money>(), Money::fromScaled(412500));
    form->close();
    AddressGlobals::reset();
}

// In the address book, Edit Pay Details opens the pay dialog for an employee's entry;
// its change log shows on the Notes tab afterwards.
TEST(AddressBookWindowTest, EditPayDetailsOpensThePayDialogForEmployees)
{
    TempSuite suite(false);
    SuiteFiles::demoSuite(suite.dir(), true);
    MessageRecorder messages;
    AddressGlobals::reset();

    AddressBookWindow window;
    window.showModeless();
    frmAddresses *form = window.form();
    ASSERT_NE(form, nullptr);
    Logic &logic = form->logic();
    auto *names = form->findChild<QComboBox *>("cmbName");
    auto *editPays = form->findChild<QPushButton *>("cmdEditPays");
    logic.chooseName(names->findText("Tāmaki Vets"));
    EXPECT_FALSE(editPays->isEnabled());
    // Ticking "Show in Wagebook" makes it an employee at once; clearing it again.
    auto *wageFlag = form->findChild<QCheckBox *>("Check2");
    QTest::mouseClick(wageFlag, Qt::LeftButton, {}, QPoint(8, wageFlag->height() / 2));
    EXPECT_TRUE(editPays->isEnabled());
    QTest::mouseClick(wageFlag, Qt::LeftButton, {}, QPoint(8, wageFlag->height() / 2));
    EXPECT_FALSE(editPays->isEnabled());
    logic.chooseName(names->findText("Wiremu Ngata"));
    ASSERT_TRUE(editPays->isEnabled());
    const qint32 employee = logic.shownAddressId();

    QString caption;
    QTimer::singleShot(0, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        caption = dialog->windowTitle();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
        auto *rate = namedChild<QLineEdit>(dialog, "TxtWage_2");
        ASSERT_TRUE(clickFocus(rate));
        rate->selectAll();
        QTest::keyClicks(rate, "33.5");
        dialog->close();
    });
    QTest::mouseClick(editPays, Qt::LeftButton);
    EXPECT_EQ(caption, "Employee Pay Information");

    Database wage(suite.wagePath());
    Recordset row(
        wage, QStringLiteral("SELECT PayRate FROM Employees WHERE AddressID = %1").arg(employee));
    ASSERT_FALSE(row.eof());
    EXPECT_EQ(row.value(0).value<Money>(), Money::fromScaled(335000));
    logic.nextTab();
    EXPECT_TRUE(form->findChild<QPlainTextEdit *>("txtNotes")
                    ->toPlainText()
                    .endsWith(QStringLiteral("Pay rate amended to $33.50 Hour")));
    form->close();
    EXPECT_TRUE(messages.requests.empty()) << messages.titles().join('\n').toStdString();
    AddressGlobals::reset();
}

// Pictures of the window for a person to look at.
class WindowScreenshots : public WindowTest
{
protected:
    void grab(const QString &name)
    {
        const QString folder = QDir::currentPath() + "/screenshots";
        QDir().mkpath(folder);
        QApplication::processEvents();
        const QString path = folder + '/' + name;
        ASSERT_TRUE(form->grab().save(path)) << path.toStdString();
        std::cout << "screenshot: " << path.toStdString() << std::endl;
    }
};

TEST_F(WindowScreenshots, AddressBookAndEmployees)
{
    open(AddressBookMode);
    grab("frmaddresses_addressbook.png");
    // An entry whose notes run to several lines.
    logic->chooseName(names()->findText("Kaimai Grazing Trust"));
    logic->nextTab();
    grab("frmaddresses_addressbook_notes.png");
    TearDown();

    open(EmployeeMode);
    grab("frmaddresses_employees.png");
    logic->nextTab();
    grab("frmaddresses_employees_pay.png");
}

TEST_F(WindowScreenshots, BankLayouts)
{
    for (int country : {64, 61, 27}) {
        open(AddressBookMode, country);
        grab(QStringLiteral("frmaddresses_bank_%1.png").arg(country));
        TearDown();
    }
}

} // namespace
