#pragma once

#include <QLocale>
#include <QString>

// Stands in for the platform's own settings file "WIN.INI". Only [intl]
// iCountry is known: the international dialling code of the system locale's
// territory. Every other value is empty.
QString winIniValue(const QString &section, const QString &key);

// The dialling code of a territory; 0 when it is not in the table.
int diallingCode(QLocale::Territory territory);

// Makes the substitute answer for this territory instead of the system
// locale's; QLocale::AnyTerritory goes back to the system locale. For tests.
void setWinIniTerritory(QLocale::Territory territory);
