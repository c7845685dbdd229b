#include "config/folders.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

#ifdef Q_OS_WIN
constexpr QChar kSeparator = u'\\';
#else
constexpr QChar kSeparator = u'/';
#endif

const char kIniName[] = "Corvane.ini";

} // namespace

QString joinPath(const QString &folder, const QString &name)
{
    return folder + kSeparator + name;
}

QString sharedDocumentsFolder()
{
    if (qEnvironmentVariableIsSet("CORVANE_SHARED_DOCUMENTS"))
        return qEnvironmentVariable("CORVANE_SHARED_DOCUMENTS");
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString commonFolder()
{
    return joinPath(joinPath(sharedDocumentsFolder(), "Corvane"), "Common");
}

QString suiteIniFile()
{
    const QString path = joinPath(commonFolder(), kIniName);
    return QFileInfo(path).isFile() ? path : QString(kIniName);
}

QString systemIniFolder()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return config.isEmpty() ? QString() : joinPath(config, "Corvane");
}

QString errorLogFile()
{
    return joinPath(commonFolder(), "CvErrors.log");
}

QString programFolder()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    // Before the application object exists (a library caller): ask the system.
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
}

QString installationFolder()
{
    if (qEnvironmentVariableIsSet("CORVANE_INSTALDIR"))
        return qEnvironmentVariable("CORVANE_INSTALDIR");
    return programFolder();
}
