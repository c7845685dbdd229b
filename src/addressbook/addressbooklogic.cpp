#include "addressbook/addressbooklogic.h"

#include "addressbook/helpopener.h"
#include "addressbook/paydetailsopener.h"
#include "addressbook/wagetabhook.h"
#include "controls/filldaovbcombo.h"
#include "controls/inputboxservice.h"
#include "core/cverror.h"
#include "data/database.h"
#include "data/jetsql.h"
#include "data/recordset.h"
#include "paydetails/employeedefaults.h"
#include "paydetails/paylists.h"
#include "launch/addressglobals.h"
#include "messages/addressmessages.h"
#include "messages/errorreport.h"
#include "messages/savechanges.h"
#include "config/settings.h"
#include "config/suiteconfig.h"
#include "config/suitedatabase.h"

#include <QGuiApplication>
#include <QHash>

namespace {

const char *const kColumns[AddressBookLogic::FieldCount] = {
    "BusName",         "ContactTitle", "ContactInitials", "contactFirstName", "ContactLastName",
    "BusAddress1",     "BusAddress2",  "BusAddress3",     "BusPOBox",         "BusCity",
    "BusState",        "BusCountry",   "BusPostCode",     "BusPhone",         "BusFax",
    "BusCellular",     "ContactEmail", "BusWeb",          "BusBankAcName",    "BusBankAcbank",
    "BusBankAcBranch", "BusBankAcNo",  "BusBankAcSuffix", "CustomerNumber",   "TaxNumber",
};

// 0: the box takes any length. The branch box depends on the country.
const int kMaxLength[AddressBookLogic::FieldCount] = {
    0, 10, 25, 25, 25, 25, 25, 25, 25, 25, 25, 25, 25, 25, 25, 25, 0, 0, 50, 3, 4, 9, 3, 50, 20,
};

const char *const kCaptions[AddressBookLogic::FieldCount] = {
    "Company/Employee",
    "Title",
    "Initials",
    "First Names",
    "Last Name :",
    "Street Address",
    "",
    "",
    "PO Box",
    "City",
    "State",
    "Country",
    "Post Code/Zip",
    "Phone",
    "Fax",
    "Mobile",
    "E-mail",
    "Website",
    "Bank Account Name",
    "Bank Number",
    "Branch",
    "Account",
    "Suffix",
    "Customer Number",
    "",
};

const char *const kFlagColumns[2] = {"WageFlag", "BusinessFlag"};

const QLatin1String kHelpFileName("Corvane.chm");

QString origin(const char *procedure)
{
    return QStringLiteral(") was generated in frmAddresses.") + QLatin1String(procedure);
}

// A data error of the first tab's fields, reported as the bound data source
// reports its own.
void reportDataError(const CvError &e)
{
    showErrorReport(e, ErrorOrigin::PrimaryRsError,
                    QStringLiteral("Error ") + QString::number(e.number()) +
                        QStringLiteral(" Error"));
}

QString rowQuery(qint32 addressId)
{
    return QStringLiteral("Select distinctrow * from Addresses where addressid = ") +
           QString::number(addressId);
}

// Blanks only, as the suite trims: a tab inside a name is kept.
QString trimBlanks(const QString &text)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && text.at(from) == u' ')
        ++from;
    while (to > from && text.at(to - 1) == u' ')
        --to;
    return text.mid(from, to - from);
}

bool validField(int field)
{
    return field >= 0 && field < AddressBookLogic::FieldCount;
}

} // namespace

// Collects the state changes of one event into one changed() signal.
class AddressBookLogic::Batch
{
public:
    explicit Batch(AddressBookLogic &logic) : m_logic(logic) { ++m_logic.m_batchDepth; }
    ~Batch()
    {
        if (--m_logic.m_batchDepth == 0)
            m_logic.touch();
    }
    Batch(const Batch &) = delete;
    Batch &operator=(const Batch &) = delete;

private:
    AddressBookLogic &m_logic;
};

AddressBookLogic::AddressBookLogic(QObject *parent) : QObject(parent)
{
    m_employeeSwitchToolTip = AddressTexts::HideFormerEmployees;
}

AddressBookLogic::~AddressBookLogic() = default;

void AddressBookLogic::setInputBox(InputBoxService *inputBox)
{
    m_inputBox = inputBox;
}

void AddressBookLogic::setPayDetailsOpener(PayDetailsOpener *opener)
{
    m_payOpener = opener;
}

void AddressBookLogic::setHelpOpener(HelpOpener *opener)
{
    m_helpOpener = opener;
}

