#include "paydetails/paydetailseditor.h"

#include "controls/filldaovbcombo.h"
#include "core/cverror.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "data/serialdate.h"
#include "paydetails/changelog.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/deductions.h"
#include "paydetails/employeedefaults.h"
#include "paydetails/kiwisaver.h"
#include "paydetails/paylists.h"
#include "core/clock.h"
#include "messages/errorreport.h"
#include "messages/messageservice.h"
#include "paydetails/payeinfo.h"
#include "messages/savechanges.h"
#include "config/settings.h"
#include "config/suiteconfig.h"
#include "config/suitedatabase.h"

namespace {

// The bound column of each text field and list; the index decides the column.
const char *const kTextColumns[PayDetailsEditor::TextCount] = {
    "Birthdate", "IRDnumber",    "PayRate", "Yearlytotal",
    "Datehired", "Datefinished", "TaxCode", "KiwiSaverStartDate"};
const char *const kListColumns[PayDetailsEditor::ListCount] = {
    "EmployeeTypeID",   "TaxTypeID", "PayIntervalID",
    "BankID",           "HeadingID", "EnterpriseID",
    "KiwiSaverEnrolID", nullptr,     "KiwiSaverEmployerRateID"};

// The contribution table's own first row, standing for no rate chosen.
const QString kPleaseSelect = QStringLiteral("<Please Select>");
constexpr qint32 kDefaultEnrolType = 6;

bool isDateField(int field)
{
    return field == PayDetailsEditor::Birthdate || field == PayDetailsEditor::Datehired ||
           field == PayDetailsEditor::Datefinished;
}

bool isMoneyField(int field)
{
    return field == PayDetailsEditor::PayRate || field == PayDetailsEditor::Yearlytotal;
}

bool hasPicker(int field)
{
    return isDateField(field) || field == PayDetailsEditor::KiwiSaverStartDate;
}

std::optional<QDate> typedDate(const QString &text)
{
    const auto parsed = SerialDate::parse(text);
    return parsed ? std::optional<QDate>(parsed->date()) : std::nullopt;
}

QString employeeQuery(qint32 addressId)
{
    return "Select Distinctrow * from Employees where AddressID = " + QString::number(addressId);
}

// What the user calls a text field in a message.
QString fieldName(int field)
{
    switch (field) {
    case PayDetailsEditor::Birthdate:
        return QStringLiteral("Birth Date");
    case PayDetailsEditor::PayRate:
        return QStringLiteral("Pay Rate");
    case PayDetailsEditor::Yearlytotal:
        return QStringLiteral("Salary");
    case PayDetailsEditor::Datehired:
        return QStringLiteral("Date Hired");
    case PayDetailsEditor::Datefinished:
        return QStringLiteral("Date Finished");
    case PayDetailsEditor::KiwiSaverStartDate:
        return QStringLiteral("KiwiSaver Start Date");
    default:
        return QString();
    }
}

QString notMoney(const QString &typed, const QString &field)
{
    return QStringLiteral("\"%1\" is not an amount of money.\n\n%2 takes an amount such as "
                          "25.50 or $1,250.00.")
        .arg(typed, field);
}

void tellUser(const QString &title, const QString &prompt)
{
    SuiteMessageBox(prompt, ButtonsOk, FirmName(), title, QVariant(), 6, true);
}

} // namespace

PayDetailsEditor::PayDetailsEditor(Host host, QObject *parent)
    : QObject(parent), m_host(host),
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
    return hasPicker(field) ? m_pickers.at(std::size_t(field)) : QDate();
}

QString PayDetailsEditor::origin(const char *procedure) const
{
    return (m_host == Host::Dialog ? QStringLiteral(") was generated in frmPaydetails.")
                                   : QStringLiteral(") was generated in frmAddresses.")) +
           QLatin1String(procedure);
}

void PayDetailsEditor::touch()
{
    ++m_revision;
    emit changed();
}

