#include "paydetails/paydetailseditor.h"

#include "config/settings.h"
#include "config/suiteconfig.h"
#include "config/suitedatabase.h"
#include "controls/filldaovbcombo.h"
#include "core/clock.h"
#include "core/cverror.h"
#include "data/changedbyanother.h"
#include "data/database.h"
#include "data/jetvalue.h"
#include "data/money.h"
#include "data/recordset.h"
#include "data/serialdate.h"
#include "messages/addressmessages.h"
#include "messages/errorreport.h"
#include "messages/messageservice.h"
#include "messages/savechanges.h"
#include "paydetails/changelog.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/deductions.h"
#include "paydetails/employeedefaults.h"
#include "paydetails/kiwisaver.h"
#include "paydetails/payeinfo.h"
#include "paydetails/payfields.h"
#include "paydetails/paylists.h"

namespace {

// The bound column of each text field and list; the index decides the column.
using PayFields::listColumns;
using PayFields::textColumns;

// The contribution table's own first row, standing for no rate chosen.
const QString kPleaseSelect = QStringLiteral("<Please Select>");
constexpr qint32 kDefaultEnrolType = 6;

// An entry's employee row, by the entry's AddressID.
const QString kEmployeeQuery =
    QStringLiteral("Select Distinctrow * from Employees where AddressID = ?");

// A default the suite reports under the look-up's own name when it cannot be read, and then
// goes on with 0.
qint32 lookedUp(QLatin1String origin, const std::function<qint32()> &lookUp)
{
    qint32 id = 0;
    reportedStep(origin, [&] { id = lookUp(); });
    return id;
}

// The cashbook heading proposed for wages. A main file whose setting cannot be read is
// reported as the suite always has (under the PAYE look-up, headed with the setting's name),
// and the INI's value serves.
qint32 proposedHeading(Database &farm)
{
    const QString column = QStringLiteral("WageAccount");
    QVariant setting;
    try {
        setting = PayeInfo(farm, column, iniWageAccount());
    } catch (const CvError &e) {
        showErrorReport(e, ErrorOrigin::PayeInfo, payeInfoHeading(e, column));
    }
    return wageAccount(setting);
}

} // namespace

// The identifiers a load selects in the lists.
struct PayDetailsEditor::Selection
{
    qint32 bank = 1;
    qint32 enterprise = 1;
    qint32 enrolType = 0;
    qint32 heading = 0;
    qint32 occupation = 0;
    qint32 taxType = 0;
    qint32 interval = 0;
    qint32 deduction = 0;
    qint32 employerRate = 0;
};

PayDetailsEditor::PayDetailsEditor(Host host, QObject *parent)
    : WindowLogic(parent), m_host(host),
      m_payRateCaption(host == Host::Dialog ? QStringLiteral("Pay Rate")
                                            : QStringLiteral("Pay Rate per head")),
      m_grid(std::make_unique<DeductionGrid>())
{
}

PayDetailsEditor::~PayDetailsEditor() = default;

QString PayDetailsEditor::ePaymentCaption() const
{
    return m_host == Host::Dialog ? QStringLiteral("ePayment") : QStringLiteral("e-Payment");
}

QString PayDetailsEditor::text(int field) const
{
    return m_text.at(std::size_t(field));
}

ComboList &PayDetailsEditor::list(int index)
{
    return m_lists.at(std::size_t(index));
}

const ComboList &PayDetailsEditor::list(int index) const
{
    return m_lists.at(std::size_t(index));
}

QDate PayDetailsEditor::pickerDate(int field) const
{
    return PayFields::hasPicker(field) ? m_pickers.at(std::size_t(field)) : QDate();
}

QString PayDetailsEditor::origin(const char *procedure) const
{
    return errorOrigin(QLatin1String(m_host == Host::Dialog ? "frmPaydetails" : "frmAddresses"),
                       QLatin1String(procedure));
}

