#pragma once

#include "addressbook/addressfields.h"
#include "addressbook/addressform.h"
#include "addressbook/addressstore.h"
#include "addressbook/namesearch.h"
#include "addressbook/shownentry.h"
#include "config/suitecolour.h"
#include "controls/combolist.h"
#include "controls/windowlogic.h"

#include <memory>
#include <QObject>
#include <QString>
#include <QStringList>
#include <vector>

class Database;
struct LaunchContext;
class HelpOpener;
class InputBoxService;
class PayDetailsOpener;
class PayInformationTab;

// The logic of the address book window (frmAddresses): which entries the name
// list holds, which entry is shown, what is written back when the user moves
// on, adding and deleting entries, notes and the cashbook heading. The view
// (addressbook/ui) forwards the user's events to the event members below and
// shows the state members; whenever the state may have changed, changed() is
// emitted once per event.
//
// Messages go through SuiteMessageBox (the installed MessageService); the
// input box, the pay details dialog, the help viewer and the pay information
// tab are reached through the interfaces set below, each optional. The text
// boxes of the first tab are described in addressfields.h; the data comes and
// goes through AddressStore.
//
// Errors: each event member and each of the window's procedures below catches
// what fails under it and reports it once, naming itself; the private helpers
// throw. The load names the filler of a heading list it could not read, and opens
// the window without it.
class AddressBookLogic : public WindowLogic
{
    Q_OBJECT
public:
    using Field = AddressFields::Field;
    using Flag = AddressFields::Flag;
    using enum AddressFields::Field;
    using enum AddressFields::Flag;
    static constexpr int FieldCount = AddressFields::Count;

    using BankLayout = AddressForm::BankLayout;
    using Captions = AddressForm::Captions;

    // launch: what the program was started for; the logic writes the entry it shows back
    // to launch.currentAddressId. It must outlive the logic.
    explicit AddressBookLogic(LaunchContext &launch, QObject *parent = nullptr);
    ~AddressBookLogic() override;

    // Optional services; the logic does not own them. Without an input box an
    // Add is answered with an empty name.
    void setInputBox(InputBoxService *inputBox) { m_inputBox = inputBox; }
    void setPayDetailsOpener(PayDetailsOpener *opener) { m_payOpener = opener; }
    void setHelpOpener(HelpOpener *opener) { m_helpOpener = opener; }
    void setWageTab(PayInformationTab *wageTab) { m_wageTab = wageTab; }

    // ---- Events the view forwards -------------------------------------------

    // Form_Load: opens both data files (kept until unload), reads the launch
    // globals, sets captions, the bank layout, the help file and the heading
    // list.
    void load();
    // Form_Activate: each time the window is shown; builds the name list and
    // shows the entry.
    void activate();
    // cmbName click: the user picked the item at index.
    void chooseName(int index);
    // The letter strip's filter changed: a letter, or "*" for all.
    void changeLetterFilter(const QString &letter);
    // The search box's text changed. The name list narrows to the entries every typed word
    // finds (namesearch.h), among all the entries of the mode: a letter chosen on the strip
    // goes back to "*", and choosing a letter or rebuilding the list ends the search. The
    // entry on screen stays when it is found; otherwise it is saved, as choosing another
    // from the list does, and the first found is shown (none when nothing is). When it
    // cannot be saved and the user goes back to it, the search stays as it was.
    void search(const QString &text);
    // Esc in the search box: the whole list again, on the entry shown or else the one
    // last shown.
    void clearSearch();
    // Reads the search's index ahead of the first key (the box has the focus).
    void prepareSearch();
    // chk_employee click; checked is the box's new state.
    void clickEmployeeSwitch(bool checked);
    // "Show Inactive Entries" (the address book only): the inactive entries listed too.
    void clickInactiveSwitch(bool checked);
    // Tab1 click: the user selected tab (the tab left is currentTab()).
    void changeTab(int tab);
    // Ctrl+Tab: the next tab, the first after the last.
    void nextTab();
    // A text box of the first tab changed by the user. No changed(): the view shows it
    // already, so a keystroke costs the same whatever the size of the form or the book.
    void editField(int field, const QString &text);
    // Boxes 0 and 4 cannot be left empty: the view reports focus moves of
    // every box; the logic puts the old text back where needed.
    // Leaving the tax number box, or the bank boxes as a group (nextField: the box that
    // gets the focus, -1 none), checks the identifier the user typed in the country's
    // form: a wrong one is named and the user keeps it or goes back to it (false: the
    // view gives the box the focus again). Never a second warning for the same value.
    void focusInField(int field);
    bool focusOutField(int field, int nextField = -1);
    void toggleFlag(Flag flag, bool on);
    // cmbHeading: the user picked the item at index.
    void chooseHeading(int index);
    void editNotes(const QString &text); // no changed(), as editField
    void addEntry();                     // cmdAdd
    void deleteEntry();                  // cmdDelete
    void editPayDetails();               // cmdEditPays
    void showHelp();                     // F1
    // Form_QueryUnload: the window is about to close (cmdClose, Alt+F4 or the
    // title bar). Saves what the user changed; false when that could not be saved
    // and the user went back to it: the window then stays open.
    bool queryUnload();
    // Form_Unload: closes the data files; CurrentAddressID then holds the entry
    // last shown.
    void unload();

