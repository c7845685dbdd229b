// The address book window's wiring: keys, focus and clicks reach the logic, and the
// widgets show what the logic holds. The rules themselves are tested on the logic.
#include "addressbook/addressbooklogic.h"
#include "addressbook/ui/addressbookwindow.h"
#include "addressbook/ui/frmaddresses.h"
#include "addressbook/ui/wagestabadapter.h"
#include "bookdoubles.h"
#include "launch/addressglobals.h"
#include "paydetails/paydetailseditor.h"
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
#include <QCheckBox>
#include <QComboBox>
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

// The demo book in a fresh shared folder, with the window open on it.
class WindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SuiteFiles::demoSuite(suite.dir(), true);
        ini = suite.readIni();
    }
    void TearDown() override
    {
        if (form && form->isVisible())
            form->close();
        form.reset();
        wagesHook.reset();
        logic.reset();
        AddressGlobals::reset();
    }

    void open(qint16 mode, int country = 64)
    {
        suite.writeIni(
            QByteArray(ini).replace("Country=64", "Country=" + QByteArray::number(country)));
        AddressGlobals::reset();
        AddressGlobals::LaunchMode = mode;
        logic = std::make_unique<Logic>(AddressGlobals::context());
        logic->setInputBox(&doubles);
        logic->setHelpOpener(&doubles);
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
    QByteArray ini;
    MessageRecorder messages;
    BookDoubles doubles;
    std::unique_ptr<Logic> logic;
    std::unique_ptr<frmAddresses> form;
    std::unique_ptr<WagesTabAdapter> wagesHook;
};

TEST_F(WindowTest, KeysMoveThroughTheWindowAndNotesKeepTheirLines)
{
    open(0);
    // From the name list straight to the first field, then down the column.
    focus(names());
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), field(Logic::BusName));
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), field(Logic::ContactTitle));

    auto *tabs = child<QTabWidget>("Tab1");
    for (int expected : {1, 0, 1}) { // Ctrl+Tab wraps
        key(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(logic->currentTab(), expected);
        EXPECT_EQ(tabs->currentIndex(), expected);
    }
    ASSERT_EQ(logic->currentTab(), logic->notesTab());
    auto *notes = child<QPlainTextEdit>("txtNotes");
    ASSERT_EQ(QApplication::focusWidget(), notes);
    QTest::keyClick(notes, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(notes, "first");
    key(Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClicks(notes, "second");
    // The suite keeps CR LF between lines.
    EXPECT_TRUE(logic->notes().endsWith("first\r\nsecond")) << logic->notes().toStdString();
    // A click on a tab goes through the logic as well.
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(0).center());
    EXPECT_EQ(logic->currentTab(), 0);
}

TEST_F(WindowTest, SearchBoxTakesCtrlFNarrowsAsTypedDownEntersTheListEscClears)
{
    open(0);
    const int all = names()->count();
    auto *box = child<QLineEdit>("txtSearch");
    focus(field(Logic::BusCity));
    key(Qt::Key_F, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), box);
    QTest::keyClicks(box, "te awa");
    EXPECT_EQ(logic->searchText(), "te awa");
    ASSERT_GT(names()->count(), 0);
    EXPECT_LT(names()->count(), all);
    EXPECT_EQ(field(Logic::BusCity)->text(), "Te Awamutu");
    key(Qt::Key_Down); // into the open list of what was found
    QWidget *popup = QApplication::focusWidget();
    while (popup && popup != names())
        popup = popup->parentWidget();
    EXPECT_EQ(popup, names());
    key(Qt::Key_Escape);    // closes the list
    form->activateWindow(); // the list was a window of its own
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    focus(box);
    key(Qt::Key_Escape);
    EXPECT_EQ(box->text(), "");
    EXPECT_EQ(names()->count(), all);
    EXPECT_EQ(field(Logic::BusCity)->text(), "Te Awamutu"); // the entry found stays
}