// Both files are on the one connection: the two names say which file a statement reads.
// Without them (the dialog could not open them) each use fails as the address window's does.
Database &PayDetailsEditor::farm()
{
    return requireDatabase(m_db, QStringLiteral("PayDetailsEditor"));
}

Database &PayDetailsEditor::wage()
{
    return farm();
}

void PayDetailsEditor::loadFromSettings(qint32 addressId)
{
    try {
        m_ownDb = openSuiteDatabase();
    } catch (const CvError &e) {
        showErrorReport(e, errorOrigin(QLatin1String("frmPaydetails"), QLatin1String("Form_Load")));
        return;
    }
    load(*m_ownDb, addressId);
}

void PayDetailsEditor::closeDatabases()
{
    m_db = nullptr;
    m_ownDb.reset();
}

void PayDetailsEditor::load(Database &suite, qint32 addressId)
{
    m_db = &suite;
    m_addressId = addressId;
    m_pendingLog.clear();
    m_pendingLogColumns.clear();
    m_pendingLogChanges.clear();
    m_takeTheirs.clear();
    try {
        const Selection chosen = readRow(suite);
        fillLists(suite, chosen);
        fillDeductions(suite);
        m_windowCaption = QStringLiteral("Employee Pay Information");
        m_okCaption = QStringLiteral("&OK");
    } catch (const CvError &e) {
        showErrorReport(e, origin(m_host == Host::Dialog ? "Form_Activate" : "LoadWageTab"));
    }
    markChanged();
}

// The entry's name and its Employees row, or a new employee's defaults; both files are on
// the one connection.
PayDetailsEditor::Selection PayDetailsEditor::readRow(Database &suite)
{
    {
        Recordset entry(
            suite, QStringLiteral("Select distinctrow BusName from Addresses where AddressID = ?"),
            {m_addressId}, Recordset::Snapshot);
        m_entryName = entry.eof() ? QString() : entry.value(0).toString();
    }
    Selection chosen;
    chosen.heading = proposedHeading(suite);
    qint32 employee = 0;
    Recordset rs(suite, kEmployeeQuery, {m_addressId}, Recordset::Snapshot);
    m_readRow.clear();
    for (int i = 0; !rs.eof() && i < rs.fieldCount(); ++i)
        m_readRow.insert(rs.field(i).name.toCaseFolded(), rs.storedValue(i));
    if (rs.eof()) {
        for (QString &t : m_text)
            t.clear();
        chosen.occupation = lookedUp(ErrorOrigin::DefaultEmployeeTypeID,
                                     [&] { return DefaultEmployeeTypeID(suite); });
        chosen.taxType =
            lookedUp(ErrorOrigin::DefaultTaxTypeID, [&] { return DefaultTaxTypeID(suite); });
        chosen.interval = lookedUp(ErrorOrigin::DefaultPayIntervalID,
                                   [&] { return DefaultPayIntervalID(suite); });
        chosen.enrolType = kDefaultEnrolType;
        m_kiwiSaverEnrolled = false;
        m_excludeIR348 = false;
        m_includeESCT = false;
    } else {
        for (int i = 0; i < TextCount; ++i) {
            const QVariant v = rs.value(QString::fromLatin1(textColumns[i]));
            QString &t = m_text[std::size_t(i)];
            if (v.isNull()) {
                t.clear();
                if (PayFields::hasPicker(i))
                    m_pickers[std::size_t(i)] = today();
            } else if (v.metaType() == QMetaType::fromType<Money>()) {
                t = v.value<Money>().toString();
            } else if (v.metaType() == QMetaType::fromType<QDateTime>()) {
                const QDate d = v.toDateTime().date();
                t = SerialDate::toShortText(d);
                if (PayFields::isDate(i))
                    m_pickers[std::size_t(i)] = d;
            } else {
                t = v.toString();
            }
        }
        chosen.occupation = qint32(rs.value(QStringLiteral("EmployeeTypeID")).toLongLong());
        chosen.taxType = qint32(rs.value(QStringLiteral("TaxTypeID")).toLongLong());
        chosen.interval = qint32(rs.value(QStringLiteral("PayIntervalID")).toLongLong());
        employee = qint32(rs.value(QStringLiteral("EmployeeID")).toLongLong());
        const QVariant enrol = rs.value(QStringLiteral("KiwiSaverEnrolID"));
        chosen.enrolType = enrol.isNull() ? kDefaultEnrolType : qint32(enrol.toLongLong());
        if (rs.value(QStringLiteral("KiwiSaverEnrolled")).toBool()) {
            m_kiwiSaverEnrolled = true;
            chosen.deduction = lookedUp(ErrorOrigin::KiwiSaverDeductID,
                                        [&] { return KiwiSaverDeductID(suite, employee); });
            const QVariant rate = rs.value(QStringLiteral("KiwiSaverEmployerRateID"));
            chosen.employerRate = rate.isNull() ? kDefaultEnrolType : qint32(rate.toLongLong());
        } else {
            m_kiwiSaverEnrolled = false;
            chosen.employerRate = kDefaultEnrolType;
        }
        const QString &start = m_text[KiwiSaverStartDate];
        if (!start.isEmpty()) {
            if (const auto d = PayFields::typedDate(start))
                m_pickers[KiwiSaverStartDate] = *d;
        }
        const QVariant bankValue = rs.value(QStringLiteral("BankID"));
        chosen.bank = bankValue.isNull() ? 1 : qint32(bankValue.toLongLong());
        const QVariant enterpriseValue = rs.value(QStringLiteral("EnterpriseID"));
        chosen.enterprise = enterpriseValue.isNull() ? 1 : qint32(enterpriseValue.toLongLong());
        m_payRateCaption = payRateUnitCaption(chosen.occupation, suite);
        // The dialog's tick is not bound: it shows the row's value so a close
        // does not clear it.
        m_excludeIR348 = rs.value(QStringLiteral("ExcludeIR348")).toBool();
        m_includeESCT = rs.value(QStringLiteral("IncludeESCT")).toBool();
    }
    m_employeeId = employee;
    m_bankId = chosen.bank;
    return chosen;
}

