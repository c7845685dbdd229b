// ReadIni's value and its log lines, on a real suite folder.
#include "support/confighome.h"
#include "config/errorlog.h"
#include "config/folders.h"
#include "config/readini.h"
#include "config/winini.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

class ReadIniTest : public ::testing::Test
{
protected:
    ReadIniTest() : m_suite(false) { resetErrorLogState(); }
    ~ReadIniTest() override
    {
        resetErrorLogState();
        setWinIniTerritory(QLocale::AnyTerritory);
    }

    ScopedConfigHome m_home;

    // The text of the one log line, without its time stamp and line end.
    QString loggedText() const
    {
        const QString log = QString::fromUtf8(m_suite.readErrorLog());
        if (log.isEmpty())
            return QString();
        EXPECT_TRUE(log.endsWith("\r\n"));
        EXPECT_EQ(log.count("\r\n"), 1);
        return log.section(u'\t', 1).chopped(2);
    }
    QString read(const QString &section, const QString &key)
    {
        return ReadIni(section, key, m_suite.iniPath());
    }

    TempSuite m_suite;
};

// One call per row, each on a fresh log: the value read and the log line it leaves.
TEST_F(ReadIniTest, LogsAMissingSectionOrKeyWithItsContext)
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
        {"\xEF\xBB\xBF[START]\nFirm=Acme\n[TAX]\nTaxName=GST", "TAX", "TaxName", "GST", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.section) + "/" + c.key + " in " + c.ini);
        resetErrorLogState();
        QFile::remove(m_suite.errorLogPath());
        m_suite.writeIni(c.ini);
        EXPECT_EQ(read(c.section, c.key), c.value);
        EXPECT_EQ(loggedText(), *c.logged ? QString(c.logged).arg(m_suite.iniPath()) : "");
    }
}

TEST_F(ReadIniTest, WithoutAnIniFileTheBareNameIsLogged)
{
    m_suite.removeIni();
    ASSERT_EQ(suiteIniFile(), "Corvane.ini");
    EXPECT_EQ(ReadIni("START", "Firm", suiteIniFile()), "");
    EXPECT_EQ(loggedText(), "A section from Corvane.ini is missing.Section=START, Key=Firm");
}

TEST_F(ReadIniTest, OnlyExactlyWinIniIsSpared)
{
    setWinIniTerritory(QLocale::Brazil);
    EXPECT_EQ(ReadIni("INTL", "iCountry", "WIN.INI"), "55");
    EXPECT_EQ(loggedText(), "");
    EXPECT_EQ(ReadIni("INTL", "iCountry", "win.ini"), "55");
    EXPECT_EQ(loggedText(), "A section from win.ini is missing.Section=INTL, Key=iCountry");
}

} // namespace
