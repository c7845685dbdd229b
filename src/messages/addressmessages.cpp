#include "messages/addressmessages.h"

#include "config/settings.h"
#include "core/translate.h"
#include "messages/messageservice.h"

namespace {

void inform(const QString &prompt, const QString &title, const QVariant &heading = QVariant())
{
    SuiteMessageBox(prompt, ButtonsOk, FirmName(), title, heading, IconInformation, true);
}

} // namespace

void msgSelectionRequired()
{
    inform("Please Select Record From The Selection Box !", "Selection Required");
}

void msgSelectionRequiredPayDetails()
{
    SuiteMessageBox("Select Record From The List", ButtonsOk, QString(), "Selection Required",
                    QVariant(), IconInformation, true);
}

void msgNoNameEntered()
{
    inform("Enter the Company/Employee name for the New Entry", "No Name Entered!");
}

qint16 msgPossibleDuplicate(const QString &name, const QString &matches)
{
    // Joined, not substituted: a typed name may hold anything, "|1|" included.
    return SuiteMessageBox(u'\u201c' + name +
                               QStringLiteral("\u201d looks like an entry already in the "
                                              "address book:\r\n\r\n") +
                               matches +
                               QStringLiteral("\r\n\r\nGo to the existing entry, or add a "
                                              "new one anyway?"),
                           ButtonsGoToAddAnywayCancel, FirmName(), "Already in the Address Book?",
                           QVariant(), IconQuestion, true);
}

bool msgIdentifierOnAnotherEntry(const QString &what, const QString &matches)
{
    return SuiteMessageBox(
               QStringLiteral("This %1 is already on another entry:\r\n\r\n").arg(what) + matches +
                   QStringLiteral("\r\n\r\nKeep it on this entry as well?"),
               ButtonsYesNo, FirmName(), "Already on Another Entry", QVariant(), IconQuestion,
               true) == ResultYes;
}

bool msgConfirmDeletion(const QVariant &name)
{
    return SuiteMessageBox(Translate("Are you sure you want to delete |0|", {name}), ButtonsYesNo,
                           FirmName(), "Confirm Deletion?", QVariant(), IconQuestion,
                           true) == ResultYes;
}

void msgWagesExist(const QVariant &name)
{
    inform(Translate("Need to delete wages for |0| first", {name}), "Cannot Delete Employee",
           "Wages Exist");
}

void msgCashbookDataExists(const QVariant &name)
{
    inform(Translate("Need to delete Cashbook entries for |0| first", {name}),
           "Cannot Delete Employee", "Cashbook Data Exists");
}

void msgWagesAndCashbookExist(const QVariant &name)
{
    inform(Translate("Need to delete Cashbook and Wagebook entries for |0| first", {name}),
           "Cannot Delete Employee", "Wages/Cashbook Data Exists");
}

void msgDatabaseOutOfDate(const QString &tableName)
{
    SuiteMessageBox("Database out of date, problem reading " + tableName, ButtonsOk, FirmName(),
                    QStringLiteral("An Error has Occurred"), QString(), IconInformation, true);
}

void msgDataError(const QVariant &errorText)
{
    inform(Translate("Data error: |0|", {errorText}), "An Error has Occurred");
}