void AddressBookLogic::setWageTab(WageTabHook *wageTab)
{
    m_wageTab = wageTab;
}

void AddressBookLogic::touch()
{
    ++m_revision;
    emit changed();
}

void AddressBookLogic::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    emit busyChanged(busy);
}

// The window's data files; a window whose load could not open them reports
// each later use instead of failing silently.
Database &AddressBookLogic::farm() const
{
    if (!m_farm)
        throw CvError(91, QStringLiteral("frmAddresses"),
                      QStringLiteral("Object variable or With block variable not set"));
    return *m_farm;
}

// The wage file is attached to the main file's connection.
Database &AddressBookLogic::wage() const
{
    return farm();
}

// ---- Loading and showing the window ---------------------------------------

void AddressBookLogic::load()
{
    Batch batch(*this);
    m_loaded = true;
    m_employeeMode = AddressGlobals::LaunchMode == 1;
    m_shownId = 0;
    m_employeeId = 0;
    m_fields = {};
    m_storedFields = {};
    m_flags[0] = m_flags[1] = m_storedFlags[0] = m_storedFlags[1] = false;
    m_headingChosen = false;
    m_nameList.clear();
    m_notes.clear();
    m_helpOpen = false;
    m_employeeSwitchChecked = false;
    m_employeeSwitchToolTip = AddressTexts::HideFormerEmployees;
    try {
        m_farm = openSuiteDatabase();
        setCaptions();
        m_helpFile = helpFolder() + u'/' + kHelpFileName;
        AddressGlobals::helpFilePath = m_helpFile;
        m_helpTopic = helpContextId(QStringLiteral("AddressBook"));
        m_currentTab = firstTab();
        prepareTab(m_currentTab);
        fillHeadingList();
        lookupDefaultBanks(*m_farm);
        readColourEntry(QStringLiteral("CvHeader"));
        m_headerColour = suiteColour();
    } catch (const CvError &e) {
        // Without its data files the window has nothing to show: one report, and every
        // later event finds no data files and does nothing.
        m_farm.reset();
        showErrorReport(e, ErrorOrigin::FormLoad);
    }
}

void AddressBookLogic::setCaptions()
{
    m_captions.showInCashbook = QStringLiteral("Show in Cashbook");
    m_captions.showInWagebook = QStringLiteral("Show in Wagebook");
    m_captions.cashbookHeading = QStringLiteral("Cashbook Heading");
    m_captions.employeeSwitch = QStringLiteral("Show Current Employees Only");
    m_captions.notesHint = QStringLiteral("Ctrl Enter for a new line");
    m_captions.mergeRemark =
        QStringLiteral("Address Book information can be merged into Notepad files");
    m_captions.add = QStringLiteral("&Add");
    m_captions.remove = QStringLiteral("&Delete");
    m_captions.close = QStringLiteral("&Close");
    m_captions.editPays = QStringLiteral("&Edit Pay Details");
    m_taxNumberCaption = ::taxNumberCaption();

    m_bankLayout = BankLayout();
    m_branchMaxLength = kMaxLength[BusBankAcBranch];
    switch (countryCode()) {
    case 61: // the BSB as two halves of three digits
        m_bankLayout.groupCaption = QStringLiteral("BSB");
        m_bankLayout.hyphenVisible = true;
        m_bankLayout.suffixVisible = false;
        m_bankLayout.branchAsWideAsBank = true;
        m_branchMaxLength = 3;
        break;
    case 27:
        m_bankLayout.hyphenVisible = true;
        m_branchMaxLength = 6;
        break;
    default:
        break;
    }
}

void AddressBookLogic::fillHeadingList()
{
    // Nothing is selected yet: each entry selects its own heading when shown.
    FillDaoVBCombo(farm(), m_headingList,
                   QStringLiteral("SELECT DISTINCTROW [Secondary Codes].[Secondary Codes ID], "
                                  "[Secondary Codes].[Cached Name] "
                                  "FROM [Account Codes] INNER JOIN [Secondary Codes] ON "
                                  "[Account Codes].[Account Code] = [Secondary Codes].[Main "
                                  "Code ID] "
                                  "Where [Account Codes].[Show In CashBk] = True Order by "
                                  "[Cached Name]"),
                   0, true, QStringLiteral("None"), false, true, true);
}

