#include "core/cverror.h"

#include <utility>

CvError::CvError(int number, QString source, QString description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)),
      m_what(QStringLiteral("%1 (%2): %3").arg(m_number).arg(m_source, m_description).toStdString())
{
}

bool CvError::isTransient() const
{
    return m_number == DatabaseLocked || m_number == DiskFull || m_number == DiskOrNetworkError;
}
