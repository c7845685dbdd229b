#include "config/settings.h"

#include "config/folders.h"
#include "config/suiteconfig.h"

QString Settings::DatabaseName() const
{
    const QString value = readSuiteIni("CORVANE", "DataFileName");
    return value.isEmpty() ? joinPath(dataFolder(), "Farm32.mdb") : value;
}

QString Settings::WageDataBase() const
{
    const QString value = readSuiteIni("CORVANE", "WageFileName");
    return value.isEmpty() ? joinPath(dataFolder(), "Wage32.mdb") : value;
}

QString Settings::DatabaseServer() const
{
    return readSuiteIni("CORVANE", "DatabaseServer").trimmed();
}

bool Settings::EmployeeOnly() const
{
    return readSuiteIni("Wage", "AllEmployees").toUpper() != QLatin1String("Y");
}

QString FirmName()
{
    const QString firm = readSuiteIni("START", "Firm");
    return firm.isEmpty() ? QStringLiteral("Corvane") : firm;
}