void AddressBookLogic::activate()
{
    Batch batch(*this);
    if (!m_farm)
        return;
    try {
        if (!m_employeeMode) {
            m_employeeSwitchChecked = false;
            m_letterStripEnabled = true;
            m_filter = QStringLiteral("*");
            qint32 none = 0;
            FillNameList(false, none, m_filter);
            UpdateScreenDisplay();
        } else {
            m_editPaysEnabled = false;
            const bool currentOnly = AddressGlobals::settings().EmployeeOnly();
            // Assigning the box raises its click, which rebuilds the list.
            if (m_employeeSwitchChecked != currentOnly)
                clickEmployeeSwitch(currentOnly);
            m_letterStripEnabled = false;
            qint32 launchId = AddressGlobals::CurrentAddressID;
            FillNameList(currentOnly, launchId, QStringLiteral("*"));
        }
    } catch (const CvError &e) {
        showErrorReport(e, origin("Form_Activate"));
    }
}

QString AddressBookLogic::windowTitle() const
{
    return QGuiApplication::applicationDisplayName();
}

// ---- The name list ---------------------------------------------------------

void AddressBookLogic::FillNameList(bool currentOnly, qint32 &addressId, const QString &filter)
{
    Batch batch(*this);
    try {
        // The window keeps both files open for its lifetime; a fresh pair of
        // connections per rebuild would cost more than the query on a small list.
        std::unique_ptr<Database> own;
        if (!m_farm)
            own = openSuiteDatabase();
        Database &farm = m_farm ? *m_farm : *own;
        Database &wage = farm;

        qint32 reselect = -1;
        if (addressId >= 1)
            reselect = addressId;
        else if (m_nameList.listIndex() >= 0)
            reselect = m_nameList.currentData();

        m_nameList.clear();
        int position = -1;
        const auto add = [&](const QVariant &name, qint32 id) {
            if (name.isNull())
                return;
            m_nameList.addItem(name.toString(), id);
            if (id == reselect)
                position = m_nameList.count() - 1;
        };
        const auto fillLoop = [&](Recordset &rs) {
            m_nameList.reserve(rs.recordCount());
            for (; !rs.eof(); rs.moveNext())
                add(rs.value(1), qint32(rs.value(0).toLongLong()));
        };

        if (m_employeeMode) {
            Recordset addresses(farm,
                                QStringLiteral("SELECT DISTINCTROW Addresses.AddressID, "
                                               "Addresses.BusName "
                                               "From Addresses "
                                               "WHERE (((Addresses.WageFlag)=True)) "
                                               "ORDER BY Addresses.busname;"),
                                Recordset::Snapshot);
            if (currentOnly) {
                Recordset employees(wage,
                                    QStringLiteral("SELECT DISTINCTROW Employees.AddressID "
                                                   "From Employees "
                                                   "WHERE Employees.[Datefinished] Is Null Or "
                                                   "Employees.[Datefinished]=0 "
                                                   "ORDER BY Employees.AddressID;"),
                                    Recordset::Snapshot);
                // Each employee's address row, found by key rather than by a
                // search through the rows: the first row of an identifier wins,
                // as a search from the top would find it.
                QHash<qint64, QVariant> names;
                names.reserve(addresses.recordCount());
                for (; !addresses.eof(); addresses.moveNext()) {
                    const qint64 id = addresses.value(0).toLongLong();
                    if (!names.contains(id))
                        names.insert(id, addresses.value(1));
                }
                for (; !employees.eof(); employees.moveNext()) {
                    const QVariant id = employees.value(0);
                    if (id.isNull())
                        continue;
                    const auto match = names.constFind(id.toLongLong());
                    if (match != names.constEnd())
                        add(match.value(), qint32(match.key()));
                }
            } else {
                fillLoop(addresses);
            }
        } else {
            Recordset addresses(farm,
                                QStringLiteral("SELECT DISTINCTROW Addresses.AddressID, "
                                               "Addresses.BusName "
                                               "FROM Addresses "
                                               "WHERE Addresses.busname LIKE ") +
                                    JetSql::quote(filter) +
                                    QStringLiteral(" ORDER BY Addresses.busname;"),
                                Recordset::Snapshot);
            fillLoop(addresses);
        }

        if (position >= 0) {
            m_nameList.setListIndex(position);
            cmbNameClick();
        } else if (m_nameList.count() == 0) {
            m_nameList.clear();
            leaveShownEntry();
        } else {
            m_nameList.setListIndex(0);
            cmbNameClick();
        }
    } catch (const CvError &e) {
        showErrorReport(e, ErrorOrigin::FillNameList);
    }
}

