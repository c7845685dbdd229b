#include "core/clock.h"

namespace {

QDate g_pinned;

} // namespace

QDate today()
{
    return g_pinned.isValid() ? g_pinned : QDate::currentDate();
}

void setToday(QDate date)
{
    g_pinned = date;
}
