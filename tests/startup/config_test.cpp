// The INI files: the profile reader and writer on real files, ReadIni's values and
// log lines, and the settings derived from them.
#include "config/errorlog.h"
#include "config/folders.h"
#include "config/profilestring.h"
#include "config/readini.h"
#include "config/settings.h"
#include "config/suitecolour.h"
#include "config/suiteconfig.h"
#include "config/winini.h"
#include "support/confighome.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <tuple>

namespace {

class ProfileFileTest : public ::testing::Test
{
protected:
    QString write(const QByteArray &bytes, const QString &name = "test.ini")
    {
        const QString path = m_dir.filePath(name);
        QFile f(path);
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        f.write(bytes);
        return path;
    }
    static QByteArray contents(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
    QString read(const QString &file, const char *section, const char *key)
    {
        return readProfileString(section, key, QString(), file);
    }

    QTemporaryDir m_dir;
};

TEST_F(ProfileFileTest, ReadsWithTheProfileRules)
{
    const QString ini = write("\xEF\xBB\xBF[corvane]\r\n  DataRoot  =  C:\\Data  \r\n"
                              "Quoted=\"  with blanks  \"\nSingle='x'\rTwice=\"\"inner\"\"\n"
                              "Unbalanced=\"abc'\nEmpty=\nDup=first\ndup=second\n[START]\n"
                              "Firm=Acme\n[Corvane]\nLate=in the second section\n[ TAX ]\n"
                              "WageAccount = 401002");
    // Only the first of two sections of one name is read.
    const std::tuple<const char *, const char *, const char *> values[] = {
        {"CORVANE", "dataroot", "C:\\Data"}, {"CORVANE", "Quoted", "  with blanks  "},
        {"CORVANE", "Single", "x"},          {"CORVANE", "Twice", "\"inner\""},
        {"CORVANE", "Unbalanced", "\"abc'"}, {"CORVANE", "Dup", "first"},
        {"START", "FIRM", "Acme"},           {"CORVANE", "Late", "dflt"},
        {"TAX", "WageAccount", "401002"},    {"CORVANE", "Empty", ""}};
    for (const auto &[section, key, value] : values)
        EXPECT_EQ(readProfileString(section, key, "dflt", ini), value) << key;
}

TEST_F(ProfileFileTest, CutsLongValuesToTheBuffer)
{
    const QByteArray value(5000, 'v');
    const QString ini = write("[A]\r\nK=" + value + "\r\n");
    EXPECT_EQ(read(ini, "A", "K").size(), kProfileBufferSize - 1);
    EXPECT_EQ(readProfileString("A", "K", QString(), ini, 6), "vvvvv");
}

TEST_F(ProfileFileTest, MissingAndBareFilesGiveTheDefault)
{
    EXPECT_EQ(readProfileString("A", "K", "d", m_dir.filePath("none.ini")), "d");
    // A bare name is not looked for in the current folder.
    write("[A]\nK=v\n", "bare.ini");
    const QString old = QDir::currentPath();
    QDir::setCurrent(m_dir.path());
    EXPECT_EQ(readProfileString("A", "K", "d", "bare.ini"), "d");
    EXPECT_FALSE(readTextLines("bare.ini").has_value());
    QDir::setCurrent(old);
}

// The writer replaces the value or adds the key at the end of its section (or the section
// at the end), and keeps every other byte: comments, blank lines, line ends, Latin-1.
TEST_F(ProfileFileTest, WriterChangesOnlyTheKeysLine)
{
    const struct
    {
        QByteArray before, after;
    } cases[] = {
        {"\xEF\xBB\xBF; suite settings\r\n[CORVANE]\r\nDataRoot=C:\\Data\r\n\r\n[wage]\n"
         "  allemployees = N  \r\nAllEmployees=ignored duplicate\r\nOther=1\r\n[WAGE]\r\n"
         "AllEmployees=second section\r\n[TAX]\r\nTaxName=\xE9t\xE9", // no final line end
         "\xEF\xBB\xBF; suite settings\r\n[CORVANE]\r\nDataRoot=C:\\Data\r\n\r\n[wage]\n"
         "AllEmployees=Y\r\nAllEmployees=ignored duplicate\r\nOther=1\r\n[WAGE]\r\n"
         "AllEmployees=second section\r\n[TAX]\r\nTaxName=\xE9t\xE9"},
        {"[CORVANE]\nDataRoot=x\n[Wage]\nOther=1\n\n[TAX]\nTaxName=GST",
         "[CORVANE]\nDataRoot=x\n[Wage]\nOther=1\nAllEmployees=Y\n\n[TAX]\nTaxName=GST"},
        {"[CORVANE]\r\nDataRoot=x", "[CORVANE]\r\nDataRoot=x\r\n[WAGE]\r\nAllEmployees=Y\r\n"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString());
        const QString ini = write(c.before);
        ASSERT_TRUE(writeProfileString("WAGE", "AllEmployees", "Y", ini));
        EXPECT_EQ(contents(ini), c.after);
        EXPECT_EQ(read(ini, "wage", "allemployees"), "Y");
    }
}

// A bare name is a file in the per-user folder; WIN.INI and a missing folder are not
// written.
TEST_F(ProfileFileTest, ABareNameIsAFileInThePerUserFolder)
{
    ScopedConfigHome home;
    EXPECT_EQ(readTextLines("Corvane.ini"), std::nullopt);
    ASSERT_TRUE(writeProfileString("WAGE", "AllEmployees", "Y", "Corvane.ini"));
    ASSERT_TRUE(writeProfileString("wage", "AllEmployees", "N", "Corvane.ini"));
    EXPECT_EQ(contents(home.iniPath()), "[WAGE]\r\nAllEmployees=N\r\n");
    EXPECT_EQ(read("Corvane.ini", "Wage", "AllEmployees"), "N");
    EXPECT_FALSE(writeProfileString("WAGE", "AllEmployees", "Y", "WIN.INI"));
    EXPECT_FALSE(
        writeProfileString("WAGE", "AllEmployees", "Y", m_dir.filePath("no/such/dir/x.ini")));
}

// A suite folder with an INI file and no log yet, the per-user folder empty.
class SuiteIni : public ::testing::Test
{
protected:
    SuiteIni() : m_suite(false)
    {
        resetErrorLogState();
        setWinIniTerritory(QLocale::NewZealand);
        qunsetenv("CORVANE_INSTALDIR");
    }
    ~SuiteIni() override
    {
        resetErrorLogState();
        setWinIniTerritory(QLocale::AnyTerritory);
        qunsetenv("CORVANE_INSTALDIR");
    }
    void ini(const QByteArray &text) { m_suite.writeIni(text); }
    // The text of the one log line, without its time stamp and line end.
    QString loggedText() const
    {
        const QString log = QString::fromUtf8(m_suite.readErrorLog());
        EXPECT_TRUE(log.isEmpty() || (log.endsWith("\r\n") && log.count("\r\n") == 1))
            << log.toStdString();
        return log.section(u'\t', 1).chopped(log.isEmpty() ? 0 : 2);
    }