void AddressBookLogic::chooseName(int index)
{
    Batch batch(*this);
    if (index < 0 || index >= m_nameList.count())
        return;
    // The entry on screen is saved before another is shown; when it cannot be, the
    // list goes back to it.
    if (!saveCurrentTab())
        return;
    m_nameList.setListIndex(index);
    UpdateScreenDisplay();
}

void AddressBookLogic::cmbNameClick()
{
    if (saveCurrentTab())
        UpdateScreenDisplay();
}

void AddressBookLogic::changeLetterFilter(const QString &letter)
{
    Batch batch(*this);
    if (!m_letterStripEnabled || !saveCurrentTab())
        return;
    m_filter = letter == u"*" ? QStringLiteral("*") : letter + u'*';
    qint32 current = AddressGlobals::CurrentAddressID;
    FillNameList(false, current, m_filter);
}

void AddressBookLogic::clickEmployeeSwitch(bool checked)
{
    Batch batch(*this);
    try {
        if (!saveCurrentTab())
            return;
        m_employeeSwitchChecked = checked;
        m_employeeSwitchToolTip =
            checked ? AddressTexts::ShowFormerEmployees : AddressTexts::HideFormerEmployees;
        // A switch that cannot be stored still applies to this window.
        writeAllEmployees(checked ? QStringLiteral("N") : QStringLiteral("Y"));
        qint32 current = AddressGlobals::CurrentAddressID;
        FillNameList(checked, current, QStringLiteral("*"));
    } catch (const CvError &e) {
        showErrorReport(e, origin("chk_employee_Click"));
    }
}

// ---- Showing an entry ------------------------------------------------------

void AddressBookLogic::UpdateScreenDisplay()
{
    Batch batch(*this);
    try {
        if (m_nameList.listIndex() < 0 && m_nameList.count() > 0)
            m_nameList.setListIndex(0);
        const qint32 id = m_nameList.currentData();
        setBusy(true);
        if (!showRow(id)) {
            setBusy(false);
            return;
        }
        AddressGlobals::CurrentAddressID = id;
        if (m_employeeMode) {
            Recordset employee(wage(),
                               QStringLiteral("Select Distinctrow * from Employees where "
                                              "AddressID = ") +
                                   QString::number(id),
                               Recordset::Snapshot);
            m_employeeId = employee.eof()
                               ? 0
                               : qint32(employee.value(QStringLiteral("EmployeeID")).toLongLong());
        } else {
            EnableEditPays(m_flags[WageFlag]);
        }
        if (m_currentTab == payTab()) {
            if (m_wageTab)
                m_wageTab->loadWageTab(farm(), id, m_employeeId);
        } else if (m_currentTab == notesTab()) {
            LoadAddressNotes();
        }
        setBusy(false);
    } catch (const CvError &e) {
        setBusy(false);
        showErrorReport(e, ErrorOrigin::UpdateScreenDisplay);
    }
}

// Shows the entry: the caller has saved what the user changed on the entry
// being left (saveCurrentTab), so nothing typed is read over. Only this one row is read, so
// showing an entry costs the same in any size of book. False when there is no
// such entry (in employee mode: no such employee entry); the screen then stays
// as it was.
bool AddressBookLogic::showRow(qint32 addressId)
{
    Recordset rs(farm(), rowQuery(addressId), Recordset::Snapshot);
    if (rs.eof())
        return false;
    if (m_employeeMode && !rs.value(QLatin1String(kFlagColumns[WageFlag])).toBool())
        return false;
    for (int i = 0; i < FieldCount; ++i) {
        const QVariant v = rs.value(QLatin1String(kColumns[i]));
        m_fields[i] = m_storedFields[i] = v.isNull() ? QString() : v.toString();
    }
    for (int f = 0; f < 2; ++f)
        m_flags[f] = m_storedFlags[f] = rs.value(QLatin1String(kFlagColumns[f])).toBool();
    m_refused = {};
    m_shownId = addressId;
    m_employeeId = 0;
    showHeading(rs.value(QStringLiteral("HeadingAccount")));
    m_storedHeadingIndex = m_headingList.listIndex();
    m_headingChosen = false;
    return true;
}

void AddressBookLogic::showHeading(const QVariant &headingAccount)
{
    if (m_headingList.count() == 0)
        return;
    const qint64 heading = headingAccount.isNull() ? 0 : headingAccount.toLongLong();
    if (heading == 0) {
        m_headingList.setListIndex(0);
        return;
    }
    // A heading that is no longer listed leaves the list as it was.
    for (int i = 1; i < m_headingList.count(); ++i) {
        if (m_headingList.itemData(i) == heading) {
            m_headingList.setListIndex(i);
            return;
        }
    }
}