// Both files are on the one connection: the two names say which file a statement reads.
Database &PayDetailsEditor::farm()
{
    if (!m_db)
        throw CvError(CvError::ObjectRequired, "PayDetailsEditor", "Object required");
    return *m_db;
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
        showErrorReport(e, QStringLiteral(") was generated in frmPaydetails.Form_Load"));
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
    Database &farmDb = suite;
    Database &wageDb = suite;
    m_addressId = addressId;
    m_pendingLog.clear();
    try {
        {
            Recordset entry(farmDb,
                            "Select distinctrow BusName from Addresses where AddressID = " +
                                QString::number(addressId),
                            Recordset::Snapshot);
            m_entryName = entry.eof() ? QString() : entry.value(0).toString();
        }
        Recordset rs(wageDb, employeeQuery(addressId), Recordset::Snapshot);
        qint32 bank = 1;
        qint32 enterprise = 1;
        qint32 enrolType = 0;
        qint32 employee = 0;
        qint32 heading = wageAccount(farmDb);
        qint32 occupation = 0;
        qint32 taxType = 0;
        qint32 interval = 0;
        qint32 deduction = 0;
        qint32 employerRate = 0;

        if (rs.eof()) {
            for (QString &t : m_text)
                t.clear();
            occupation = DefaultEmployeeTypeID(wageDb);
            taxType = DefaultTaxTypeID(wageDb);
            interval = DefaultPayIntervalID(wageDb);
            enrolType = kDefaultEnrolType;
            m_kiwiSaverEnrolled = false;
            m_excludeIR348 = false;
            m_includeESCT = false;
        } else {
            for (int i = 0; i < TextCount; ++i) {
                const QVariant v = rs.value(QString::fromLatin1(kTextColumns[i]));
                QString &t = m_text[std::size_t(i)];
                if (v.isNull()) {
                    t.clear();
                    if (hasPicker(i))
                        m_pickers[std::size_t(i)] = today();
                } else if (v.metaType() == QMetaType::fromType<Money>()) {
                    t = v.value<Money>().toString();
                } else if (v.metaType() == QMetaType::fromType<QDateTime>()) {
                    const QDate d = v.toDateTime().date();
                    t = SerialDate::toShortText(d);
                    if (isDateField(i))
                        m_pickers[std::size_t(i)] = d;
                } else {
                    t = v.toString();
                }
            }
            occupation = qint32(rs.value(QStringLiteral("EmployeeTypeID")).toLongLong());
            taxType = qint32(rs.value(QStringLiteral("TaxTypeID")).toLongLong());
            interval = qint32(rs.value(QStringLiteral("PayIntervalID")).toLongLong());
            employee = qint32(rs.value(QStringLiteral("EmployeeID")).toLongLong());
            const QVariant enrol = rs.value(QStringLiteral("KiwiSaverEnrolID"));
            enrolType = enrol.isNull() ? kDefaultEnrolType : qint32(enrol.toLongLong());
            if (rs.value(QStringLiteral("KiwiSaverEnrolled")).toBool()) {
                m_kiwiSaverEnrolled = true;
                deduction = KiwiSaverDeductID(wageDb, employee);
                const QVariant rate = rs.value(QStringLiteral("KiwiSaverEmployerRateID"));
                employerRate = rate.isNull() ? kDefaultEnrolType : qint32(rate.toLongLong());
            } else {
                m_kiwiSaverEnrolled = false;
                employerRate = kDefaultEnrolType;
            }
            const QString &start = m_text[KiwiSaverStartDate];
            if (!start.isEmpty()) {
                if (const auto d = typedDate(start))
                    m_pickers[KiwiSaverStartDate] = *d;
            }
            const QVariant bankValue = rs.value(QStringLiteral("BankID"));
            bank = bankValue.isNull() ? 1 : qint32(bankValue.toLongLong());
            const QVariant enterpriseValue = rs.value(QStringLiteral("EnterpriseID"));
            enterprise = enterpriseValue.isNull() ? 1 : qint32(enterpriseValue.toLongLong());
            heading = wageAccount(farmDb);
            m_payRateCaption = payRateUnitCaption(occupation, wageDb);
            // The dialog's tick is not bound: it shows the row's value so a close
            // does not clear it.
            m_excludeIR348 = rs.value(QStringLiteral("ExcludeIR348")).toBool();
            m_includeESCT = rs.value(QStringLiteral("IncludeESCT")).toBool();
        }
        m_employeeId = employee;
        m_bankId = bank;

        const QString kiwisaver = QStringLiteral("\"kiwisaver\"");
        FillDaoVBCombo(wageDb, m_lists[Occupation],
                       "Select distinctrow EmployeeTypeID, EmployeeType from EmployeeAwardType "
                       "ORDER BY Employeetype;",
                       occupation, false, QString(), false, true, false);
        FillDaoVBCombo(wageDb, m_lists[TaxType],
                       "Select distinctrow TaxTypeID, TaxName from TaxTypes where CountryPhone = " +
                           QString::number(countryCode()) +
                           " or CountryPhone=0 ORDER BY TaxTypes.Order",
                       taxType, false, QString(), false, true, false);
        FillDaoVBCombo(wageDb, m_lists[PayInterval],
                       "Select distinctrow PayIntervalID, IntervalName from PayInterval ORDER BY "
                       "PayInterval.order;",
                       interval, false, QString(), false, true, false);
        FillDaoVBCombo(wageDb, m_lists[EmployeeRate],
                       "SELECT DeductNames.* From DeductNames WHERE DeductNames.TaxName=" +
                           kiwisaver + " ORDER BY DeductNames.Deductionname",
                       deduction, false, QString(), false, true, false);
        FillDaoVBCombo(wageDb, m_lists[EmployerRate],
                       "SELECT ContributionNames.ContributionNameID, "
                       "ContributionNames.ContributionName, ContributionNames.TaxName "
                       "From ContributionNames WHERE ContributionNames.TaxName=" +
                           kiwisaver + " ORDER BY ContributionNames.ContributionName",
                       employerRate, false, QString(), false, true, false);
        FillDaoVBCombo(wageDb, m_lists[EnrolmentType],
                       QStringLiteral("SELECT KiwiSaverEnrollType.* From KiwiSaverEnrollType"),
                       enrolType, false, QString(), false, true, false);
        // Read once: closing must not meet a lock before its save does.
        m_memberTypes.clear();
        {
            Recordset types(
                wageDb, QStringLiteral("SELECT KSEnrollType, KSMember FROM KiwiSaverEnrollType"),
                Recordset::Snapshot);
            for (; !types.eof(); types.moveNext())
                m_memberTypes.insert(types.value(0).toString(), types.value(1).toBool());
        }
        fillHeadingList(farmDb, m_lists[Heading], heading);
        fillEnterpriseList(farmDb, m_lists[Enterprise], enterprise);
        m_nonCash = bank >= FirstEPaymentBankId;
        // Opened on an employee, the page should read as it will after a click:
        // the label of the bank's mode, and the rates only for a member.
        m_cashbookCaption =
            m_nonCash ? QStringLiteral("Payments (Net)") : QStringLiteral("Cashbook (Gross)");
        m_ratesVisible = m_kiwiSaverEnrolled;
        fillBankList();
        fillEnterpriseList(farmDb, m_lists[Enterprise], enterprise);
        rs.close();

        FillDeductGrid(wageDb, m_employeeId, *m_grid, countryCode());
        m_windowCaption = QStringLiteral("Employee Pay Information");
        m_okCaption = QStringLiteral("&OK");
    } catch (const CvError &e) {
        showErrorReport(e, m_host == Host::Dialog
                               ? QStringLiteral(") was generated in frmPaydetails.Form_Activate")
                               : QStringLiteral(") was generated in frmAddresses.LoadWageTab"));
    }
    touch();
}