// A list that cannot be filled is reported under the filler's name and left as far as it
// got; the others are filled all the same.
void PayDetailsEditor::fillLists(Database &suite, const Selection &chosen)
{
    const auto fill = [](const std::function<void()> &step) {
        reportedStep(ErrorOrigin::FillDaoVBCombo, step);
    };
    fill([&] { fillOccupationList(suite, m_lists[Occupation], chosen.occupation); });
    fill([&] { fillTaxTypeList(suite, m_lists[TaxType], chosen.taxType, countryCode()); });
    fill([&] { fillPayIntervalList(suite, m_lists[PayInterval], chosen.interval); });
    fill([&] { fillKiwiSaverDeductionList(suite, m_lists[EmployeeRate], chosen.deduction); });
    fill([&] { fillEmployerRateList(suite, m_lists[EmployerRate], chosen.employerRate); });
    fill([&] { fillEnrolmentTypeList(suite, m_lists[EnrolmentType], chosen.enrolType); });
    // Read once: closing must not meet a lock before its save does.
    m_memberTypes = kiwiSaverMemberTypes(suite);
    fill([&] { fillHeadingList(suite, m_lists[Heading], chosen.heading); });
    fill([&] { fillEnterpriseList(suite, m_lists[Enterprise], chosen.enterprise); });
    m_nonCash = chosen.bank >= FirstEPaymentBankId;
    // Opened on an employee, the page should read as it will after a click:
    // the label of the bank's mode, and the rates only for a member.
    m_cashbookCaption =
        m_nonCash ? QStringLiteral("Payments (Net)") : QStringLiteral("Cashbook (Gross)");
    m_ratesVisible = m_kiwiSaverEnrolled;
    fillBankList();
}