// The list no longer holds an entry to show: keep what the user typed, then
// show nothing.
void AddressBookLogic::leaveShownEntry()
{
    saveCurrentTab();
    ClearScreen();
    m_notes.clear();
    m_storedNotes.clear();
}

void AddressBookLogic::ClearScreen()
{
    Batch batch(*this);
    m_fields = {};
    m_storedFields = {};
    m_refused = {};
    m_flags[0] = m_flags[1] = m_storedFlags[0] = m_storedFlags[1] = false;
    m_shownId = 0;
    m_employeeId = 0;
    if (m_editPaysEnabled)
        m_editPaysEnabled = false;
    m_headingList.setListIndex(-1);
    m_headingList.setText(QString());
    m_headingChosen = false;
}

void AddressBookLogic::EnableEditPays(bool wageFlag)
{
    Batch batch(*this);
    m_editPaysEnabled = wageFlag;
}

// ---- Editing the first tab -------------------------------------------------

QString AddressBookLogic::columnName(int field)
{
    return validField(field) ? QLatin1String(kColumns[field]) : QString();
}

QString AddressBookLogic::field(int field) const
{
    return validField(field) ? m_fields[field] : QString();
}

bool AddressBookLogic::flag(Flag flag) const
{
    return m_flags[flag == WageFlag ? 0 : 1];
}

int AddressBookLogic::maxLength(int field) const
{
    if (!validField(field))
        return 0;
    return field == BusBankAcBranch ? m_branchMaxLength : kMaxLength[field];
}

QString AddressBookLogic::fieldCaption(int field) const
{
    if (!validField(field))
        return QString();
    if (field == TaxNumber)
        return m_taxNumberCaption;
    if (!m_bankLayout.suffixVisible && (field == BusBankAcBranch || field == BusBankAcSuffix))
        return QString();
    return QLatin1String(kCaptions[field]);
}

QString AddressBookLogic::taxNumberCaption() const
{
    return m_taxNumberCaption;
}

void AddressBookLogic::editField(int field, const QString &text)
{
    Batch batch(*this);
    if (!validField(field))
        return;
    m_fields[field] = text;
    m_refused[field] = false;
}

void AddressBookLogic::focusInField(int field)
{
    if (field == BusName || field == ContactLastName)
        m_protectedText = m_fields[field];
}

void AddressBookLogic::focusOutField(int field)
{
    Batch batch(*this);
    if ((field == BusName || field == ContactLastName) && m_fields[field].isEmpty())
        m_fields[field] = m_protectedText;
}

void AddressBookLogic::toggleFlag(Flag flag, bool on)
{
    Batch batch(*this);
    m_flags[flag == WageFlag ? 0 : 1] = on;
    // The button follows the entry's flag as shown: ticking "Show in Wagebook" makes the
    // entry an employee whose pay details can be set up at once. Employee mode keeps it
    // disabled.
    if (flag == WageFlag && !m_employeeMode)
        EnableEditPays(on);
}

void AddressBookLogic::chooseHeading(int index)
{
    Batch batch(*this);
    if (index < -1 || index >= m_headingList.count())
        return;
    m_headingList.setListIndex(index);
    m_headingChosen = true;
}

bool AddressBookLogic::boundFieldsChanged() const
{
    for (int i = 0; i < FieldCount; ++i) {
        if (!m_refused[i] && m_fields[i] != m_storedFields[i])
            return true;
    }
    return m_flags[0] != m_storedFlags[0] || m_flags[1] != m_storedFlags[1];
}

// Writes the changed fields of the shown entry, inside the caller's save. A value
// the column refuses is reported and stays on screen; the other fields are written
// all the same. Returns the fields written, to be marked stored once the save commits.
std::vector<int> AddressBookLogic::writeBoundFields()
{
    std::vector<int> written;
    if (!boundFieldsChanged())
        return written;
    Recordset rs(farm(), rowQuery(m_shownId));
    if (rs.eof())
        return written;
    rs.edit();
    for (int i = 0; i < FieldCount; ++i) {
        if (m_refused[i] || m_fields[i] == m_storedFields[i])
            continue;
        try {
            rs.setValue(QLatin1String(kColumns[i]),
                        m_fields[i].isEmpty() ? QVariant() : QVariant(m_fields[i]));
            written.push_back(i);
        } catch (const CvError &e) {
            m_refused[i] = true;
            reportDataError(e);
        }
    }
    for (int f = 0; f < 2; ++f) {
        if (m_flags[f] != m_storedFlags[f])
            rs.setValue(QLatin1String(kFlagColumns[f]), m_flags[f]);
    }
    rs.update();
    return written;
}

