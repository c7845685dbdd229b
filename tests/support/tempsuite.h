#pragma once

#include "suitefiles.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

// Runs statements separated by semicolons (none inside a literal) on a data file, in one
// transaction on a connection of its own. Failures throw CvError.
void execOnFile(const QString &path, const QString &script);
QVariant valueOnFile(const QString &path, const QString &sql);

// A shared documents folder laid out as the suite does, in a temporary folder
// that goes with the object: Corvane/Common/Corvane.ini and data/Farm32.mdb and
// data/Wage32.mdb built from schema/. CORVANE_SHARED_DOCUMENTS points at it for
// the object's lifetime.
class TempSuite
{
public:
    explicit TempSuite(bool withDataFiles = true);
    ~TempSuite();
    TempSuite(const TempSuite &) = delete;
    TempSuite &operator=(const TempSuite &) = delete;

    QString dir() const { return m_dir.path(); }
    QString commonDir() const { return dir() + "/Corvane/Common"; }
    QString iniPath() const { return commonDir() + "/Corvane.ini"; }
    QString farmPath() const { return SuiteFiles::farmPath(dir()); }
    QString wagePath() const { return SuiteFiles::wagePath(dir()); }
    QString errorLogPath() const { return commonDir() + "/CvErrors.log"; }

    // Replaces the INI file with these bytes, exactly as given.
    void writeIni(const QByteArray &bytes) const;
    QByteArray readIni() const;
    void removeIni() const;
    QByteArray readErrorLog() const;

    // Run SQL straight on a data file (no translation), for arranging fixtures: see execOnFile.
    void execFarm(const QString &sql) const { execOnFile(farmPath(), sql); }
    void execWage(const QString &sql) const { execOnFile(wagePath(), sql); }
    // The first column of the first row of a query run straight on a data file, as stored;
    // an invalid value when there is no row or it is Null.
    QVariant farmValue(const QString &sql) const { return valueOnFile(farmPath(), sql); }
    QVariant wageValue(const QString &sql) const { return valueOnFile(wagePath(), sql); }

private:
    QTemporaryDir m_dir;
    QByteArray m_oldShared;
    bool m_hadShared;
};
