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
        {"TAX", "WageAccount", "401002"},    {"CORVANE", "Empty", ""},
        {"CORVANE", "Absent", "dflt"},       {"NOSUCH", "Firm", "dflt"}};
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
        {"[CORVANE]\r\nDataRoot=x", "[CORVANE]\r\nDataRoot=x\r\n[WAGE]\r\nAllEmployees=Y\r\n"},
        {"", "[WAGE]\r\nAllEmployees=Y\r\n"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString());
        const QString ini = c.before.isEmpty() ? m_dir.filePath("fresh.ini") : write(c.before);
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
    EXPECT_EQ(readTextLines("Corvane.ini"), QStringList({"[WAGE]", "AllEmployees=N"}));
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
    QString read(const QString &section, const QString &key)
    {
        return ReadIni(section, key, m_suite.iniPath());
    }
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

// One call per row, each on a fresh log: the value read and the log line it leaves.
TEST_F(SuiteIni, LogsAMissingSectionOrKeyWithItsContext)
{
    const struct
    {
        const char *ini, *section, *key, *value, *logged;
    } cases[] = {
        {"[CORVANE]\r\nDataRoot=D:\\Farm\r\n", "CORVANE", "DataRoot", "D:\\Farm", ""},
        // The context keeps the section as the caller wrote it.
        {"[CORVANE]\r\nDataRoot=x\r\n[TAX]\r\nModuleFileName=y\r\n", "Corvane", "ModuleFileName",
         "", "A key from %1 is missing.Section=Corvane, Key=ModuleFileName"},
        {"[CORVANE]\r\nFirm=x\r\n", "START", "Firm", "",
         "A section from %1 is missing.Section=START, Key=Firm"},
        // Only the key test is waived for "Invalid Index": the section test still logs.
        {"[HELPCONTEXTIDS]\r\nAddressBook=12\r\n", "HELPCONTEXTIDS", "Invalid Index", "", ""},
        {"[HELPCONTEXTIDS]\r\nAddressBook=12\r\n", "NOSECTION", "Invalid Index", "",
         "A section from %1 is missing.Section=NOSECTION, Key=Invalid Index"},
        // "Data" is a prefix of "DataRoot": counted as present, read as empty.
        {"[CORVANE]\r\nDataRoot=D:\\Farm\r\n", "CORVANE", "Data", "", ""},
        // The lookup ignores case, the text tests do not: a value and a log line.
        {"[START]\r\nfirm=Acme\r\n", "START", "Firm", "Acme",
         "A key from %1 is missing.Section=START, Key=Firm"},
        {"[wage]\r\nAllEmployees=Y\r\n", "Wage", "AllEmployees", "Y",
         "A section from %1 is missing.Section=Wage, Key=AllEmployees"},
        {"[START] \r\nFirm=Acme\r\n", "START", "Firm", "Acme",
         "A section from %1 is missing.Section=START, Key=Firm"},
        {"\xEF\xBB\xBF[START]\nFirm=Acme\n[TAX]\nTaxName=GST", "TAX", "TaxName", "GST", ""}};
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.section) + "/" + c.key + " in " + c.ini);
        resetErrorLogState();
        QFile::remove(m_suite.errorLogPath());
        m_suite.writeIni(c.ini);
        EXPECT_EQ(read(c.section, c.key), c.value);
        EXPECT_EQ(loggedText(), *c.logged ? QString(c.logged).arg(m_suite.iniPath()) : "");
    }
}

TEST_F(SuiteIni, WithoutAnIniFileTheBareNameIsLogged)
{
    m_suite.removeIni();
    ASSERT_EQ(suiteIniFile(), "Corvane.ini");
    EXPECT_EQ(ReadIni("START", "Firm", suiteIniFile()), "");
    EXPECT_EQ(loggedText(), "A section from Corvane.ini is missing.Section=START, Key=Firm");
}

TEST_F(SuiteIni, OnlyExactlyWinIniIsSpared)
{
    setWinIniTerritory(QLocale::Brazil);
    EXPECT_EQ(ReadIni("INTL", "iCountry", "WIN.INI"), "55");
    EXPECT_EQ(loggedText(), "");
    EXPECT_EQ(ReadIni("INTL", "iCountry", "win.ini"), "55");
    EXPECT_EQ(loggedText(), "A section from win.ini is missing.Section=INTL, Key=iCountry");
}

