#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

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
    QString commonDir() const;
    QString iniPath() const;
    QString farmPath() const;
    QString wagePath() const;
    QString errorLogPath() const;

    // Replaces the INI file with these bytes, exactly as given.
    void writeIni(const QByteArray &bytes) const;
    QByteArray readIni() const;
    void removeIni() const;
    QByteArray readErrorLog() const;

    // Run SQL straight on a data file (no translation), for arranging fixtures: see execOnFile.
    void execFarm(const QString &sql) const;
    void execWage(const QString &sql) const;
    // The first column of the first row of a query run straight on a data file, as stored;
    // an invalid value when there is no row or it is Null.
    QVariant farmValue(const QString &sql) const;
    QVariant wageValue(const QString &sql) const;

private:
    QTemporaryDir m_dir;
    QByteArray m_oldShared;
    bool m_hadShared;
};

// Runs statements separated by semicolons (none inside a literal) on a data file, in one
// transaction on a connection of its own. Failures throw CvError.
void execOnFile(const QString &path, const QString &script);
QVariant valueOnFile(const QString &path, const QString &sql);
