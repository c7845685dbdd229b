#include "messages/savechanges.h"

#include "config/settings.h"
#include "core/cverror.h"
#include "data/changedbyanother.h"
#include "data/database.h"
#include "messages/messageservice.h"

#include <optional>

namespace {

QString reason(const CvError &error)
{
    switch (error.number()) {
    case CvError::DatabaseLocked:
        return error.description() +
               QStringLiteral(" When that program has finished, choose Retry.");
    case CvError::DiskFull:
        return error.description() + QStringLiteral(" Make room on the disk, then choose Retry.");
    default:
        return error.description();
    }
}

// Nothing was stored: Retry (no outcome: run the work again), Discard or Cancel.
std::optional<SaveOutcome> askAfterFailure(const QString &what, const CvError &error)
{
    const QString prompt =
        QStringLiteral("Your changes to %1 were not saved.\n\n%2\n\nRetry to save them "
                       "again, Discard to throw them away, or Cancel to go back to them.")
            .arg(what, reason(error));
    switch (SuiteMessageBox(
        prompt, ButtonsRetryDiscardCancel, FirmName(), QStringLiteral("Changes Not Saved"),
        QStringLiteral("Error ") + QString::number(error.number()), IconInformation, true)) {
    case ResultRetry:
        return std::nullopt;
    case ResultDiscard:
        return SaveOutcome::Discarded;
    default:
        return SaveOutcome::Kept;
    }
}

// Another user changed what this save would overwrite: the user decides whose values
// stand (no outcome: the save runs again), or goes back.
std::optional<SaveOutcome> askWhoseValues(const QString &what, const ChangedByAnother &changed)
{
    QString lines;
    for (const ChangedByAnother::Difference &d : changed.differences())
        lines += QStringLiteral("    %1: yours %2, theirs %3\n").arg(d.field, d.yours, d.theirs);
    const QString prompt =
        QStringLiteral(
            "Someone else saved changes to %1 while you were working on it, and "
            "changed the same values:\n\n%2\nKeep Mine saves your values over theirs. Take Theirs "
            "keeps their values and saves your other changes. Cancel goes back to "
            "your changes; nothing is saved yet.")
            .arg(what, lines);
    switch (SuiteMessageBox(prompt, ButtonsKeepMineTakeTheirsCancel, FirmName(),
                            QStringLiteral("Changed by Someone Else"),
                            QStringLiteral("Error ") + QString::number(changed.number()),
                            IconQuestion, true)) {
    case ResultYes:
        changed.resolve(true);
        return std::nullopt;
    case ResultNo:
        changed.resolve(false);
        return std::nullopt;
    default:
        return SaveOutcome::Kept;
    }
}

} // namespace

SaveOutcome saveChanges(Database &db, const QString &what, const std::function<void()> &work)
{
    for (;;) {
        std::optional<SaveOutcome> outcome;
        try {
            db.transaction(work);
            return SaveOutcome::Saved;
        } catch (const ChangedByAnother &changed) {
            outcome = changed.canResolve() ? askWhoseValues(what, changed)
                                           : askAfterFailure(what, changed);
        } catch (const CvError &error) {
            outcome = askAfterFailure(what, error);
        }
        if (outcome)
            return *outcome;
    }
}
