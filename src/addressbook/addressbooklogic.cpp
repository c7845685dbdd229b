#include "addressbook/addressbooklogic.h"

#include "addressbook/duplicates.h"
#include "addressbook/helpopener.h"
#include "addressbook/paydetailsopener.h"
#include "addressbook/payinformationtab.h"
#include "checks/identifiers.h"
#include "checks/keepprompt.h"
#include "config/settings.h"
#include "config/suiteconfig.h"
#include "config/suitedatabase.h"
#include "controls/filldaovbcombo.h"
#include "controls/inputboxservice.h"
#include "core/cverror.h"
#include "data/database.h"
#include "launch/launchcontext.h"
#include "messages/addressmessages.h"
#include "messages/errorreport.h"
#include "messages/messageservice.h"
#include "messages/savechanges.h"
#include "paydetails/paylists.h"

#include <algorithm>
#include <QGuiApplication>

namespace {

const QLatin1String kModule("frmAddresses");
const QLatin1String kHelpFileName("Corvane.chm");

QString origin(const char *procedure)
{
    return errorOrigin(kModule, QLatin1String(procedure));
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

} // namespace

AddressBookLogic::AddressBookLogic(LaunchContext &launch, QObject *parent)
    : WindowLogic(parent), m_launch(launch)
{
    m_employeeSwitchToolTip = AddressTexts::HideFormerEmployees;
}

AddressBookLogic::~AddressBookLogic() = default;

void AddressBookLogic::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    emit busyChanged(busy);
}

// The window's data files, one connection with the wage file attached; a window
// whose load could not open them reports each later use instead of failing silently.
Database &AddressBookLogic::farm() const
{
    return requireDatabase(m_farm.get(), kModule);
}

// ---- Loading and showing the window ---------------------------------------

void AddressBookLogic::load()
{
    Batch batch(*this);
    m_loaded = true;
    m_employeeMode = m_launch.employeeMode();
    m_entry.clear();
    m_entry.clearNotes();
    m_employeeId = 0;
    m_nameList.clear();
    m_helpOpen = false;
    m_employeeSwitchChecked = false;
    m_employeeSwitchToolTip = AddressTexts::HideFormerEmployees;
    m_inactiveAvailable = false;
    m_showInactive = false;
    m_hidingInactive = false;
    try {
        m_farm = openSuiteDatabase();
        m_country = countryCode();
        m_form = AddressForm(m_country, ::taxNumberCaption());
        ++m_formRevision;
        m_helpFile = helpFolder() + u'/' + kHelpFileName;
        m_launch.helpFilePath = m_helpFile;
        m_helpTopic = helpContextId(QStringLiteral("AddressBook"));
        m_currentTab = firstTab();
        prepareTab(m_currentTab);
        // Each entry selects its own heading when shown; a list not read is told, not fatal.
        reportedStep(ErrorOrigin::FillDaoVBCombo,
                     [&] { store().listHeadings(m_entry.headingList()); });
        m_inactiveAvailable = store().prepareInactive();
        lookupDefaultBanks(*m_farm);
        readColourEntry(QStringLiteral("CvHeader"));
        m_headerColour = suiteColour();
    } catch (const CvError &e) {
        // Without its data files the window has nothing to show: one report, and every
        // later event finds no data files and does nothing.
        m_farm.reset();
        showErrorReport(e, origin("Form_Load"));
    }
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
            const bool currentOnly = Settings().EmployeeOnly();
            // Assigning the box is its click, but the list is built once, below.
            if (m_employeeSwitchChecked != currentOnly && saveCurrentTab())
                setEmployeeSwitch(currentOnly);
            m_letterStripEnabled = false;
            qint32 launchId = m_launch.currentAddressId;
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
    // A window whose load could not open the books has told the user once; its letter
    // strip and switch do nothing more (a server that cannot be reached would otherwise
    // be waited for and reported again at every click).
    if (m_loaded && !m_farm)
        return;
    try {
        // The window keeps both files open for its lifetime; a fresh pair of
        // connections per rebuild would cost more than the query on a small list.
        std::unique_ptr<Database> own;
        if (!m_farm)
            own = openSuiteDatabase();
        const AddressStore names(m_farm ? *m_farm : *own);

        endSearch();
        const qint32 reselect = addressId >= 1                ? addressId
                                : m_nameList.listIndex() >= 0 ? m_nameList.currentData()
                                                              : -1;

        m_nameList.clear();
        if (m_employeeMode)
            names.listEmployees(m_nameList, currentOnly);
        else
            listAddresses(names, filter);

        // The last item of the entry: an employee may be listed once per Employees row.
        int position = m_nameList.count() - 1;
        while (position >= 0 && m_nameList.itemData(position) != reselect)
            --position;
        if (m_nameList.count() == 0) {
            m_nameList.clear();
            leaveShownEntry();
        } else {
            m_nameList.setListIndex(qMax(position, 0));
            cmbNameClick();
        }
    } catch (const CvError &e) {
        showErrorReport(e, origin("FillNameList"));
    }
}

