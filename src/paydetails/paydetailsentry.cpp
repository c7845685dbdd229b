// The rules of leaving a pay details field, a list or a grid cell: what the user typed is
// checked, put in its normal form and told in the change log.
#include "paydetails/paydetailseditor.h"

#include "checks/identifiers.h"
#include "checks/keepprompt.h"
#include "config/settings.h"
#include "config/suiteconfig.h"
#include "controls/inputboxservice.h"
#include "core/clock.h"
#include "core/cverror.h"
#include "data/money.h"
#include "data/rowreader.h"
#include "data/serialdate.h"
#include "messages/addressmessages.h"
#include "messages/errorreport.h"
#include "messages/messageservice.h"
#include "paydetails/changelog.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/deductions.h"
#include "paydetails/payfields.h"
#include "paydetails/paylists.h"

namespace {

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
    SuiteMessageBox(prompt, ButtonsOk, FirmName(), title, QVariant(), IconInformation, true);
}

} // namespace

void PayDetailsEditor::textFocusIn(int field)
{
    const QString &t = m_text.at(std::size_t(field));
    QVariant &remembered = m_focusValue[std::size_t(field)];
    if (PayFields::isDate(field)) {
        const auto d = PayFields::typedDate(t);
        remembered = d ? QVariant(*d) : QVariant();
    } else if (PayFields::isMoney(field)) {
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
    if (PayFields::isMoney(field) && !Money::parse(t))
        return notMoney(m_text[std::size_t(field)], fieldName(field));
    if (PayFields::hasPicker(field) && !PayFields::typedDate(t))
        return QStringLiteral("\"%1\" is not a date.\n\n%2 takes a date such as %3 (day, month, "
                              "year), or leave it empty.")
            .arg(m_text[std::size_t(field)], fieldName(field),
                 SerialDate::toShortText(QDate(today().year(), 4, 1)));
    return QString();
}

void PayDetailsEditor::normaliseText(int field)
{
    QString &t = m_text[std::size_t(field)];
    if (PayFields::hasPicker(field)) {
        if (const auto d = PayFields::typedDate(t))
            t = SerialDate::toShortText(*d);
        else
            t.clear();
    } else if (PayFields::isMoney(field)) {
        t = Money::parse(t).value_or(Money()).toString();
    }
}

// The IRD number (a TFN in Australia) as typed: a valid one in its normal form, a wrong
// one named once, kept or gone back to as the user chooses.
bool PayDetailsEditor::taxNumberKept()
{
    QString &typed = m_text[IRDnumber];
    if (typed == m_focusText[IRDnumber])
        return true; // as it was: not the user's typing
    const qint32 country = countryCode();
    const Identifiers::Verdict verdict = Identifiers::checkEmployeeTaxNumber(country, typed);
    if (verdict.status == Identifiers::Status::Valid)
        typed = verdict.display;
    const QString key = QString::number(m_addressId) + u'|' + typed;
    if (m_warnedTaxNumber == key)
        return true;
    m_warnedTaxNumber = key;
    const QString what = Identifiers::employeeTaxNumberName(country);
    if (verdict.warns() && !askKeepIdentifier(what, verdict))
        return false;
    // Two employees with one IRD number is most often one person keyed twice.
    const QString number = Identifiers::comparableTaxNumber(typed);
    if (number.isEmpty())
        return true;
    QStringList others;
    try {
        RowReader rows(farm(),
                       QStringLiteral("SELECT Employees.IRDNumber, Addresses.BusName FROM "
                                      "Employees INNER JOIN Addresses ON Employees.AddressID = "
                                      "Addresses.AddressID WHERE Employees.IRDNumber Is Not Null "
                                      "AND Employees.AddressID <> ?"),
                       {m_addressId});
        while (rows.next())
            if (others.size() < 5 && Identifiers::comparableTaxNumber(rows.text(0)) == number)
                others << rows.text(1);
    } catch (const CvError &e) {
        showErrorReport(e, origin("txtIRDnumber_LostFocus"));
        return true;
    }
    return others.isEmpty() ||
           msgIdentifierOnAnotherEntry(what, others.join(QStringLiteral("\r\n")));
}

void PayDetailsEditor::logLine(const QString &line, const QString &column, const QString &whyPrompt)
{
    if (line.isEmpty())
        return;
    const QString folded = column.toCaseFolded();
    // The same change told again (a pay interval is told when chosen and again when left)
    // is waiting already, with its reason: it is neither asked about nor logged twice.
    if (const qsizetype last = m_pendingLogColumns.lastIndexOf(folded);
        last >= 0 && m_pendingLogChanges[last] == line)
        return;
    QString why;
    if (!whyPrompt.isEmpty() && m_inputBox) {
        // What changed, without the date, so the user sees what the reason is for. Cancel
        // or nothing typed: the change is logged without a reason.
        const qsizetype dateEnd = line.indexOf(QStringLiteral("] "));
        why = m_inputBox->ask(line.mid(dateEnd < 0 ? 0 : dateEnd + 2) + QStringLiteral(".\n\n") +
                                  whyPrompt,
                              QStringLiteral("Reason for the Change"), QString());
    }
    m_pendingLog << signedLine(line, suiteUserName(), why);
    m_pendingLogColumns << folded;
    m_pendingLogChanges << line;
}

bool PayDetailsEditor::textFocusOut(int field)
{
    if (const QString problem = textProblem(field); !problem.isEmpty()) {
        tellUser(QStringLiteral("Check the ") + fieldName(field), problem);
        markChanged();
        return false;
    }
    if (field == IRDnumber && !taxNumberKept()) {
        markChanged();
        return false;
    }
    try {
        normaliseText(field);
        if (field == Datehired || field == Datefinished) {
            const auto hired = PayFields::typedDate(m_text[Datehired]);
            const auto finished = PayFields::typedDate(m_text[Datefinished]);
            // Kept exactly as the suite has always done it: a hire date earlier than
            // the finish date empties the finish date.
            if (hired && finished && *hired < *finished)
                m_text[Datefinished].clear();
        }
        const QVariant &old = m_focusValue[std::size_t(field)];
        QString oldText;
        if (PayFields::isDate(field))
            oldText = old.isValid() ? SerialDate::toShortText(old.toDate()) : QString();
        else if (PayFields::isMoney(field))
            oldText = old.value<Money>().toString();
        else
            oldText = old.toString();
        const QString &newText = m_text[std::size_t(field)];
        logLine(field == TaxCode ? taxCodeChangeLine(newText, oldText)
                                 : valueChangeLine(qint16(field), newText, oldText),
                QString::fromLatin1(PayFields::textColumns[field]),
                reasonPrompt(qint16(field), false));
    } catch (const CvError &e) {
        showErrorReport(e,
                        origin(m_host == Host::Dialog ? "TxtWage_LostFocus" : "Text2_LostFocus"));
    }
    markChanged();
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
            logLine(namedFieldChangeLine(l.text(), m_focusListText[PayInterval], qint16(index)),
                    QString::fromLatin1(PayFields::listColumns[PayInterval]));
        if (index == Bank)
            m_bankId = l.currentData();
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmbWage_Click"));
    }
    if (index == EnrolmentType)
        enrolmentClicked();
    else
        markChanged();
}

