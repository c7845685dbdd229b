#pragma once

#include <QLatin1String>
#include <QVariant>

// The address book's recurring messages, shown through SuiteMessageBox.

// Texts the address book window sets when it loads ("employeed" is the
// suite's spelling).
namespace AddressTexts {
inline constexpr QLatin1String ShowFormerEmployees("Click to SHOW those no longer employeed");
inline constexpr QLatin1String HideFormerEmployees("Click to HIDE those no longer employeed");
inline constexpr QLatin1String NewEntryPrompt("Enter the Company/Employee name for the New Entry");
inline constexpr QLatin1String NewBusinessPrompt("Enter the Business Name for the New Entry");
} // namespace AddressTexts

void msgSelectionRequired();
// The pay details dialog's variant, shown without a caption.
void msgSelectionRequiredPayDetails();
void msgNoNameEntered();
// Asks whether to delete the named entry; true when the user answers Yes.
bool msgConfirmDeletion(const QVariant &name);
// The name being added looks like the entries listed: Yes goes to the first of them,
// No adds it anyway, Cancel adds nothing.
qint16 msgPossibleDuplicate(const QString &name, const QString &matches);
// The identifier just typed (what: "GST number", "bank account") is on the entries
// listed too: true keeps it on this one as well, false goes back to the box.
bool msgIdentifierOnAnotherEntry(const QString &what, const QString &matches);
void msgWagesExist(const QVariant &name);
void msgCashbookDataExists(const QVariant &name);
void msgWagesAndCashbookExist(const QVariant &name);
// A table or column the query of a grid's drop-down names is missing: an older data file.
void msgDatabaseOutOfDate(const QString &tableName);
// A data control's error, with the error's own text.
void msgDataError(const QVariant &errorText);