TEST_F(WindowTest, TypingReachesTheLogicAndIsKeptWhenTheEntryChanges)
{
    open(0);
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

    // Leaving a box shows what the logic made of it, also when the box's focus event
    // comes only after the keys (a window that the click into the box activates).
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

// What the logic decides for the mode and the country is what the window shows.
TEST_F(WindowTest, WidgetsShowTheLogicsStateInEachModeAndCountry)
{
    for (const auto &[mode, country] : {std::pair{0, 61}, {1, 27}}) {
        SCOPED_TRACE(mode);
        open(qint16(mode), country);
        const ComboList &list = logic->nameList();
        ASSERT_EQ(names()->count(), list.count());
        for (int i = 0; i < list.count(); ++i) {
            EXPECT_EQ(names()->itemText(i), list.item(i).text);
            EXPECT_EQ(names()->itemData(i).toInt(), list.item(i).data);
        }
        EXPECT_EQ(names()->currentIndex(), list.listIndex());
        EXPECT_EQ(child<QCheckBox>("chk_employee")->isVisible(), logic->employeeSwitchVisible());
        EXPECT_EQ(child<QPushButton>("cmdEditPays")->isVisible(), mode == 0);
        const auto &bank = logic->bankLayout();
        EXPECT_EQ(child<QGroupBox>("fraBank")->title(), bank.groupCaption);
        EXPECT_EQ(field(Logic::BusBankAcSuffix)->isVisible(), bank.suffixVisible);
        EXPECT_EQ(field(Logic::BusBankAcBranch)->maxLength(),
                  logic->maxLength(Logic::BusBankAcBranch));
        TearDown();
    }
}

TEST_F(WindowTest, ClicksAndKeysReachTheCommands)
{
    open(1);
    // The employee switch's caption clicks the switch.
    auto *sw = child<QCheckBox>("chk_employee");
    const bool before = sw->isChecked();
    QTest::mouseClick(child<QLabel>("lbl_chk_employee"), Qt::LeftButton);
    EXPECT_EQ(logic->employeeSwitchChecked(), !before);
    EXPECT_EQ(sw->isChecked(), !before);

    doubles.answers = {"  Zephyr Contracting  "};
    QTest::mouseClick(child<QPushButton>("cmdAdd"), Qt::LeftButton);
    EXPECT_EQ(names()->currentText(), "Zephyr Contracting");
    EXPECT_EQ(field(Logic::BusName)->text(), "Zephyr Contracting");
    EXPECT_TRUE(messages.requests.empty());
}

// The window as the start-up code shows it, on the demo book; nothing goes wrong.
class AddressBookWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SuiteFiles::demoSuite(suite.dir(), true);
        AddressGlobals::reset();
    }
    void TearDown() override
    {
        EXPECT_EQ(messages.titles(), QStringList());
        AddressGlobals::reset();
    }
    TempSuite suite{false};
    MessageRecorder messages;
};

// A modal show returns when the window is closed, by its Close button or its close box,
// and what is still being typed is saved.
TEST_F(AddressBookWindowTest, EveryWayOfClosingSavesWhatIsBeingTyped)
{
    const std::pair<const char *, std::function<void(frmAddresses *)>> closes[] = {
        {"Close", [](frmAddresses *f) { f->findChild<QPushButton *>("cmdClose")->click(); }},
        {"close box", [](frmAddresses *f) { f->close(); }}};
    for (const auto &[how, close] : closes) {
        SCOPED_TRACE(how);
        AddressGlobals::reset();
        AddressBookWindow window;
        int closedSignals = 0;
        QObject::connect(&window, &AddressWindow::closed, [&] { ++closedSignals; });
        const QString typed = QStringLiteral("Ohaupo %1").arg(how);
        qint32 shownId = 0;
        QTimer::singleShot(0, [&, close = close] {
            frmAddresses *form = window.form();
            shownId = form->logic().shownAddressId();
            auto *city =
                namedChild<QLineEdit>(form, QStringLiteral("txtFields_%1").arg(Logic::BusCity));
            city->setFocus();
            city->selectAll();
            QTest::keyClicks(city, typed);
            close(form);
        });
        window.showModal();
        EXPECT_FALSE(window.isOpen());
        EXPECT_FALSE(window.isLoaded());
        EXPECT_EQ(closedSignals, 1);
        ASSERT_NE(shownId, 0);
        EXPECT_EQ(AddressGlobals::CurrentAddressID, shownId);
        EXPECT_EQ(
            suite.farmValue(
                QStringLiteral("SELECT BusCity FROM Addresses WHERE AddressID = %1").arg(shownId)),
            typed);
    }
}