QString AddressBookLogic::shownEntryName() const
{
    const QString name = m_storedFields[BusName];
    return name.isEmpty() ? QStringLiteral("this entry") : name;
}

bool AddressBookLogic::saveEntry(bool withNotes)
{
    if (!m_farm || m_shownId == 0)
        return true;
    const bool notesChanged = withNotes && m_notes != m_storedNotes;
    // Nothing the user did not change is written.
    if (!boundFieldsChanged() && !m_headingChosen && !notesChanged)
        return true;
    std::vector<int> written;
    const SaveOutcome outcome = saveChanges(farm(), shownEntryName(), [&] {
        written = writeBoundFields();
        if (m_headingChosen)
            saveHeadingChoice();
        if (notesChanged)
            farm().execute(QStringLiteral("UPDATE Addresses SET notes = ? WHERE AddressID = ?"),
                           {m_notes, m_shownId});
    });
    switch (outcome) {
    case SaveOutcome::Saved:
        for (int i : written)
            m_storedFields[i] = m_fields[i];
        m_storedFlags[0] = m_flags[0];
        m_storedFlags[1] = m_flags[1];
        m_storedHeadingIndex = m_headingList.listIndex();
        m_headingChosen = false;
        if (notesChanged)
            m_storedNotes = m_notes;
        return true;
    case SaveOutcome::Discarded:
        // The entry as it was read comes back, without reading it again (the file
        // may still be held).
        m_fields = m_storedFields;
        m_refused = {};
        m_flags[0] = m_storedFlags[0];
        m_flags[1] = m_storedFlags[1];
        if (m_headingChosen) {
            m_headingList.setListIndex(m_storedHeadingIndex);
            m_headingChosen = false;
        }
        if (withNotes)
            m_notes = m_storedNotes;
        if (!m_employeeMode)
            EnableEditPays(m_flags[WageFlag]);
        return true;
    case SaveOutcome::Kept:
        break;
    }
    return false;
}

bool AddressBookLogic::SaveHeading()
{
    Batch batch(*this);
    return saveEntry(false);
}

void AddressBookLogic::saveHeadingChoice()
{
    const QString where = QStringLiteral("WHERE (((Addresses.AddressID)=") +
                          QString::number(m_shownId) + QStringLiteral("));");
    const int index = m_headingList.listIndex();
    if (index == 0 && m_headingList.text() == u"None") {
        farm().execute(
            QStringLiteral("UPDATE DISTINCTROW Addresses SET Addresses.HeadingAccount = Null ") +
            where);
    } else if (index >= 1 && m_headingList.itemData(index) >= 1) {
        farm().execute(QStringLiteral("UPDATE DISTINCTROW Addresses SET "
                                      "Addresses.HeadingAccount = ") +
                       QString::number(m_headingList.itemData(index)) + u' ' + where);
    }
}

// ---- Notes -------------------------------------------------------------------

void AddressBookLogic::editNotes(const QString &text)
{
    Batch batch(*this);
    m_notes = text;
}

void AddressBookLogic::LoadAddressNotes()
{
    Batch batch(*this);
    m_notes.clear();
    m_storedNotes.clear();
    try {
        if (!m_farm)
            return;
        Recordset rs(farm(),
                     QStringLiteral("Select distinctrow notes from Addresses where addressid = ") +
                         QString::number(m_shownId),
                     Recordset::Snapshot);
        if (!rs.eof() && !rs.isNull(QStringLiteral("notes")))
            m_notes = rs.value(QStringLiteral("notes")).toString();
        m_storedNotes = m_notes;
    } catch (const CvError &e) {
        showErrorReport(e, origin("LoadAddressNotes"));
    }
}

bool AddressBookLogic::SaveAddressNotes()
{
    Batch batch(*this);
    return saveEntry(true);
}

// ---- Tabs --------------------------------------------------------------------

QStringList AddressBookLogic::tabCaptions() const
{
    if (m_employeeMode)
        return {QStringLiteral("Addresses"), QStringLiteral("Pay Information"),
                QStringLiteral("Notes")};
    return {QStringLiteral("Addresses"), QStringLiteral("Notes")};
}