// The address book's names by the filter, without the inactive entries unless asked for.
void AddressBookLogic::listAddresses(const AddressStore &names, const QString &filter)
{
    const QSet<qint32> hidden =
        m_inactiveAvailable && !m_showInactive ? names.inactiveIds() : QSet<qint32>();
    m_hidingInactive = !hidden.isEmpty();
    if (hidden.isEmpty()) {
        names.listNames(m_nameList, filter);
        return;
    }
    ComboList all;
    names.listNames(all, filter);
    m_nameList.reserve(all.count());
    for (const ComboItem &item : all.items())
        if (!hidden.contains(item.data))
            m_nameList.addItem(item.text, item.data);
}

void AddressBookLogic::clickInactiveSwitch(bool checked)
{
    Batch batch(*this);
    if (!m_farm || m_employeeMode || !saveCurrentTab())
        return;
    m_showInactive = checked;
    qint32 current = m_launch.currentAddressId;
    FillNameList(false, current, m_filter);
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
    qint32 current = m_launch.currentAddressId;
    FillNameList(false, current, m_filter);
}

// ---- Search as you type ----------------------------------------------------

void AddressBookLogic::endSearch()
{
    m_search.clear();
    m_searchText.clear();
    m_searching = false;
}

// The index covers every entry of the mode, so it is built from the whole list: the one
// shown unless a letter or a search has narrowed it.
void AddressBookLogic::loadSearch()
{
    if (m_search.isLoaded())
        return;
    const AddressStore data = store();
    ComboList whole;
    // Inactive entries are found by a search even while the list hides them.
    const bool narrowed =
        m_searching || (!m_employeeMode && (m_filter != u"*" || m_hidingInactive));
    if (narrowed && m_employeeMode)
        data.listEmployees(whole, m_employeeSwitchChecked);
    else if (narrowed)
        data.listNames(whole, QStringLiteral("*"));
    // The names from the list; one more statement for the other texts.
    NameSearch::OtherWords others;
    data.readSearchTexts(m_employeeMode, [&](qint32 id, const std::array<QByteArray, 4> &utf8) {
        others.add(id, utf8);
    });
    m_search.load(narrowed ? whole.items() : m_nameList.items(), std::move(others));
}

void AddressBookLogic::prepareSearch()
{
    Batch batch(*this);
    if (!m_farm)
        return;
    try {
        loadSearch();
    } catch (const CvError &e) {
        showErrorReport(e, origin("FillNameList"));
    }
}