TEST_F(SuiteIni, WithoutAnIniFileEveryDefaultApplies)
{
    m_suite.removeIni();
    EXPECT_EQ(m_settings.DatabaseName(), m_suite.dir() + "/data/Farm32.mdb");
    EXPECT_EQ(m_settings.WageDataBase(), m_suite.dir() + "/data/Wage32.mdb");
    EXPECT_TRUE(m_settings.EmployeeOnly());
    EXPECT_EQ(FirmName(), "Corvane");
    EXPECT_EQ(taxNumberCaption(), "GST Number");
    EXPECT_EQ(countryCode(), 64);
    EXPECT_EQ(iniWageAccount(), 401001);
    EXPECT_EQ(helpFolder(), QCoreApplication::applicationDirPath() + "/Help");
    EXPECT_EQ(modulesDatabase(), QCoreApplication::applicationDirPath() + "/Modules.mdb");
    EXPECT_EQ(QString::fromUtf8(m_suite.readErrorLog()).section(u'\t', 1),
              "A section from Corvane.ini is missing.Section=CORVANE, Key=DataFileName\r\n");
}

TEST_F(SuiteIni, ValuesThatArePresentAreUsedAsTheyStand)
{
    qputenv("CORVANE_INSTALDIR", "/opt/corvane");
    ini("[CORVANE]\r\nDataRoot=/srv/books/\r\nWageFileName=/elsewhere/W.mdb\r\n"
        "ProgramDirectory=/opt/cv \r\n[START]\r\nFirm=Acme & Sons\r\n");
    EXPECT_EQ(m_settings.DatabaseName(), "/srv/books//Farm32.mdb");
    EXPECT_EQ(m_settings.WageDataBase(), "/elsewhere/W.mdb");
    EXPECT_EQ(FirmName(), "Acme & Sons");
    EXPECT_EQ(helpFolder(), "/opt/cv/Help");
    // "Corvane" and "CORVANE" are one section.
    EXPECT_EQ(modulesDatabase(), "/opt/cv/Modules.mdb");

    ini("[CORVANE]\r\nDataFileName=/a/F.mdb\r\n");
    EXPECT_EQ(m_settings.DatabaseName(), "/a/F.mdb");
    EXPECT_EQ(modulesDatabase(), "/opt/corvane/Modules.mdb");
    ini("[CORVANE]\r\nModuleFileName=/m/Mods.mdb\r\n");
    EXPECT_EQ(modulesDatabase(), "/m/Mods.mdb");
    // The tax number caption falls back in turn.
    ini("[TAX]\r\nTaxNumberName=ABN\r\nTaxName=GST\r\n");
    EXPECT_EQ(taxNumberCaption(), "ABN Number");
    ini("[TAX]\r\nTaxName=IRD\r\n");
    EXPECT_EQ(taxNumberCaption(), "IRD Number");
}

TEST_F(SuiteIni, OnlyYMeansAllEmployeesAndWageAccountNeedsANumber)
{
    for (const auto &[text, employeeOnly] : {std::pair{"y", false}, {"Yes", true}, {"N", true}}) {
        ini(QByteArray("[WAGE]\r\nAllEmployees=") + text + "\r\n");
        EXPECT_EQ(m_settings.EmployeeOnly(), employeeOnly) << text;
    }
    for (const auto &[text, account] :
         {std::pair{"abc", 401001}, {"0", 0}, {" 402,001 ", 402001}, {"99999999999", 401001}}) {
        ini(QByteArray("[TAX]\r\nWageAccount=") + text + "\r\n");
        EXPECT_EQ(iniWageAccount(), account) << text;
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
    for (const char *value : {"Y", "N", "Y"}) {
        ASSERT_TRUE(writeAllEmployees(value));
        EXPECT_EQ(m_settings.EmployeeOnly(), value[0] == 'N');
    }
    QFile written(m_home.iniPath());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "[WAGE]\r\nAllEmployees=Y\r\n");
    EXPECT_FALSE(QFileInfo::exists(m_suite.iniPath()));
}

TEST_F(SuiteIni, CountryCodeRule)
{
    ini("[WINDOWS]\r\nCountry=44\r\n");
    EXPECT_EQ(countryCode(), 44);

    ini("[WINDOWS]\r\nCountry=abc\r\n");
    const std::pair<QLocale::Territory, int> cases[] = {
        {QLocale::UnitedStates, 64}, // iCountry 1
        {QLocale::Australia, 61},     {QLocale::Brazil, 55},
        {QLocale::Uruguay, 598},      {QLocale::NewZealand, 64},
        {QLocale::UnitedKingdom, 64}, {QLocale::Antarctica, 64}, // no iCountry
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
    EXPECT_EQ(read("Missing"), QList<int>({1, 20, 2}));

    EXPECT_EQ(helpContextId("AddressBook"), "2100");
}

} // namespace
