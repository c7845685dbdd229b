#include "paydetails/changelog.h"

#include "core/clock.h"
#include "core/translate.h"
#include "data/database.h"
#include "data/money.h"
#include "data/serialdate.h"

namespace {

QString g_unitOfPay;

QString todayText()
{
    return SerialDate::toShortText(today());
}

// Amounts in the locale's currency format; text that is not an amount stays as typed.
QString currencyText(const QString &value)
{
    if (const auto money = Money::parse(value))
        return money->toString();
    return value;
}

// A hire or finish date in the short date form, or nothing when there is no date to log:
// an emptied field (or the zero date) is not a hiring or a finish on 30/12/1899, so it
// logs no line. Text that is not a date is logged as typed.
std::optional<QString> loggedDate(const QString &value)
{
    if (value.trimmed().isEmpty())
        return std::nullopt;
    const auto parsed = SerialDate::parse(value);
    if (!parsed)
        return value;
    if (SerialDate::fromDateTime(*parsed) == 0.0)
        return std::nullopt;
    return SerialDate::toShortText(parsed->date());
}

QString fieldLabel(qint16 field)
{
    switch (field) {
    case 0:
        return QStringLiteral("Occupation");
    case 1:
        return QStringLiteral("Tax type");
    case 2:
        return QStringLiteral("Pay interval");
    case 6:
        return QStringLiteral("Kiwisaver Enrolment Type");
    case 7:
        return QStringLiteral("Kiwisaver EMPLOYEE Deduction Rate");
    case 8:
        return QStringLiteral("Kiwisaver EMPLOYER Contribution Rate");
    default:
        return QStringLiteral("");
    }
}

} // namespace

QString valueChangeLine(qint16 field, const QString &newValue, const QString &oldValue)
{
    if (newValue == oldValue)
        return QString();
    const QString date = todayText();
    switch (field) {
    case 2:
        return Translate(QStringLiteral("[|0|] Pay rate amended to |1| |2|"),
                         {date, currencyText(newValue), currentUnitOfPay()});
    case 3:
        return Translate(QStringLiteral("[|0|] Salary Changed to |1| per year"),
                         {date, currencyText(newValue)});
    case 4:
    case 5:
        if (const auto when = loggedDate(newValue))
            return Translate(field == 4 ? QStringLiteral("[|0|] Hired on |1|")
                                        : QStringLiteral("[|0|] Finished on |1|"),
                             {date, *when});
        return QString();
    default:
        return QString();
    }
}

QString namedFieldChangeLine(const QString &newValue, const QString &oldValue, qint16 field)
{
    if (newValue == oldValue)
        return QString();
    // A null text would show as "..." in the template; an emptied list logs nothing after
    // "changed to".
    return Translate(
        QStringLiteral("[|0|] |1| changed to |2|"),
        {todayText(), fieldLabel(field), newValue.isNull() ? QStringLiteral("") : newValue});
}

QString taxCodeChangeLine(const QString &newValue, const QString &oldValue)
{
    if (newValue.trimmed() == oldValue.trimmed())
        return QString();
    return Translate(QStringLiteral("[|0|] Tax code changed to |1|"),
                     {todayText(), newValue.trimmed()});
}

void appendToNotes(Database &farm, const QStringList &lines, qint32 addressId)
{
    QStringList written;
    for (const QString &line : lines) {
        if (!line.isEmpty())
            written << line;
    }
    if (written.isEmpty())
        return;
    const QString text = written.join(QStringLiteral("\r\n"));
    // The lines are appended inside the database: notes that have grown large are not
    // read into the program and written back whole for every save.
    // Empty by its length: a case-blind compare would fold the whole memo first.
    farm.execute(QStringLiteral("UPDATE Addresses SET notes = CASE WHEN notes IS NULL OR "
                                "length(notes) = 0 THEN ? ELSE notes || ? END WHERE "
                                "AddressID = ?"),
                 {text, QString(QStringLiteral("\r\n") + text), addressId});
}

QString oneLogLine(const QString &text, qsizetype maxLength)
{
    QString flat;
    flat.reserve(text.size());
    for (const QChar c : text)
        flat += c.category() == QChar::Other_Control || c.category() == QChar::Other_Format
                    ? QChar(u' ')
                    : c;
    flat = flat.simplified(); // also folds the Unicode line and paragraph separators
    if (flat.size() > maxLength) {
        // Not between the halves of a surrogate pair.
        qsizetype cut = maxLength;
        if (flat.at(cut - 1).isHighSurrogate())
            --cut;
        flat = flat.left(cut).trimmed();
    }
    return flat;
}

QString signedLine(const QString &line, const QString &who, const QString &why)
{
    const QString name = oneLogLine(who, kMaxLogUser);
    const QString reason = oneLogLine(why, kMaxLogReason);
    if (line.isEmpty() || (name.isEmpty() && reason.isEmpty()))
        return line;
    if (name.isEmpty())
        return line + QStringLiteral(" (") + reason + u')';
    if (reason.isEmpty())
        return line + QStringLiteral(" (by ") + name + u')';
    return line + QStringLiteral(" (by ") + name + QStringLiteral(": ") + reason + u')';
}

QString reasonPrompt(qint16 field, bool list)
{
    if (list)
        return field == 1 ? QStringLiteral("Reason for the tax type change (optional):")
                          : QString();
    switch (field) {
    case 2:
        return QStringLiteral("Reason for the pay rate change (optional):");
    case 3:
        return QStringLiteral("Reason for the salary change (optional):");
    case 6:
        return QStringLiteral("Reason for the tax code change (optional):");
    default:
        return QString();
    }
}

QString currentUnitOfPay()
{
    return g_unitOfPay;
}

void setCurrentUnitOfPay(const QString &unit)
{
    g_unitOfPay = unit;
}
