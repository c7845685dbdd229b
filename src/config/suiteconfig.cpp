#include "config/suiteconfig.h"

#include "config/folders.h"
#include "config/profilestring.h"
#include "config/readini.h"
#include "core/numerictext.h"
#include "core/translate.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <pwd.h>
#include <unistd.h>
#endif

namespace {

bool isSupportedCountry(qint32 code)
{
    return code == 64 || code == 55 || code == 61 || code == 598;
}

} // namespace

QString readSuiteIni(const QString &section, const QString &key)
{
    return ReadIni(section, key, suiteIniFile());
}

QString dataFolder()
{
    const QString value = readSuiteIni("CORVANE", "DataRoot");
    return value.isEmpty() ? joinPath(sharedDocumentsFolder(), "data") : value;
}

QString programDirectory()
{
    const QString value = readSuiteIni("CORVANE", "ProgramDirectory");
    return value.isEmpty() ? programFolder() : value;
}

QString helpFolder()
{
    return joinPath(programDirectory(), "Help");
}

QString modulesDatabase()
{
    const QString value = readSuiteIni("Corvane", "ModuleFileName");
    if (!value.isEmpty())
        return value;
    const QString base = readSuiteIni("Corvane", "ProgramDirectory");
    return joinPath(base.isEmpty() ? installationFolder() : base, "Modules.mdb");
}

qint32 countryCode()
{
    if (const std::optional<qint32> code = numericTextToInt32(readSuiteIni("WINDOWS", "Country")))
        return *code;
    if (const std::optional<qint32> code =
            numericTextToInt32(ReadIni("INTL", "iCountry", "WIN.INI")))
        return isSupportedCountry(*code) ? *code : 64;
    return 64;
}

qint32 iniWageAccount()
{
    return numericTextToInt32(readSuiteIni("TAX", "WageAccount")).value_or(401001);
}

QString helpContextId(const QString &windowName)
{
    return readSuiteIni("HELPCONTEXTIDS", windowName);
}

QString taxNumberName()
{
    QString name = readSuiteIni("TAX", "TaxNumberName");
    if (name.isEmpty())
        name = readSuiteIni("TAX", "TaxName");
    if (name.isEmpty())
        name = QStringLiteral("GST");
    return name;
}

QString taxNumberCaption()
{
    return Translate("|0| Number", {taxNumberName()});
}

QString suiteUserName()
{
    const QString named = readSuiteIni("CORVANE", "UserName").trimmed();
    if (!named.isEmpty())
        return named;
    for (const char *variable : {"USER", "USERNAME", "LOGNAME"}) {
        const QString login = qEnvironmentVariable(variable).trimmed();
        if (!login.isEmpty())
            return login;
    }
#ifdef Q_OS_UNIX
    // A service or cron start may have no login variables: the account of the process.
    if (const passwd *account = getpwuid(geteuid()); account && account->pw_name)
        return QString::fromLocal8Bit(account->pw_name);
#endif
    return QString();
}

bool writeAllEmployees(const QString &value)
{
    return writeProfileString("WAGE", "AllEmployees", value, suiteIniFile());
}
