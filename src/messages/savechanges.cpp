#include "messages/savechanges.h"

#include "config/settings.h"
#include "core/cverror.h"
#include "data/database.h"
#include "messages/messageservice.h"

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

} // namespace

SaveOutcome saveChanges(Database &db, const QString &what, const std::function<void()> &work)
{
    for (;;) {
        try {
            db.transaction(work);
            return SaveOutcome::Saved;
        } catch (const CvError &error) {
            const QString prompt =
                QStringLiteral("Your changes to %1 were not saved.\n\n%2\n\nRetry to save them "
                               "again, Discard to throw them away, or Cancel to go back to them.")
                    .arg(what, reason(error));
            switch (SuiteMessageBox(prompt, ButtonsRetryDiscardCancel, FirmName(),
                                    QStringLiteral("Changes Not Saved"),
                                    QStringLiteral("Error ") + QString::number(error.number()),
                                    IconInformation, true)) {
            case ResultRetry:
                continue;
            case ResultDiscard:
                return SaveOutcome::Discarded;
            default:
                return SaveOutcome::Kept;
            }
        }
    }
}
