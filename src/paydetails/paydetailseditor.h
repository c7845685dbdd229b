#pragma once

#include "controls/combolist.h"
#include "controls/windowlogic.h"

#include <array>
#include <memory>
#include <QDate>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

class Database;
class DeductionGrid;
class InputBoxService;
class Recordset;

// One employee's pay details as the pay details dialog (frmPaydetails) and the
// address window's wages tab both edit them: the Employees row, KiwiSaver
// settings and standing deductions. The view shows this state, forwards the
// user's events here, and resyncs whenever changed() fires.
//
// Errors: each event, load and save catches what fails under it and reports it once,
// naming the host's procedure (a save through saveChanges). A list, a default or a
// setting that cannot be read is reported under its look-up's own name, and the
// editor goes on without it, as the suite always has.
class PayDetailsEditor : public WindowLogic
{
    Q_OBJECT

public:
    enum class Host {
        Dialog,  // frmPaydetails: saves with SaveWageForm, on every close
        WagesTab // frmAddresses' wages tab (Text2): saves with SaveWageTab
    };

    // Text fields (TxtWage / Text2); the index decides the column.
    enum TextField {
        Birthdate = 0,
        IRDnumber = 1,
        PayRate = 2,
        Yearlytotal = 3,
        Datehired = 4,
        Datefinished = 5,
        TaxCode = 6,
        KiwiSaverStartDate = 7,
        TextCount = 8
    };

    // Lists (cmbWage); the index decides the column.
    // The longest text a field's column takes (its TEXT(n)); 0 for dates and money, which
    // are checked when the field is left. The view stops typing there, so that nothing
    // typed is silently refused by the save.
    static int maxLength(int field);

    enum ListField {
        Occupation = 0,
        TaxType = 1,
        PayInterval = 2,
        Bank = 3,
        Heading = 4, // shown, never saved
        Enterprise = 5,
        EnrolmentType = 6,
        EmployeeRate = 7, // the KiwiSaver deduction
        EmployerRate = 8,
        ListCount = 9
    };

    explicit PayDetailsEditor(Host host, QObject *parent = nullptr);
    ~PayDetailsEditor() override;

    Host host() const { return m_host; }

    // Where a pay rate, salary or tax type change asks for its reason; none: not asked.
    void setInputBox(InputBoxService *inputBox) { m_inputBox = inputBox; }

    // Loading. The dialog opens its own connection to the two data files (paths
    // from Settings) and keeps it until closeDatabases(); the tab passes the
    // window's own. Either way it is the main file with the wage file attached, so
    // that a save commits both files together.
    void loadFromSettings(qint32 addressId);
    void load(Database &suite, qint32 addressId);
    void closeDatabases();

    // State the view shows.
    QString text(int field) const;
    ComboList &list(int index);
    const ComboList &list(int index) const;
    bool kiwiSaverEnrolled() const { return m_kiwiSaverEnrolled; } // chkKiwiSaverEnrolled
    bool excludeIR348() const { return m_excludeIR348; }           // chkExcludeIR348
    bool nonCash() const { return m_nonCash; }                     // chkNonCash
    bool includeESCT() const { return m_includeESCT; }             // chkIncudeESCT (tab only)
    bool bankListEnabled() const { return m_bankListEnabled; }
    // Payslabel 4: "Pay Rate" / "Pay Rate per head" until captioned by unit.
    QString payRateCaption() const { return m_payRateCaption; }
    // Payslabel 13: "Cashbook (Gross)" by design; the e-payment switch re-captions it.
    QString cashbookCaption() const { return m_cashbookCaption; }
    QString ePaymentCaption() const; // "ePayment" / "e-Payment"
    QString windowCaption() const { return m_windowCaption; }
    QString okCaption() const { return m_okCaption; }
    // Lists 7 and 8 with their labels (and, on the tab, the ESCT box): shown
    // until an enrolment type is chosen; a load does not change it.
    bool kiwiSaverRatesVisible() const { return m_ratesVisible; }
    bool esctVisible() const { return m_host == Host::WagesTab && m_ratesVisible; }
    // The date picker beside text field 0, 4, 5 or 7; invalid for other fields
    // and until a load sets it (the picker then keeps the date it has).
    QDate pickerDate(int field) const;
    qint32 addressId() const { return m_addressId; }
    qint32 employeeId() const { return m_employeeId; }
    DeductionGrid &deductionGrid() { return *m_grid; }
    const DeductionGrid &deductionGrid() const { return *m_grid; }