// Each part of the grid that cannot be read is told on its own; the next is loaded all the
// same.
void PayDetailsEditor::fillDeductions(Database &wage)
{
    reportedStep(ErrorOrigin::FillGridArray, [&] {
        fillDeductionRows(wage, m_employeeId, *m_grid);
        m_readDeductions = storedDeductions(wage, m_employeeId);
        m_gridAsRead = gridDeductions(*m_grid);
    });
    try {
        fillDeductionList(wage, *m_grid, countryCode());
    } catch (const CvError &) {
        msgDatabaseOutOfDate(QStringLiteral("DeductNames"));
    }
    reportedStep(ErrorOrigin::FillPayInfoArray, [&] { fillDeductionPercentages(wage, *m_grid); });
}

void PayDetailsEditor::fillBankList()
{
    m_bankListEnabled = true;
    Database &db = farm();
    m_nonCash = m_bankId >= FirstEPaymentBankId;
    reportedStep(ErrorOrigin::FillDaoVBCombo, [&] { ::fillBankList(db, m_lists[Bank], m_bankId); });
}

// The types were read with the load; another is looked up, and a look-up that fails is
// reported under its own name, as it always was, and taken as no member.
bool PayDetailsEditor::memberTypeShown()
{
    const QString type = m_lists[EnrolmentType].text();
    const auto known = m_memberTypes.constFind(type);
    if (known != m_memberTypes.constEnd())
        return known.value();
    Database &db = wage();
    bool member = false;
    reportedStep(ErrorOrigin::IsKiwiSaverMemberType,
                 [&] { member = IsKiwiSaverMemberType(db, type); });
    return member;
}

bool PayDetailsEditor::SaveWageForm()
{
    return save();
}

bool PayDetailsEditor::SaveWageTab()
{
    return save();
}

bool PayDetailsEditor::save()
{
    if (!m_db)
        return true;
    const QString what = m_entryName.isEmpty()
                             ? QStringLiteral("the pay details")
                             : QStringLiteral("the pay details of %1").arg(m_entryName);
    // The row, its child rows and the change-log lines are one transaction across both
    // files: the notes never tell of a change that was not stored.
    const bool member = memberTypeShown();
    const SaveOutcome outcome = saveChanges(*m_db, what, [this, member] {
        saveRow(member);
        appendToNotes(*m_db, m_pendingLog, m_addressId);
    });
    // Discarded, or saved with another user's values taken: show what is stored.
    if (outcome == SaveOutcome::Discarded ||
        (outcome == SaveOutcome::Saved && !m_takeTheirs.isEmpty()))
        load(*m_db, m_addressId);
    if (outcome != SaveOutcome::Kept) {
        m_pendingLog.clear();
        m_pendingLogColumns.clear();
        m_pendingLogChanges.clear();
    }
    markChanged();
    return outcome != SaveOutcome::Kept;
}