void PayDetailsEditor::listFocusOut(int index)
{
    try {
        if (index == Occupation)
            captionPayRate(m_lists[Occupation].currentData());
        logLine(namedFieldChangeLine(m_lists.at(std::size_t(index)).text(),
                                     m_focusListText.at(std::size_t(index)), qint16(index)),
                QString::fromLatin1(PayFields::listColumns[index]),
                reasonPrompt(qint16(index), true));
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmbWage_LostFocus"));
    }
    markChanged();
}

void PayDetailsEditor::captionPayRate(qint32 employeeTypeId)
{
    m_payRateCaption = payRateUnitCaption(employeeTypeId, wage());
}

void PayDetailsEditor::enrolmentClicked()
{
    try {
        showRatesFor(memberTypeShown());
    } catch (const CvError &e) {
        showErrorReport(e, origin("cmbWage_Click"));
    }
    markChanged();
}

void PayDetailsEditor::showRatesFor(bool member)
{
    m_kiwiSaverEnrolled = member;
    m_ratesVisible = member;
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
    markChanged();
}

void PayDetailsEditor::datePicked(int field, QDate date)
{
    if (!PayFields::hasPicker(field) || !date.isValid())
        return;
    m_pickers[std::size_t(field)] = date;
    m_text[std::size_t(field)] = SerialDate::toShortText(date);
    markChanged();
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
    markChanged();
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
    markChanged();
    return true;
}
