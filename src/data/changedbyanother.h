#pragma once

#include "core/cverror.h"

#include <functional>
#include <QString>
#include <vector>

// A save that would overwrite values another user stored since this window read them.
// Nothing of the save is stored. It lists each value both changed, and, when the window
// that threw it can, how to go on: keep the user's values over the other's, or take the
// other's and save the rest; the save is then run again.
class ChangedByAnother : public CvError
{
public:
    struct Difference
    {
        QString field; // as the window captions it
        QString yours;
        QString theirs;
    };
    using Resolve = std::function<void(bool keepMine)>;

    ChangedByAnother(QString source, QString description, std::vector<Difference> differences = {},
                     Resolve resolve = {})
        : CvError(DataChanged, std::move(source), std::move(description)),
          m_differences(std::move(differences)), m_resolve(std::move(resolve))
    {
    }

    const std::vector<Difference> &differences() const { return m_differences; }
    bool canResolve() const { return bool(m_resolve); }
    void resolve(bool keepMine) const { m_resolve(keepMine); }

private:
    std::vector<Difference> m_differences;
    Resolve m_resolve;
};