bool AddressBookLogic::saveCurrentTab()
{
    return saveTab(m_currentTab);
}

bool AddressBookLogic::saveTab(int tab)
{
    if (tab == payTab() && m_wageTab && m_shownId != 0 && !m_wageTab->SaveWageTab())
        return false;
    return saveEntry(tab == notesTab());
}

void AddressBookLogic::changeTab(int tab)
{
    Batch batch(*this);
    if (tab < 0 || tab >= int(tabCaptions().size()) || tab == m_currentTab)
        return;
    try {
        const int left = m_currentTab;
        // A tab whose changes could not be saved stays in front.
        if (!m_employeeMode) {
            if (left == notesTab() && !SaveAddressNotes())
                return;
        } else if (m_nameList.listIndex() >= 0 && !saveTab(left)) {
            return;
        }
        m_currentTab = tab;
        prepareTab(tab);
    } catch (const CvError &e) {
        showErrorReport(e, origin("Tab1_Click"));
    }
}

void AddressBookLogic::prepareTab(int tab)
{
    m_payFrameVisible = false;
    m_notesEnabled = false;
    m_addDeleteVisible = false;
    if (tab == firstTab()) {
        m_addDeleteVisible = true;
    } else if (tab == notesTab()) {
        m_notesEnabled = true;
        LoadAddressNotes();
    } else if (tab == payTab()) {
        m_payFrameVisible = true;
        if (m_wageTab && m_shownId != 0)
            m_wageTab->loadWageTab(farm(), m_shownId, m_employeeId);
    }
}

void AddressBookLogic::nextTab()
{
    const int count = int(tabCaptions().size());
    changeTab((m_currentTab + 1) % count);
}

// ---- Adding, deleting, pay details -------------------------------------------

void AddressBookLogic::addEntry()
{
    Batch batch(*this);
    if (!m_farm)
        return;
    try {
        const QString answer =
            trimBlanks(m_inputBox ? m_inputBox->ask(AddressTexts::NewEntryPrompt,
                                                    QStringLiteral("Add New Address"), QString())
                                  : QString());
        if (answer.isEmpty()) {
            msgNoNameEntered();
        } else {
            if (!saveCurrentTab())
                return;
            setBusy(true);
            qint32 newId = 0;
            qint32 newEmployee = 0;
            // The address and, on the employee window, its Employees row are one save:
            // an entry flagged for the wage book never lacks its row.
            const SaveOutcome outcome =
                saveChanges(farm(), QStringLiteral("the new entry %1").arg(answer), [&] {
                    // No row has the identifier 0: the set starts empty.
                    Recordset rs(farm(), rowQuery(0));
                    rs.addNew();
                    rs.setValue(QStringLiteral("WageFlag"), m_employeeMode);
                    rs.setValue(QStringLiteral("busname"), answer);
                    if (m_employeeMode)
                        rs.setValue(QStringLiteral("contactlastname"), lastWord(answer));
                    rs.update();
                    newId = qint32(rs.lastInsertId());
                    if (m_employeeMode) {
                        Recordset employee(wage(),
                                           QStringLiteral("Select Distinctrow * from "
                                                          "Employees where EmployeeID = 0"));
                        employee.addNew();
                        employee.setValue(QStringLiteral("AddressID"), newId);
                        employee.setValue(QStringLiteral("EmployeetypeID"),
                                          DefaultEmployeeTypeID(wage()));
                        employee.setValue(QStringLiteral("PayIntervalID"),
                                          DefaultPayIntervalID(wage()));
                        employee.setValue(QStringLiteral("TaxTypeID"), DefaultTaxTypeID(wage()));
                        employee.update();
                        newEmployee = qint32(employee.lastInsertId());
                    }
                });
            setBusy(false);
            if (outcome != SaveOutcome::Saved)
                return;
            if (m_editPaysEnabled)
                m_editPaysEnabled = false;
            emit focusFieldRequested(BusName);
            showRow(newId);
            AddressGlobals::CurrentAddressID = newId;
            m_employeeId = newEmployee;
        }
        qint32 current = AddressGlobals::CurrentAddressID;
        FillNameList(AddressGlobals::settings().EmployeeOnly(), current, QStringLiteral("*"));
        UpdateScreenDisplay();
    } catch (const CvError &e) {
        setBusy(false);
        showErrorReport(e, origin("cmdAdd_Click"));
    }
}