void AddressBookLogic::search(const QString &text)
{
    Batch batch(*this);
    if (!m_farm)
        return;
    const QStringList words = NameSearch::words(text);
    if (words.isEmpty()) {
        clearSearch();
        m_searchText = text;
        return;
    }
    try {
        const auto find = [&] {
            loadSearch();
            std::vector<ComboItem> found; // a copy: a save may drop the index
            for (int i : m_search.find(words))
                found.push_back(m_search.items()[std::size_t(i)]);
            return found;
        };
        std::vector<ComboItem> found = find();
        const qint32 shown = m_entry.id();
        const auto isShown = [&](const ComboItem &item) { return item.data == shown; };
        auto kept = std::find_if(found.begin(), found.end(), isShown);
        // Leaving the entry on screen saves it first, as choosing from the list does; what
        // that stored is searched again (the user may have typed what was searched for).
        if (kept == found.end() && shown != 0) {
            if (!saveCurrentTab())
                return;
            if (!m_search.isLoaded()) {
                found = find();
                kept = std::find_if(found.begin(), found.end(), isShown);
            }
        }
        m_searchText = text;
        m_searching = true;
        if (!m_employeeMode)
            m_filter = QStringLiteral("*");
        m_nameList.clear();
        m_nameList.reserve(int(found.size()));
        for (const ComboItem &item : found)
            m_nameList.addItem(item.text, item.data);
        if (found.empty()) {
            ClearScreen();
            m_entry.clearNotes();
        } else if (kept != found.end()) {
            m_nameList.setListIndex(int(kept - found.begin()));
        } else {
            m_nameList.setListIndex(0);
            UpdateScreenDisplay();
        }
    } catch (const CvError &e) {
        showErrorReport(e, origin("FillNameList"));
    }
}

void AddressBookLogic::clearSearch()
{
    Batch batch(*this);
    m_searchText.clear();
    if (!m_searching)
        return;
    m_searching = false;
    const qint32 keep = m_entry.id() != 0 ? m_entry.id() : m_launch.currentAddressId;
    const auto &items = m_search.items();
    if (items.empty() || m_hidingInactive) {
        // The index went with a save that changed what it held, or holds the inactive
        // entries the list leaves out: read the list again.
        qint32 current = keep;
        FillNameList(m_employeeMode && m_employeeSwitchChecked, current, m_filter);
        return;
    }
    m_nameList.clear();
    m_nameList.reserve(int(items.size()));
    int position = -1;
    for (const ComboItem &item : items) {
        if (item.data == keep && position < 0)
            position = m_nameList.count();
        m_nameList.addItem(item.text, item.data);
    }
    m_nameList.setListIndex(qMax(position, 0));
    if (m_entry.id() != m_nameList.currentData())
        UpdateScreenDisplay();
}

void AddressBookLogic::clickEmployeeSwitch(bool checked)
{
    Batch batch(*this);
    try {
        if (!saveCurrentTab())
            return;
        setEmployeeSwitch(checked);
        qint32 current = m_launch.currentAddressId;
        FillNameList(checked, current, QStringLiteral("*"));
    } catch (const CvError &e) {
        showErrorReport(e, origin("chk_employee_Click"));
    }
}

void AddressBookLogic::setEmployeeSwitch(bool checked)
{
    m_employeeSwitchChecked = checked;
    m_employeeSwitchToolTip =
        checked ? AddressTexts::ShowFormerEmployees : AddressTexts::HideFormerEmployees;
    // A switch that cannot be stored still applies to this window.
    writeAllEmployees(checked ? QStringLiteral("N") : QStringLiteral("Y"));
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
        // The caller has saved what the user changed on the entry being left, so nothing
        // typed is read over. Only this one row is read: showing an entry costs the same
        // in any size of book. Without such an entry the screen stays as it was.
        if (!m_entry.show(store(), id, m_employeeMode)) {
            setBusy(false);
            return;
        }
        m_employeeId = 0;
        m_launch.currentAddressId = id;
        if (m_employeeMode)
            m_employeeId = store().employeeOf(id);
        else
            EnableEditPays(m_entry.flag(WageFlag));
        if (m_currentTab == payTab()) {
            if (m_wageTab)
                m_wageTab->loadWageTab(farm(), id, m_employeeId);
        } else if (m_currentTab == notesTab()) {
            LoadAddressNotes();
        }
        setBusy(false);
    } catch (const CvError &e) {
        setBusy(false);
        showErrorReport(e, origin("UpdateScreenDisplay"));
    }
}

// The list no longer holds an entry to show: keep what the user typed, then
// show nothing.
void AddressBookLogic::leaveShownEntry()
{
    saveCurrentTab();
    ClearScreen();
    m_entry.clearNotes();
}

void AddressBookLogic::ClearScreen()
{
    Batch batch(*this);
    m_entry.clear();
    m_employeeId = 0;
    m_editPaysEnabled = false;
}

void AddressBookLogic::EnableEditPays(bool wageFlag)
{
    Batch batch(*this);
    m_editPaysEnabled = wageFlag;
}