void PayDetailsEditor::saveRow(bool member)
{
    Database &db = wage();
    Recordset rs(db, kEmployeeQuery, {m_addressId});
    if (rs.eof()) {
        rs.addNew();
        rs.setValue(QStringLiteral("AddressID"), m_addressId);
    } else {
        rs.edit();
    }
    // Every value was checked when its field was left, and the boxes stop at their
    // columns' lengths: a value the column still refuses fails the whole save, which
    // then keeps what the user typed, rather than storing the rest without it.
    for (int i = 0; i < KiwiSaverStartDate; ++i) {
        const QString &t = m_text[std::size_t(i)];
        rs.setValue(QString::fromLatin1(textColumns[i]), t.isEmpty() ? QVariant() : QVariant(t));
    }
    for (int i = Occupation; i <= Enterprise; ++i) {
        if (i == Heading || m_lists[std::size_t(i)].listIndex() < 0)
            continue;
        rs.setValue(QString::fromLatin1(listColumns[i]), m_lists[std::size_t(i)].currentData());
    }
    const qint32 employee = qint32(rs.value(QStringLiteral("EmployeeID")).toLongLong());

    rs.setValue(QStringLiteral("KiwiSaverEnrolled"), member);
    rs.setValue(QStringLiteral("KiwiSaverEnrolID"), m_lists[EnrolmentType].currentData());

    // An empty start date writes nothing: the editor never clears a stored one.
    if (const auto start = PayFields::typedDate(m_text[KiwiSaverStartDate]))
        rs.setValue(QStringLiteral("KiwiSaverStartDate"), QDateTime(*start, QTime(0, 0)));

    const qint32 employerRate = m_lists[EmployerRate].currentData();
    if (member) {
        SaveKiwiSaverDeductions(db, employee, m_lists[EmployeeRate].currentData(), false);
        rs.setValue(QStringLiteral("KiwiSaverEmployerRateID"), employerRate);
        SaveKiwiSaverContributions(db, employee, employerRate, false);
    } else {
        SaveKiwiSaverDeductions(db, employee, 0, true);
        rs.setValue(QStringLiteral("KiwiSaverEmployerRateID"), QVariant());
        SaveKiwiSaverContributions(db, employee, 0, true);
    }
    m_kiwiSaverEnrolled = member;
    rs.setValue(QStringLiteral("ExcludeIR348"), m_excludeIR348);
    if (rs.editMode() == Recordset::EditInProgress)
        guardOthersChanges(rs);
    rs.update();
    // What is stored now is what the next save compares with.
    rs.setBookmark(rs.lastModified());
    for (int i = 0; i < rs.fieldCount(); ++i)
        m_readRow.insert(rs.field(i).name.toCaseFolded(), rs.storedValue(i));
    m_employeeId = employee;
    saveDeductions(db, employee);
}

// The grid is written whole only over the rows it was read from: rows another user
// changed since stay theirs unless this user changed the grid too and keeps theirs.
void PayDetailsEditor::saveDeductions(Database &db, qint32 employee)
{
    static const QString key = QStringLiteral("deductions");
    const QString stored = storedDeductions(db, employee);
    const bool theirs = stored != m_readDeductions;
    const bool mine = gridDeductions(*m_grid) != m_gridAsRead;
    if (theirs && (!mine || m_takeTheirs.contains(key))) {
        m_takeTheirs.insert(key); // shown as stored once saved
    } else {
        if (theirs) {
            throw ChangedByAnother(
                QStringLiteral("PayDetailsEditor"),
                QStringLiteral("Someone else changed these deductions since they were opened."),
                {{QStringLiteral("Deductions"), QStringLiteral("as on your screen"),
                  QStringLiteral("as the other user saved them")}},
                [this, stored](bool keepMine) {
                    if (keepMine)
                        m_readDeductions = stored;
                    else
                        m_takeTheirs.insert(key);
                });
        }
        SaveDeductXArray(*m_grid, db, employee);
    }
    // A grid as it was read wrote the rows stored: only a changed one is read back.
    m_readDeductions =
        mine && !m_takeTheirs.contains(key) ? storedDeductions(db, employee) : stored;
    m_gridAsRead = gridDeductions(*m_grid);
}