bool AddressBookLogic::noWages(qint32 addressId)
{
    Recordset rs(wage(),
                 QStringLiteral("SELECT DISTINCTROW Wages.Date "
                                "FROM Employees INNER JOIN Wages ON Employees.EmployeeID = "
                                "Wages.EmployeeID "
                                "WHERE (((Employees.AddressID)=") +
                     QString::number(addressId) + QStringLiteral("));"),
                 Recordset::Snapshot);
    return rs.eof();
}

bool AddressBookLogic::noTransactions(qint32 addressId)
{
    Recordset rs(farm(),
                 QStringLiteral("SELECT DISTINCTROW Transactions.Date "
                                "FROM Transactions "
                                "WHERE (((Transactions.AddressID)=") +
                     QString::number(addressId) + QStringLiteral("));"),
                 Recordset::Snapshot);
    return rs.eof();
}

void AddressBookLogic::deleteEntry()
{
    Batch batch(*this);
    try {
        if (m_nameList.listIndex() < 0)
            return;
        const qint32 id = m_nameList.currentData();
        if (id <= 0)
            return;
        const QString name = m_nameList.text();
        const bool noWageRows = noWages(id);
        const bool noCashbookRows = noTransactions(id);
        if (noWageRows && !noCashbookRows) {
            msgCashbookDataExists(name);
            return;
        }
        if (!noWageRows && noCashbookRows) {
            msgWagesExist(name);
            return;
        }
        if (!noWageRows && !noCashbookRows) {
            msgWagesAndCashbookExist(name);
            return;
        }
        if (!msgConfirmDeletion(name))
            return;

        // The Addresses row only: an Employees row stays behind.
        const SaveOutcome outcome =
            saveChanges(farm(), QStringLiteral("the deletion of %1").arg(name), [&] {
                Recordset rs(farm(), rowQuery(id));
                if (!rs.eof())
                    rs.remove();
            });
        if (outcome != SaveOutcome::Saved)
            return;
        if (m_shownId == id)
            ClearScreen(); // its edits go with it

        qint32 current = AddressGlobals::CurrentAddressID;
        FillNameList(AddressGlobals::settings().EmployeeOnly(), current, QStringLiteral("*"));
        UpdateScreenDisplay();
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmdDelete_Click"));
    }
}

void AddressBookLogic::editPayDetails()
{
    Batch batch(*this);
    try {
        if (m_nameList.listIndex() < 0) {
            msgSelectionRequiredPayDetails();
            return;
        }
        if (!m_payOpener)
            return;
        // The dialog appends its change log to the notes: store ours first and
        // read them back afterwards, so neither overwrites the other.
        const bool onNotes = m_currentTab == notesTab();
        if (onNotes && !SaveAddressNotes())
            return;
        m_payOpener->openPayDetails(AddressGlobals::CurrentAddressID);
        if (onNotes)
            LoadAddressNotes();
    } catch (const CvError &e) {
        showErrorReport(e, ErrorOrigin::EditPaysClick);
    }
}

// ---- Help and closing ----------------------------------------------------------

void AddressBookLogic::showHelp()
{
    Batch batch(*this);
    if (m_helpOpener)
        m_helpOpener->openHelp(m_helpFile, m_helpTopic);
    m_helpOpen = true;
}

bool AddressBookLogic::queryUnload()
{
    Batch batch(*this);
    try {
        if (m_shownId != 0 && m_fields[ContactLastName].isEmpty())
            m_fields[ContactLastName] = lastWord(m_fields[BusName]);
        // A change that could not be saved keeps the window open, unless the user
        // chose to let it go.
        if (!saveCurrentTab())
            return false;
    } catch (const CvError &e) {
        showErrorReport(e, origin("Form_Unload"));
    }
    if (m_helpOpen && m_helpOpener)
        m_helpOpener->closeHelp();
    m_helpOpen = false;
    return true;
}

QString AddressBookLogic::lastWord(const QString &name)
{
    const qsizetype blank = name.left(qMax<qsizetype>(name.size() - 1, 0)).lastIndexOf(u' ');
    return blank < 0 ? name : name.mid(blank + 1);
}

void AddressBookLogic::unload()
{
    Batch batch(*this);
    try {
        // After queryUnload() there is nothing left to save; a caller that unloads
        // without asking still gets the last changes stored.
        if (m_shownId != 0 && m_fields[ContactLastName].isEmpty())
            m_fields[ContactLastName] = lastWord(m_fields[BusName]);
        saveCurrentTab();
    } catch (const CvError &e) {
        showErrorReport(e, origin("Form_Unload"));
    }
    m_farm.reset();
    m_loaded = false;
    setBusy(false);
}