// ---- Editing the first tab -------------------------------------------------

void AddressBookLogic::editField(int field, const QString &text)
{
    m_entry.edit(field, text);
}

void AddressBookLogic::focusInField(int field)
{
    m_entry.focusIn(field);
}

bool AddressBookLogic::focusOutField(int field, int nextField)
{
    Batch batch(*this);
    m_entry.focusOut(field);
    return identifierKept(field, nextField);
}

bool AddressBookLogic::identifierKept(int field, int nextField)
{
    using namespace Identifiers;
    const auto isBankBox = [](int f) { return f >= BusBankAcBank && f <= BusBankAcSuffix; };
    // Moving between the bank boxes is still typing the one account.
    if (isBankBox(field) && isBankBox(nextField) && nextField != field)
        return true;
    // Only what the user typed: values read from the books are not questioned each visit.
    Verdict verdict;
    QString value;
    QString *warned = nullptr;
    QString what;
    if (field == TaxNumber && m_entry.edited(TaxNumber)) {
        value = m_entry.field(TaxNumber);
        verdict = checkBusinessTaxNumber(m_country, value);
        if (verdict.status == Status::Valid)
            m_entry.normalise(TaxNumber, verdict.display);
        warned = &m_warnedTaxNumber;
        what = businessTaxNumberName(m_country);
    } else if (isBankBox(field) &&
               (m_entry.edited(BusBankAcBank) || m_entry.edited(BusBankAcBranch) ||
                m_entry.edited(BusBankAcNo) || m_entry.edited(BusBankAcSuffix))) {
        const BankAccount account{m_entry.field(BusBankAcBank), m_entry.field(BusBankAcBranch),
                                  m_entry.field(BusBankAcNo), m_entry.field(BusBankAcSuffix)};
        value = account.joined();
        verdict = checkBankAccount(m_country, account);
        warned = &m_warnedBankAccount;
        what = QStringLiteral("bank account");
    }
    if (!warned)
        return true;
    const QString key = QString::number(m_entry.id()) + u'|' + value;
    if (*warned == key)
        return true;
    *warned = key;
    if (verdict.warns() && !askKeepIdentifier(what, verdict))
        return false;
    // The same number on another entry is most often the same business keyed twice.
    std::vector<Duplicates::Match> others;
    try {
        others = field == TaxNumber ? Duplicates::sameTaxNumber(farm(), m_entry.id(), value)
                                    : Duplicates::sameBankAccount(farm(), m_entry.id(),
                                                                  m_entry.field(BusBankAcBank),
                                                                  m_entry.field(BusBankAcBranch),
                                                                  m_entry.field(BusBankAcNo),
                                                                  m_entry.field(BusBankAcSuffix));
    } catch (const CvError &e) {
        showErrorReport(e, origin("FindDuplicates"));
        return true;
    }
    return others.empty() || msgIdentifierOnAnotherEntry(what, Duplicates::describe(others));
}

void AddressBookLogic::toggleFlag(Flag flag, bool on)
{
    Batch batch(*this);
    m_entry.setFlag(flag, on);
    // The button follows the entry's flag as shown: ticking "Show in Wagebook" makes the
    // entry an employee whose pay details can be set up at once. Employee mode keeps it
    // disabled.
    if (flag == WageFlag && !m_employeeMode)
        EnableEditPays(on);
}

void AddressBookLogic::chooseHeading(int index)
{
    Batch batch(*this);
    m_entry.chooseHeading(index);
}

bool AddressBookLogic::saveEntry(bool withNotes)
{
    if (!m_farm)
        return true;
    const SaveOutcome outcome = m_entry.save(farm(), withNotes);
    if (outcome == SaveOutcome::Discarded && !m_employeeMode)
        EnableEditPays(m_entry.flag(WageFlag));
    // A search must find the entry by what was just stored: an index that holds other
    // words for it is read again at the next key.
    if (outcome == SaveOutcome::Saved && m_search.isLoaded() && m_entry.id() != 0 &&
        !m_search.holds(m_entry.id(), NameSearch::entryWords(
                                          {m_entry.field(BusName), m_entry.field(ContactFirstName),
                                           m_entry.field(ContactLastName), m_entry.field(BusCity),
                                           m_entry.field(BusPhone)})))
        m_search.clear();
    return outcome != SaveOutcome::Kept;
}