void PayDetailsEditor::fillBankList()
{
    m_bankListEnabled = true;
    m_nonCash = ::fillBankList(farm(), m_lists[Bank], m_bankId);
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
    const SaveOutcome outcome = saveChanges(*m_db, what, [this] {
        saveRow();
        appendToNotes(*m_db, m_pendingLog, m_addressId);
    });
    if (outcome == SaveOutcome::Discarded)
        load(*m_db, m_addressId);
    if (outcome != SaveOutcome::Kept)
        m_pendingLog.clear();
    touch();
    return outcome != SaveOutcome::Kept;
}

void PayDetailsEditor::saveRow()
{
    Database &db = wage();
    Recordset rs(db, employeeQuery(m_addressId));
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
        rs.setValue(QString::fromLatin1(kTextColumns[i]), t.isEmpty() ? QVariant() : QVariant(t));
    }
    for (int i = Occupation; i <= Enterprise; ++i) {
        if (i == Heading || m_lists[std::size_t(i)].listIndex() < 0)
            continue;
        rs.setValue(QString::fromLatin1(kListColumns[i]), m_lists[std::size_t(i)].currentData());
    }
    const qint32 employee = qint32(rs.value(QStringLiteral("EmployeeID")).toLongLong());

    const bool member = isMemberType(m_lists[EnrolmentType].text());
    rs.setValue(QStringLiteral("KiwiSaverEnrolled"), member);
    rs.setValue(QStringLiteral("KiwiSaverEnrolID"), m_lists[EnrolmentType].currentData());

    // An empty start date writes nothing: the editor never clears a stored one.
    if (const auto start = typedDate(m_text[KiwiSaverStartDate]))
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
    rs.update();
    m_employeeId = employee;
    SaveDeductXArray(*m_grid, db, employee);
}