    ScopedConfigHome m_home;
    TempSuite m_suite;
    Settings m_settings;
};

// One call per row, each on a fresh log: the value read and what is logged missing, the
// key or the section. No INI text: the suite has no INI file; no file: the suite's own.
TEST_F(SuiteIni, LogsAMissingSectionOrKey)
{
    const struct
    {
        const char *ini, *file, *section, *key, *value, *logged;
    } cases[] = {
        {"[CORVANE]\r\nDataRoot=D:\\Farm\r\n", nullptr, "CORVANE", "DataRoot", "D:\\Farm", ""},
        {"[CORVANE]\r\nDataRoot=x\r\n", nullptr, "Corvane", "ModuleFileName", "", "key"},
        {"[CORVANE]\r\nFirm=x\r\n", nullptr, "START", "Firm", "", "section"},
        // Only the key test is waived for "Invalid Index".
        {"[HELPCONTEXTIDS]\r\nA=12\r\n", nullptr, "HELPCONTEXTIDS", "Invalid Index", "", ""},
        // "Data" is a prefix of "DataRoot": counted as present, read as empty.
        {"[CORVANE]\r\nDataRoot=D:\\Farm\r\n", nullptr, "CORVANE", "Data", "", ""},
        // The lookup ignores case, the text tests do not: a value and a log line.
        {"[START]\r\nfirm=Acme\r\n", nullptr, "START", "Firm", "Acme", "key"},
        {"[wage]\r\nAllEmployees=Y\r\n", nullptr, "Wage", "AllEmployees", "Y", "section"},
        // Without an INI file the bare name is read, and logged; only exactly WIN.INI is spared.
        {nullptr, "Corvane.ini", "START", "Firm", "", "section"},
        {nullptr, "WIN.INI", "INTL", "iCountry", "64", ""},
        {nullptr, "win.ini", "INTL", "iCountry", "64", "section"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.section) + "/" + c.key + " in " + (c.ini ? c.ini : "none"));
        resetErrorLogState();
        QFile::remove(m_suite.errorLogPath());
        c.ini ? m_suite.writeIni(c.ini) : m_suite.removeIni();
        const QString file = c.file ? QString(c.file) : m_suite.iniPath();
        EXPECT_EQ(ReadIni(c.section, c.key, file), c.value);
        EXPECT_EQ(loggedText().section(u' ', 1, 1), c.logged); // "A key from ..."
    }
    EXPECT_EQ(suiteIniFile(), "Corvane.ini");
}

// Each row: the INI text (none: no file), the setting, and what it gives (%S the suite
// folder, %A the program's).
TEST_F(SuiteIni, SettingsUseTheirKeysOrFallBack)
{
    using Call = QString (*)(const Settings &);
    const Call database = [](const Settings &s) { return s.DatabaseName(); };
    const Call wages = [](const Settings &s) { return s.WageDataBase(); };
    const Call employeeOnly = [](const Settings &s) { return QString::number(s.EmployeeOnly()); };
    const Call firm = [](const Settings &) { return FirmName(); };
    const Call taxCaption = [](const Settings &) { return taxNumberCaption(); };
    const Call country = [](const Settings &) { return QString::number(countryCode()); };
    const Call wageAccount = [](const Settings &) { return QString::number(iniWageAccount()); };
    const Call help = [](const Settings &) { return helpFolder(); };
    const Call modules = [](const Settings &) { return modulesDatabase(); };
    const Call installedModules = [](const Settings &) {
        qputenv("CORVANE_INSTALDIR", "/opt/corvane");
        return modulesDatabase();
    };
    const QByteArray present = "[CORVANE]\r\nDataRoot=/srv/books/\r\nWageFileName=/elsewhere/W.mdb"
                               "\r\nProgramDirectory=/opt/cv \r\n[START]\r\nFirm=Acme & Sons\r\n";
    const struct
    {
        const char *ini;
        Call call;
        const char *value;
    } cases[] = {
        {nullptr, database, "%S/data/Farm32.mdb"},
        {nullptr, employeeOnly, "1"},
        {nullptr, firm, "Corvane"},
        {nullptr, taxCaption, "GST Number"},
        {nullptr, modules, "%A/Modules.mdb"},
        // Values that are present are used as they stand; "Corvane" and "CORVANE" are one.
        {present, database, "/srv/books//Farm32.mdb"},
        {present, wages, "/elsewhere/W.mdb"},
        {present, help, "/opt/cv/Help"},
        {present, installedModules, "/opt/cv/Modules.mdb"},
        {"[CORVANE]\r\nDataFileName=/a/F.mdb\r\n", installedModules, "/opt/corvane/Modules.mdb"},
        {"[CORVANE]\r\nModuleFileName=/m/Mods.mdb\r\n", installedModules, "/m/Mods.mdb"},
        // The tax number caption falls back in turn.
        {"[TAX]\r\nTaxNumberName=ABN\r\nTaxName=GST\r\n", taxCaption, "ABN Number"},
        // Only Y means all employees; the wage account needs a number that fits.
        {"[WAGE]\r\nAllEmployees=y\r\n", employeeOnly, "0"},
        {"[WAGE]\r\nAllEmployees=Yes\r\n", employeeOnly, "1"},
        {"[TAX]\r\nWageAccount=abc\r\n", wageAccount, "401001"},
        {"[TAX]\r\nWageAccount= 402,001 \r\n", wageAccount, "402001"},
        {"[TAX]\r\nWageAccount=99999999999\r\n", wageAccount, "401001"},
        {"[WINDOWS]\r\nCountry=44\r\n", country, "44"}};
    const QString app = QCoreApplication::applicationDirPath();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.ini ? c.ini : "no INI file");
        resetErrorLogState();
        QFile::remove(m_suite.errorLogPath());
        qunsetenv("CORVANE_INSTALDIR");
        c.ini ? m_suite.writeIni(c.ini) : m_suite.removeIni();
        EXPECT_EQ(c.call(m_settings),
                  QString(c.value).replace("%S", m_suite.dir()).replace("%A", app));
    }
}