bool AddressBookLogic::SaveHeading()
{
    Batch batch(*this);
    return saveEntry(false);
}

// ---- Notes -------------------------------------------------------------------

void AddressBookLogic::editNotes(const QString &text)
{
    m_entry.editNotes(text);
}

void AddressBookLogic::LoadAddressNotes()
{
    Batch batch(*this);
    m_entry.clearNotes();
    try {
        if (!m_farm)
            return;
        m_entry.loadNotes(store());
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
    if (tab == payTab() && m_wageTab && m_entry.id() != 0 && !m_wageTab->SaveWageTab())
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
        if (m_wageTab && m_entry.id() != 0)
            m_wageTab->loadWageTab(farm(), m_entry.id(), m_employeeId);
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
            const std::vector<Duplicates::Match> matches =
                Duplicates::sameName(farm(), answer, m_employeeMode);
            if (!matches.empty()) {
                const qint16 choice = msgPossibleDuplicate(answer, Duplicates::describe(matches));
                if (choice == ResultYes)
                    goToEntry(matches.front().addressId);
                if (choice != ResultNo)
                    return;
            }
            if (!saveCurrentTab())
                return;
            setBusy(true);
            AddressStore::Added added;
            // The address and, on the employee window, its Employees row are one save:
            // an entry flagged for the wage book never lacks its row.
            const SaveOutcome outcome =
                saveChanges(farm(), QStringLiteral("the new entry %1").arg(answer), [&] {
                    added = store().addEntry(answer, m_employeeMode, lastWord(answer));
                });
            setBusy(false);
            if (outcome != SaveOutcome::Saved)
                return;
            m_editPaysEnabled = false;
            emit focusFieldRequested(BusName);
            m_entry.show(store(), added.addressId, m_employeeMode);
            m_launch.currentAddressId = added.addressId;
            m_employeeId = added.employeeId;
        }
        refreshList();
    } catch (const CvError &e) {
        setBusy(false);
        showErrorReport(e, origin("cmdAdd_Click"));
    }
}

// An entry that may be outside the letter filter: the whole list again, on it.
void AddressBookLogic::goToEntry(qint32 addressId)
{
    if (saveCurrentTab())
        FillNameList(Settings().EmployeeOnly(), addressId, QStringLiteral("*"));
}

// After an add or delete: the whole list again, on the entry last shown.
void AddressBookLogic::refreshList()
{
    qint32 current = m_launch.currentAddressId;
    FillNameList(Settings().EmployeeOnly(), current, QStringLiteral("*"));
    UpdateScreenDisplay();
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
        const AddressStore data = store();
        const bool wages = data.hasWages(id);
        const bool cashbook = data.hasTransactions(id);
        if (wages || cashbook) {
            if (!wages)
                msgCashbookDataExists(name);
            else if (!cashbook)
                msgWagesExist(name);
            else
                msgWagesAndCashbookExist(name);
            return;
        }
        if (!msgConfirmDeletion(name))
            return;

        // The Addresses row only: an Employees row stays behind.
        const SaveOutcome outcome =
            saveChanges(farm(), QStringLiteral("the deletion of %1").arg(name),
                        [&] { store().deleteEntry(id); });
        if (outcome != SaveOutcome::Saved)
            return;
        if (m_entry.id() == id)
            ClearScreen(); // its edits go with it
        refreshList();
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
        m_payOpener->openPayDetails(m_launch.currentAddressId);
        if (onNotes)
            LoadAddressNotes();
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmdEditPays_Click."));
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
        m_entry.fillLastName();
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

void AddressBookLogic::unload()
{
    Batch batch(*this);
    try {
        // After queryUnload() there is nothing left to save; a caller that unloads
        // without asking still gets the last changes stored.
        m_entry.fillLastName();
        saveCurrentTab();
    } catch (const CvError &e) {
        showErrorReport(e, origin("Form_Unload"));
    }
    m_farm.reset();
    m_loaded = false;
    setBusy(false);
}
