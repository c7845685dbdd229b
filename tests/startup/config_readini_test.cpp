// ReadIni's value and its log lines, on a real suite folder.
#include "startup/errorlog.h"
#include "startup/folders.h"
#include "startup/readini.h"
#include "startup/winini.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

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

TEST_F(ReadIniTest, PresentKeyIsReadWithoutALogLine)
{
    m_suite.writeIni("[CORVANE]\r\nDataRoot=D:\\Farm\r\n[WAGE]\r\nAllEmployees=Y\r\n");
    EXPECT_EQ(read("Wage", "AllEmployees"), "Y");
    EXPECT_EQ(read("CORVANE", "DataRoot"), "D:\\Farm");
    EXPECT_EQ(loggedText(), "");
}

TEST_F(ReadIniTest, MissingKeyIsLoggedWithItsContext)
{
    m_suite.writeIni("[CORVANE]\r\nDataRoot=x\r\n[TAX]\r\nModuleFileName=elsewhere\r\n");
    // The context keeps the section as the caller wrote it.
    EXPECT_EQ(read("Corvane", "ModuleFileName"), "");
    EXPECT_EQ(loggedText(), "A key from " + m_suite.iniPath() +
                                " is missing.Section=Corvane, Key=ModuleFileName");
}

TEST_F(ReadIniTest, MissingSectionIsLoggedWithItsContext)
{
    m_suite.writeIni("[CORVANE]\r\nFirm=x\r\n");
    EXPECT_EQ(read("START", "Firm"), "");
    EXPECT_EQ(loggedText(),
              "A section from " + m_suite.iniPath() + " is missing.Section=START, Key=Firm");
}

TEST_F(ReadIniTest, KeyNamedInvalidIndexIsNotLogged)
{
    m_suite.writeIni("[HELPCONTEXTIDS]\r\nAddressBook=12\r\n");
    EXPECT_EQ(read("HELPCONTEXTIDS", "Invalid Index"), "");
    EXPECT_EQ(loggedText(), "");
    // Only the key test is waived: the section test still logs.
    EXPECT_EQ(read("NOSECTION", "Invalid Index"), "");
    EXPECT_EQ(loggedText(), "A section from " + m_suite.iniPath() +
                                " is missing.Section=NOSECTION, Key=Invalid Index");
}

TEST_F(ReadIniTest, KeyTestMatchesByPrefixAndCase)
{
    m_suite.writeIni("[CORVANE]\r\nDataRoot=D:\\Farm\r\n[START]\r\nfirm=Acme\r\n");
    // "Data" is a prefix of "DataRoot": counted as present, read as empty.
    EXPECT_EQ(read("CORVANE", "Data"), "");
    EXPECT_EQ(loggedText(), "");
    // The lookup ignores case, the text test does not: value and log line.
    EXPECT_EQ(read("START", "Firm"), "Acme");
    EXPECT_EQ(loggedText(),
              "A key from " + m_suite.iniPath() + " is missing.Section=START, Key=Firm");
}

TEST_F(ReadIniTest, HeaderMustBeUpperCaseAndExact)
{
    m_suite.writeIni("[wage]\r\nAllEmployees=Y\r\n[START] \r\nFirm=Acme\r\n");
    EXPECT_EQ(read("Wage", "AllEmployees"), "Y");
    EXPECT_EQ(loggedText(),
              "A section from " + m_suite.iniPath() + " is missing.Section=Wage, Key=AllEmployees");
    resetErrorLogState();
    QFile::remove(m_suite.errorLogPath());
    EXPECT_EQ(read("START", "Firm"), "Acme");
    EXPECT_EQ(loggedText(),
              "A section from " + m_suite.iniPath() + " is missing.Section=START, Key=Firm");
}

TEST_F(ReadIniTest, TextTestReadsLfAndBomFiles)
{
    m_suite.writeIni("\xEF\xBB\xBF[START]\nFirm=Acme\n[TAX]\nTaxName=GST");
    EXPECT_EQ(read("START", "Firm"), "Acme");
    EXPECT_EQ(read("TAX", "TaxName"), "GST");
    EXPECT_EQ(loggedText(), "");
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