// The switch is written back to the section it is read from; without a suite INI file it
// lives in the per-user folder, and is remembered there, as the bare name's file was in the
// system folder.
TEST_F(SuiteIni, TheEmployeeSwitchIsWrittenWhereItIsRead)
{
    ini("[CORVANE]\r\nDataRoot=x\r\n[Wage]\r\nallemployees=N\r\n");
    ASSERT_TRUE(writeAllEmployees("Y"));
    EXPECT_FALSE(m_settings.EmployeeOnly());
    EXPECT_EQ(m_suite.readIni(), "[CORVANE]\r\nDataRoot=x\r\n[Wage]\r\nAllEmployees=Y\r\n");

    m_suite.removeIni();
    EXPECT_TRUE(m_settings.EmployeeOnly());
    ASSERT_TRUE(writeAllEmployees("Y"));
    EXPECT_FALSE(m_settings.EmployeeOnly());
    QFile written(m_home.iniPath());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "[WAGE]\r\nAllEmployees=Y\r\n");
    EXPECT_FALSE(QFileInfo::exists(m_suite.iniPath()));
}

TEST_F(SuiteIni, CountryCodeRule)
{
    ini("[WINDOWS]\r\nCountry=abc\r\n");
    const std::pair<QLocale::Territory, int> cases[] = {
        {QLocale::UnitedStates, 64}, // iCountry 1
        {QLocale::Australia, 61},
        {QLocale::Uruguay, 598},
        {QLocale::Antarctica, 64}, // no iCountry
    };
    for (const auto &[territory, expected] : cases) {
        setWinIniTerritory(territory);
        EXPECT_EQ(countryCode(), expected) << QLocale::territoryToString(territory).toStdString();
    }
}

TEST_F(SuiteIni, ColourEntryKeepsComponentsThatDoNotConvert)
{
    ini("[COLOURS]\r\nCvHeader=10, 20 ,30\r\nPartial=40,x\r\nTooBig=1,99999999999,2\r\n"
        "[HELPCONTEXTIDS]\r\nAddressBook=2100\r\n");
    suiteColour() = SuiteColour{};
    auto read = [](const QString &entry) {
        readColourEntry(entry);
        return QList<int>{suiteColour().red, suiteColour().green, suiteColour().blue};
    };
    EXPECT_EQ(read("CvHeader"), QList<int>({10, 20, 30}));
    EXPECT_EQ(read("Partial"), QList<int>({40, 20, 30}));
    EXPECT_EQ(read("TooBig"), QList<int>({1, 20, 2}));

    EXPECT_EQ(helpContextId("AddressBook"), "2100");
}

} // namespace
