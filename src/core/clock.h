#pragma once

#include <QDate>

// Today's date as the program sees it. Everything that writes "today" (the
// change log, a date picker with no date) asks here, so tests can pin the day.
QDate today();

// Pins today's date; an invalid date goes back to the system clock.
void setToday(QDate date);