    // ---- The window's procedures --------------------------------------------

    // Rebuilds the name list and selects addressId (below 1: the entry that is
    // selected now), else the first item; selecting shows the entry.
    void FillNameList(bool currentOnly, qint32 &addressId, const QString &filter);
    // Shows the entry selected in the name list (the first when none is).
    void UpdateScreenDisplay();
    // Empties the first tab; no entry is shown afterwards, so nothing is
    // written back until the next one is.
    void ClearScreen();
    void EnableEditPays(bool wageFlag);
    void LoadAddressNotes();
    // Each save below stores what the user changed on the shown entry and nothing
    // else, in one transaction. False when it could not be saved and the user went
    // back to the change (the caller then does not move on); after a discard the
    // entry is shown as stored.
    // The notes with the first tab's changes.
    bool SaveAddressNotes();
    // The first tab's fields and a heading the user picked.
    bool SaveHeading();
    // The tab the user is on: first tab, notes or pay information.
    bool saveCurrentTab();

    // The last word of a name: the text after the last blank among all
    // characters but the final one; the whole name when there is none.
    static QString lastWord(const QString &name) { return ShownEntry::lastWord(name); }

    // ---- State to show ------------------------------------------------------

    bool isLoaded() const { return m_loaded; }
    bool employeeMode() const { return m_employeeMode; }

    QString field(int field) const { return m_entry.field(field); }
    bool flag(Flag flag) const { return m_entry.flag(flag); }
    // The boxes' limits, widths and captions, and the window's other texts, as the
    // country has them.
    const AddressForm &form() const { return m_form; }
    int maxLength(int field) const { return m_form.maxLength(field); }
    int boxChars(int field) const { return m_form.boxChars(field); }
    QString fieldCaption(int field) const { return m_form.fieldCaption(field); }
    QString taxNumberCaption() const { return m_form.taxNumberCaption(); }
    const BankLayout &bankLayout() const { return m_form.bankLayout(); }
    const Captions &captions() const { return m_form.captions(); }

    const ComboList &nameList() const { return m_nameList; }
    const ComboList &headingList() const { return m_entry.headingList(); }
    QString notes() const { return m_entry.notes(); }

    // "Addresses", ["Pay Information",] "Notes".
    QStringList tabCaptions() const;
    int currentTab() const { return m_currentTab; }
    static constexpr int firstTab() { return 0; }
    int payTab() const { return m_employeeMode ? 1 : -1; }
    int notesTab() const { return m_employeeMode ? 2 : 1; }

    bool editPaysEnabled() const { return m_editPaysEnabled; }
    bool addDeleteVisible() const { return m_addDeleteVisible; }
    bool payFrameVisible() const { return m_payFrameVisible; }
    bool notesEnabled() const { return m_notesEnabled; }
    bool letterStripEnabled() const { return m_letterStripEnabled; }
    // The name list's LIKE pattern: "*" or a letter and "*".
    QString filter() const { return m_filter; }
    // The search box's text, and whether the list holds what it found.
    QString searchText() const { return m_searchText; }
    bool searching() const { return m_searching; }

