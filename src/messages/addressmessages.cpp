#include "messages/addressmessages.h"

#include "config/settings.h"
#include "core/translate.h"
#include "messages/messageservice.h"

namespace {

constexpr qint32 kOkOnly = 0;
constexpr qint32 kYesNo = 4;
constexpr int kInformation = 6;
constexpr int kQuestion = 9;

void inform(const QString &prompt, const QString &title, const QVariant &heading = QVariant())
{
    SuiteMessageBox(prompt, kOkOnly, FirmName(), title, heading, kInformation, true);
}

} // namespace

void msgSelectionRequired()
{
    inform("Please Select Record From The Selection Box !", "Selection Required");
}

void msgSelectionRequiredPayDetails()
{
    SuiteMessageBox("Select Record From The List", kOkOnly, QString(), "Selection Required",
                    QVariant(), kInformation, true);
}

void msgNoNameEntered()
{
    inform("Enter the Company/Employee name for the New Entry", "No Name Entered!");
}

bool msgConfirmDeletion(const QVariant &name)
{
    return SuiteMessageBox(Translate("Are you sure you want to delete |0|", {name}), kYesNo,
                           FirmName(), "Confirm Deletion?", QVariant(), kQuestion,
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

void msgDataError(const QVariant &errorText)
{
    inform(Translate("Data error: |0|", {errorText}), "An Error has Occurred");
}