    // Events the view forwards.
    void textFocusIn(int field);                     // the view selects the whole text itself
    void textEdited(int field, const QString &text); // no changed(): the view shows it
    // False when the field holds text its column cannot take (an amount or a date
    // that is not one), or a tax number that fails its check and the user chose to go
    // back to it rather than keep it: the user has been told, the text stays as typed,
    // and the view keeps the user in the field. A valid one is put in its normal form.
    bool textFocusOut(int field);
    void listFocusIn(int index);
    void listChosen(int index, int itemIndex); // -1: nothing selected
    void listFocusOut(int index);
    void enrolmentClicked(); // list 6 clicked
    void nonCashClicked(bool ticked);
    void excludeIR348Clicked(bool ticked); // the dialog saves at once
    void esctClicked(bool ticked);         // the tab stores IncludeESCT at once
    void datePicked(int field, QDate date);
    // Whether a grid column takes what was typed into a cell; when it does not, the
    // user is told in plain words what the column takes. The view checks before it
    // lets the user leave the cell.
    bool checkGridCell(int column, const QVariant &typed) const;
    // The same without telling: the message, empty when the column takes the value.
    QString gridCellProblem(int column, const QVariant &value) const;
    // A grid cell edited by the user: stores the value and recomputes the rate. A value
    // the column cannot take is refused (false) with a message, and nothing changes.
    bool gridCellEdited(int row, int column, const QVariant &value);
    // Removes a standing deduction from the grid; the save then drops its row.
    void deleteDeductionRow(int row);

    // The dialog's unload: true keeps it open ("Incomplete Data", or a save that
    // failed and the user went back to it); otherwise the pay details have been saved
    // (or the user let them go) and the data files closed.
    bool queryClose();

    // Save the pay details with the change-log lines composed since the last save, in
    // one transaction. False when nothing could be saved and the user went back to the
    // edit; after a discard the stored pay details are shown again.
    bool SaveWageForm();
    bool SaveWageTab();

    // Change-log lines composed as fields were left, waiting for the save that stores
    // the changes they tell of.
    const QStringList &pendingLog() const { return m_pendingLog; }

private:
    struct Selection;

    // The closing text of an error report from one of the host's procedures.
    QString origin(const char *procedure) const;
    Database &farm();
    Database &wage();
    // Parts of load(); they throw.
    Selection readRow(Database &suite);
    void fillLists(Database &suite, const Selection &chosen);
    void fillDeductions(Database &wage);
    void fillBankList();
    void captionPayRate(qint32 employeeTypeId);
    bool memberTypeShown();
    void showRatesFor(bool member);
    void normaliseText(int field);
    QString textProblem(int field) const;
    bool taxNumberKept();
    // Holds the line, signed with who made the change and, when whyPrompt is given, the
    // reason the user gives for it.
    void logLine(const QString &line, const QString &column, const QString &whyPrompt = {});
    // Throws ChangedByAnother when rs (being edited) would overwrite another user's values.
    void guardOthersChanges(Recordset &rs);
    void saveDeductions(Database &db, qint32 employee);
    QString storedText(const Recordset &rs, int index, const QVariant &stored) const;
    bool save();
    void saveRow(bool member);

    Host m_host;
    std::unique_ptr<Database> m_ownDb;
    Database *m_db = nullptr;
    qint32 m_addressId = 0;
    QString m_entryName; // BusName, for messages
    qint32 m_employeeId = 0;
    qint32 m_bankId = 1;
    std::array<QString, TextCount> m_text;
    std::array<ComboList, ListCount> m_lists;
    std::array<QDate, TextCount> m_pickers;
    bool m_kiwiSaverEnrolled = false;
    bool m_excludeIR348 = false;
    bool m_nonCash = false;
    bool m_includeESCT = false;
    bool m_bankListEnabled = false;
    bool m_ratesVisible = true;
    QString m_payRateCaption;
    QString m_cashbookCaption = QStringLiteral("Cashbook (Gross)");
    QString m_windowCaption;
    QString m_okCaption;
    // What a field or list held when it got the focus: the old value for
    // reverting and for the change log.
    std::array<QVariant, TextCount> m_focusValue;
    std::array<QString, TextCount> m_focusText;
    std::array<QString, ListCount> m_focusListText;
    std::unique_ptr<DeductionGrid> m_grid;
    QStringList m_pendingLog;
    QString m_warnedTaxNumber;       // the employee and tax number last warned about
    QStringList m_pendingLogColumns; // the column each line tells of
    QStringList m_pendingLogChanges; // each line as composed, before who and why
    InputBoxService *m_inputBox = nullptr;
    QHash<QString, bool> m_memberTypes; // KiwiSaver enrolment types: member or not
    // The employee row as this window read it (stored values by folded column name), so
    // that a save does not overwrite unseen what another user stored meanwhile; and the
    // columns where the user chose to take the other user's value.
    QHash<QString, QVariant> m_readRow;
    QSet<QString> m_takeTheirs;
    // The same for the ordinary deductions, which a save replaces whole: the rows as
    // stored when read, and the grid as it was then.
    QString m_readDeductions;
    QString m_gridAsRead;
};