void PayDetailsEditor::guardOthersChanges(Recordset &rs)
{
    const std::vector<int> conflicts = rs.mergeChangesOfOthers(m_readRow, m_takeTheirs);
    if (conflicts.empty())
        return;
    std::vector<ChangedByAnother::Difference> differences;
    QStringList columns;
    QVariantList theirs;
    for (const int i : conflicts) {
        const QString column = rs.field(i).name;
        columns << column.toCaseFolded();
        theirs << rs.storedBeforeEdit(i);
        differences.push_back({PayFields::columnCaption(column),
                               storedText(rs, i, rs.storedValue(i)),
                               storedText(rs, i, rs.storedBeforeEdit(i))});
    }
    throw ChangedByAnother(
        QStringLiteral("PayDetailsEditor"),
        QStringLiteral("Someone else changed these pay details since they were opened."),
        std::move(differences), [this, columns, theirs](bool keepMine) {
            for (qsizetype k = 0; k < columns.size(); ++k) {
                if (keepMine) {
                    m_readRow.insert(columns[k], theirs[k]); // theirs is seen: mine goes over it
                    continue;
                }
                m_takeTheirs.insert(columns[k]);
                // The change log tells only of changes stored.
                for (qsizetype l = m_pendingLog.size() - 1; l >= 0; --l) {
                    if (m_pendingLogColumns[l] == columns[k]) {
                        m_pendingLog.removeAt(l);
                        m_pendingLogColumns.removeAt(l);
                        m_pendingLogChanges.removeAt(l);
                    }
                }
            }
        });
}

// A stored value as the window shows it: a list's item by its key, money and dates as
// typed.
QString PayDetailsEditor::storedText(const Recordset &rs, int index, const QVariant &stored) const
{
    if (stored.isNull())
        return QStringLiteral("(empty)");
    const QString column = rs.field(index).name;
    for (int l = 0; l < ListCount; ++l) {
        if (listColumns[l] &&
            column.compare(QLatin1String(listColumns[l]), Qt::CaseInsensitive) == 0) {
            for (const ComboItem &item : m_lists[std::size_t(l)].items()) {
                if (item.data == stored.toLongLong())
                    return item.text;
            }
        }
    }
    const QVariant v = JetValue::fromStorage(stored, rs.field(index).type);
    if (v.metaType() == QMetaType::fromType<Money>())
        return v.value<Money>().toString();
    if (v.metaType() == QMetaType::fromType<QDateTime>())
        return SerialDate::toShortText(v.toDate());
    if (v.metaType() == QMetaType::fromType<bool>())
        return v.toBool() ? QStringLiteral("Yes") : QStringLiteral("No");
    return v.toString();
}

bool PayDetailsEditor::queryClose()
{
    try {
        if (memberTypeShown() && m_lists[EmployerRate].text() == kPleaseSelect) {
            SuiteMessageBox(QStringLiteral("KiwiSaver Employer Contribution Rate has not been "
                                           "selected"),
                            ButtonsOk, FirmName(), QStringLiteral("Incomplete Data"), QVariant(),
                            IconInformation, true);
            return true;
        }
    } catch (const CvError &e) {
        showErrorReport(
            e, errorOrigin(QLatin1String("frmPaydetails"), QLatin1String("Form_QueryUnload")));
    }
    if (m_host == Host::Dialog) {
        if (!SaveWageForm())
            return true;
        closeDatabases();
    } else if (!SaveWageTab()) {
        return true;
    }
    return false;
}

void PayDetailsEditor::excludeIR348Clicked(bool ticked)
{
    m_excludeIR348 = ticked;
    if (m_host == Host::Dialog)
        SaveWageForm();
    else
        markChanged();
}

void PayDetailsEditor::esctClicked(bool ticked)
{
    m_includeESCT = ticked;
    if (m_host == Host::WagesTab) {
        // The tab's bound employee row stores this tick, not SaveWageTab.
        if (m_db) {
            const SaveOutcome outcome =
                saveChanges(*m_db, QStringLiteral("the ESCT setting"), [this, ticked] {
                    Recordset rs(wage(), kEmployeeQuery, {m_addressId});
                    if (!rs.eof()) {
                        rs.edit();
                        rs.setValue(QStringLiteral("IncludeESCT"), ticked);
                        rs.update();
                    }
                });
            if (outcome == SaveOutcome::Discarded)
                m_includeESCT = !ticked;
        }
    }
    markChanged();
}
