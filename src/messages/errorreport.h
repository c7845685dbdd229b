#pragma once

#include <functional>
#include <QLatin1String>
#include <QString>

class CvError;

// Where a reported error was caught, the text that closes the report's prompt:
// ") was generated in " + module + "." + procedure. Every report names its origin this way.
QString errorOrigin(QLatin1String module, QLatin1String procedure);

// Origins shared by more than one procedure.
namespace ErrorOrigin {
inline constexpr QLatin1String FormLoad(") was generated in frmAddresses.Form_Load");
inline constexpr QLatin1String FillNameList(") was generated in frmAddresses.FillNameList");
inline constexpr QLatin1String
    UpdateScreenDisplay(") was generated in frmAddresses.UpdateScreenDisplay");
inline constexpr QLatin1String EditPaysClick(") was generated in frmAddresses.cmdEditPays_Click.");
inline constexpr QLatin1String PayeInfo(") was generated in commoncode.payeinfo");
inline constexpr QLatin1String SavePayeInfo(") was generated in commoncode.savepayeinfo");
inline constexpr QLatin1String PrimaryRsError(") was generated in frmAddresses.datPrimaryRS_Error");
} // namespace ErrorOrigin

// The one report of a run-time error caught by a procedure: "Description - "
// + description + "(" + number + origin, captioned FirmName + " Error", titled
// "An Error has Occurred", headed "Error " + number unless another heading is
// given. OK only.
void showErrorReport(const CvError &error, const QString &origin,
                     const QString &heading = QString());
void showErrorReport(int number, const QString &description, const QString &origin,
                     const QString &heading = QString());

// One step of a procedure that the suite reports under the step's own origin and then goes
// on without (a list filled as far as it got, a default of 0): the procedure catches the
// step's CvError here and reports it. False when the step failed.
bool reportedStep(const QString &origin, const std::function<void()> &step);