// Leaving the bank boxes with a wrong account asks once; No gives the box the focus back
// with the text intact, and a tax number the logic puts in its normal form is shown.
TEST_F(WindowTest, WrongIdentifierWarnsOnLeavingAndGoesBackToTheBox)
{
    open(0);
    const std::pair<int, const char *> bank[] = {{Logic::BusBankAcBank, "01"},
                                                 {Logic::BusBankAcBranch, "0242"},
                                                 {Logic::BusBankAcNo, "0100195"},
                                                 {Logic::BusBankAcSuffix, "00"}};
    focus(field(Logic::BusBankAcBank));
    for (const auto &[box, text] : bank) {
        ASSERT_EQ(QApplication::focusWidget(), field(box));
        retype(field(box), text);
        key(Qt::Key_Tab);
    }
    ASSERT_EQ(messages.requests.size(), 1u) << "asked on leaving the group, not within it";
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return QApplication::focusWidget() == field(Logic::BusBankAcSuffix); }));
    EXPECT_EQ(field(Logic::BusBankAcBranch)->text(), "0242");

    focus(field(Logic::TaxNumber));
    retype(field(Logic::TaxNumber), "49091850");
    key(Qt::Key_Tab);
    EXPECT_EQ(field(Logic::TaxNumber)->text(), "049-091-850");
    EXPECT_EQ(messages.requests.size(), 1u) << "the account as it was is not asked about again";
}

// The employee window's Pay Information page is the pay details editor: a rate typed
// there asks why, and is saved to the employee's row with its log line when the user picks
// another name.
TEST_F(AddressBookWindowTest, PayDetailsOnTheEmployeePageAreSaved)
{
    AddressGlobals::LaunchMode = 1;
    {
        AddressBookWindow window;
        window.showModeless();
        frmAddresses *form = window.form();
        Logic &logic = form->logic();
        form->findChild<QTabWidget *>("Tab1")->setCurrentIndex(logic.payTab());
        ASSERT_EQ(logic.currentTab(), logic.payTab());
        const qint32 employee = logic.shownAddressId();
        BookDoubles doubles;
        doubles.answers = {"annual review"};
        form->wagesTab()->editor().setInputBox(&doubles);
        auto *rate = namedChild<QLineEdit>(form, "Text2_2");
        ASSERT_TRUE(clickFocus(rate));
        rate->selectAll();
        QTest::keyClicks(rate, "41.25");
        QTest::keyClick(rate, Qt::Key_Tab);
        logic.chooseName(1);
        ASSERT_NE(logic.shownAddressId(), employee);
        // Stored in ten-thousandths of a dollar.
        EXPECT_EQ(
            suite.wageValue(
                QStringLiteral("SELECT PayRate FROM Employees WHERE AddressID = %1").arg(employee)),
            412500);
        EXPECT_EQ(doubles.prompts.size(), 1);
        const QString notes =
            suite
                .farmValue(QStringLiteral("SELECT notes FROM Addresses WHERE AddressID = %1")
                               .arg(employee))
                .toString();
        EXPECT_TRUE(notes.contains("amended to $41.25") && notes.endsWith(": annual review)"))
            << notes.toStdString();
        form->close();
    }
}

} // namespace