bool PayDetailsEditor::queryClose()
{
    try {
        if (isMemberType(m_lists[EnrolmentType].text()) &&
            m_lists[EmployerRate].text() == kPleaseSelect) {
            SuiteMessageBox(QStringLiteral("KiwiSaver Employer Contribution Rate has not been "
                                           "selected"),
                            0, FirmName(), QStringLiteral("Incomplete Data"), QVariant(), 6, true);
            return true;
        }
    } catch (const CvError &e) {
        showErrorReport(e, QStringLiteral(") was generated in frmPaydetails.Form_QueryUnload"));
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

bool PayDetailsEditor::isMemberType(const QString &enrolType)
{
    const auto known = m_memberTypes.constFind(enrolType);
    // An unknown type is looked up, and reported, as it always was.
    return known != m_memberTypes.constEnd() ? known.value()
                                             : IsKiwiSaverMemberType(wage(), enrolType);
}

void PayDetailsEditor::captionPayRate(qint32 employeeTypeId)
{
    m_payRateCaption = payRateUnitCaption(employeeTypeId, wage());
}

void PayDetailsEditor::showRatesFor(bool member)
{
    m_kiwiSaverEnrolled = member;
    m_ratesVisible = member;
}

void PayDetailsEditor::textFocusIn(int field)
{
    const QString &t = m_text.at(std::size_t(field));
    QVariant &remembered = m_focusValue[std::size_t(field)];
    if (isDateField(field)) {
        const auto d = typedDate(t);
        remembered = d ? QVariant(*d) : QVariant();
    } else if (isMoneyField(field)) {
        remembered = QVariant::fromValue(Money::parse(t.trimmed()).value_or(Money()));
    } else {
        remembered = t;
    }
    m_focusText[std::size_t(field)] = t;
}

void PayDetailsEditor::textEdited(int field, const QString &text)
{
    // The view already shows what was typed: no resync, so the cursor stays put.
    m_text.at(std::size_t(field)) = text;
}

QString PayDetailsEditor::textProblem(int field) const
{
    const QString t = m_text.at(std::size_t(field)).trimmed();
    if (t.isEmpty())
        return QString();
    if (isMoneyField(field) && !Money::parse(t))
        return notMoney(m_text[std::size_t(field)], fieldName(field));
    if (hasPicker(field) && !typedDate(t))
        return QStringLiteral("\"%1\" is not a date.\n\n%2 takes a date such as %3 (day, month, "
                              "year), or leave it empty.")
            .arg(m_text[std::size_t(field)], fieldName(field),
                 SerialDate::toShortText(QDate(today().year(), 4, 1)));
    return QString();
}

void PayDetailsEditor::normaliseText(int field)
{
    QString &t = m_text[std::size_t(field)];
    if (hasPicker(field)) {
        if (const auto d = typedDate(t))
            t = SerialDate::toShortText(*d);
        else
            t.clear();
    } else if (isMoneyField(field)) {
        t = Money::parse(t).value_or(Money()).toString();
    }
}

void PayDetailsEditor::logLine(const QString &line)
{
    if (!line.isEmpty())
        m_pendingLog << line;
}

bool PayDetailsEditor::textFocusOut(int field)
{
    if (const QString problem = textProblem(field); !problem.isEmpty()) {
        tellUser(QStringLiteral("Check the ") + fieldName(field), problem);
        touch();
        return false;
    }
    try {
        normaliseText(field);
        if (field == Datehired || field == Datefinished) {
            const auto hired = typedDate(m_text[Datehired]);
            const auto finished = typedDate(m_text[Datefinished]);
            // Kept exactly as the suite has always done it: a hire date earlier than
            // the finish date empties the finish date.
            if (hired && finished && *hired < *finished)
                m_text[Datefinished].clear();
        }
        const QVariant &old = m_focusValue[std::size_t(field)];
        QString oldText;
        if (isDateField(field))
            oldText = old.isValid() ? SerialDate::toShortText(old.toDate()) : QString();
        else if (isMoneyField(field))
            oldText = old.value<Money>().toString();
        else
            oldText = old.toString();
        logLine(valueChangeLine(qint16(field), m_text[std::size_t(field)], oldText));
    } catch (const CvError &e) {
        showErrorReport(e,
                        origin(m_host == Host::Dialog ? "TxtWage_LostFocus" : "Text2_LostFocus"));
    }
    touch();
    return true;
}

void PayDetailsEditor::listFocusIn(int index)
{
    m_focusListText.at(std::size_t(index)) = m_lists.at(std::size_t(index)).text();
}

void PayDetailsEditor::listChosen(int index, int itemIndex)
{
    ComboList &l = m_lists.at(std::size_t(index));
    try {
        l.setListIndex(itemIndex);
        if (index == PayInterval)
            logLine(namedFieldChangeLine(l.text(), m_focusListText[PayInterval], qint16(index)));
        if (index == Bank)
            m_bankId = l.currentData();
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmbWage_Click"));
    }
    if (index == EnrolmentType)
        enrolmentClicked();
    else
        touch();
}

void PayDetailsEditor::listFocusOut(int index)
{
    try {
        if (index == Occupation)
            captionPayRate(m_lists[Occupation].currentData());
        logLine(namedFieldChangeLine(m_lists.at(std::size_t(index)).text(),
                                     m_focusListText.at(std::size_t(index)), qint16(index)));
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmbWage_LostFocus"));
    }
    touch();
}

void PayDetailsEditor::enrolmentClicked()
{
    try {
        showRatesFor(isMemberType(m_lists[EnrolmentType].text()));
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmbWage_Click"));
    }
    touch();
}

void PayDetailsEditor::nonCashClicked(bool ticked)
{
    try {
        // The switch always lands on the mode's default bank.
        m_bankId = ticked ? defaultEPaymentBankId() : defaultCashBankId();
        m_cashbookCaption =
            ticked ? QStringLiteral("Payments (Net)") : QStringLiteral("Cashbook (Gross)");
        fillBankList();
    } catch (const CvError &e) {
        showErrorReport(e, origin("chkNonCash_Click"));
    }
    touch();
}

void PayDetailsEditor::excludeIR348Clicked(bool ticked)
{
    m_excludeIR348 = ticked;
    if (m_host == Host::Dialog)
        SaveWageForm();
    else
        touch();
}

void PayDetailsEditor::esctClicked(bool ticked)
{
    m_includeESCT = ticked;
    if (m_host == Host::WagesTab) {
        // The tab's bound employee row stores this tick, not SaveWageTab.
        if (m_db) {
            const SaveOutcome outcome =
                saveChanges(*m_db, QStringLiteral("the ESCT setting"), [this, ticked] {
                    Recordset rs(wage(), employeeQuery(m_addressId));
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
    touch();
}

void PayDetailsEditor::datePicked(int field, QDate date)
{
    if (!hasPicker(field) || !date.isValid())
        return;
    m_pickers[std::size_t(field)] = date;
    m_text[std::size_t(field)] = SerialDate::toShortText(date);
    touch();
}

int PayDetailsEditor::maxLength(int field)
{
    switch (field) {
    case TaxCode:
        return 10;
    case IRDnumber:
        return 20;
    default:
        return 0;
    }
}

void PayDetailsEditor::deleteDeductionRow(int row)
{
    // The add-new row, past the last row, holds nothing to delete.
    if (row < 0 || row >= m_grid->rowCount())
        return;
    m_grid->removeRow(row);
    touch();
}

QString PayDetailsEditor::gridCellProblem(int column, const QVariant &value) const
{
    if (DeductionGrid::isEmptyCell(value))
        return QString();
    const QString typed = value.toString();
    if (column == DeductionGrid::FixedAmountColumn && !Money::parse(typed.trimmed()))
        return notMoney(typed, QStringLiteral("Fixed Amount"));
    const std::optional<double> percent = DeductionGrid::number(value);
    if (column == DeductionGrid::SpecialRateColumn && (!percent || *percent < 0 || *percent > 100))
        return QStringLiteral("\"%1\" is not a percentage.\n\nPercent takes a number from 0 to "
                              "100, such as 3 or 12.5, without the % sign.")
            .arg(typed);
    return QString();
}

bool PayDetailsEditor::checkGridCell(int column, const QVariant &typed) const
{
    const QString problem = gridCellProblem(column, typed);
    if (problem.isEmpty())
        return true;
    tellUser(QStringLiteral("Check the ") + m_grid->caption(column), problem);
    return false;
}

bool PayDetailsEditor::gridCellEdited(int row, int column, const QVariant &value)
{
    if (!checkGridCell(column, value))
        return false;
    try {
        m_grid->setValue(row, column, value);
        ChangeRate(*m_grid, row, qint16(column));
    } catch (const CvError &e) {
        showErrorReport(e, origin("tgrdDeductions_AfterColUpdate"));
    }
    touch();
    return true;
}