    bool employeeSwitchVisible() const { return m_employeeMode; }
    // Entries can be inactive in these books (false when old books could not be given
    // the column): the entry's Inactive box, and in the address book the switch.
    bool inactiveAvailable() const { return m_inactiveAvailable; }
    bool inactiveSwitchVisible() const { return m_inactiveAvailable && !m_employeeMode; }
    bool inactiveSwitchChecked() const { return m_showInactive; }
    bool employeeSwitchChecked() const { return m_employeeSwitchChecked; }
    QString employeeSwitchToolTip() const { return m_employeeSwitchToolTip; }

    // The letter strip's colour, the colour-scheme entry "CvHeader".
    SuiteColour headerColour() const { return m_headerColour; }
    QString windowTitle() const;
    QString helpFile() const { return m_helpFile; }
    QString helpTopic() const { return m_helpTopic; }
    bool helpOpen() const { return m_helpOpen; }

    // True while records move: the view shows the hourglass.
    bool busy() const { return m_busy; }

    // The entry whose values are on the first tab, 0 when none is shown.
    qint32 shownAddressId() const { return m_entry.id(); }
    // Its Employees row in employee mode, 0 when it has none.
    qint32 employeeId() const { return m_employeeId; }

    // The window's open data files, one connection with the wage file attached;
    // null before load and after unload.
    Database *farmDatabase() const { return m_farm.get(); }
    Database *wageDatabase() const { return m_farm.get(); }

    // What a view copies only when it moved on: the form's texts and limits (set at
    // load), and the shown entry's values other than the user's own edits.
    quint64 formRevision() const { return m_formRevision; }
    quint64 shownRevision() const { return m_entry.shownRevision(); }

signals:
    void busyChanged(bool busy);
    // After an Add, the focus goes to the address fields.
    void focusFieldRequested(int field);

private:
    Database &farm() const;
    AddressStore store() const { return AddressStore(farm()); }
    void setBusy(bool busy);
    // The current employees switch and its stored setting; the caller rebuilds the list.
    void setEmployeeSwitch(bool checked);
    void cmbNameClick();
    bool saveTab(int tab);
    bool saveEntry(bool withNotes);
    void prepareTab(int tab);
    void leaveShownEntry();
    void refreshList();
    bool identifierKept(int field, int nextField);
    void goToEntry(qint32 addressId);
    void listAddresses(const AddressStore &names, const QString &filter);
    void loadSearch();
    void endSearch();

    LaunchContext &m_launch;
    std::unique_ptr<Database> m_farm;
    InputBoxService *m_inputBox = nullptr;
    PayDetailsOpener *m_payOpener = nullptr;
    HelpOpener *m_helpOpener = nullptr;
    PayInformationTab *m_wageTab = nullptr;

    bool m_loaded = false;
    bool m_employeeMode = false;

    ShownEntry m_entry;
    qint32 m_employeeId = 0; // the shown entry's Employees row

    ComboList m_nameList;
    QString m_filter = QStringLiteral("*");
    NameSearch m_search; // loaded at the first search, dropped when the list is rebuilt
    QString m_searchText;
    bool m_searching = false;

    int m_currentTab = 0;
    bool m_editPaysEnabled = false;
    bool m_addDeleteVisible = true;
    bool m_payFrameVisible = false;
    bool m_notesEnabled = false;
    bool m_letterStripEnabled = true;
    bool m_employeeSwitchChecked = false;
    bool m_inactiveAvailable = false;
    bool m_showInactive = false;
    bool m_hidingInactive = false; // the list lacks inactive entries it would otherwise hold
    QString m_employeeSwitchToolTip;

    AddressForm m_form;
    SuiteColour m_headerColour;
    QString m_helpFile;
    QString m_helpTopic;
    bool m_helpOpen = false;
    bool m_busy = false;

    quint64 m_formRevision = 0;
    qint32 m_country = 0; // dialling code: which identifiers are checked
    // The entry and value last warned about, tax number and bank account.
    QString m_warnedTaxNumber;
    QString m_warnedBankAccount;
};
