// Settings and the suite values derived from the INI file.
#include "support/confighome.h"
#include "config/errorlog.h"
#include "config/folders.h"
#include "config/settings.h"
#include "config/suitecolour.h"
#include "config/suiteconfig.h"
#include "config/winini.h"
#include "support/qtprinters.h"
#include "support/tempsuite.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace {

class SettingsTest : public ::testing::Test
{
protected:
    SettingsTest() : m_suite(false)
    {
        resetErrorLogState();
        setWinIniTerritory(QLocale::NewZealand);
        qunsetenv("CORVANE_INSTALDIR");
    }
    ~SettingsTest() override
    {
        resetErrorLogState();
        setWinIniTerritory(QLocale::AnyTerritory);
        qunsetenv("CORVANE_INSTALDIR");
    }
    void ini(const QByteArray &text) { m_suite.writeIni(text); }

    ScopedConfigHome m_home;
    TempSuite m_suite;
    Settings m_settings;
};

TEST_F(SettingsTest, WithoutAnIniFileEveryDefaultApplies)
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

TEST_F(SettingsTest, ValuesThatArePresentAreUsedAsTheyStand)
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
}

TEST_F(SettingsTest, OnlyYMeansAllEmployeesAndWageAccountNeedsANumber)
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

TEST_F(SettingsTest, AllEmployeesIsWrittenBackToTheSameSection)
{
    ini("[CORVANE]\r\nDataRoot=x\r\n[Wage]\r\nallemployees=N\r\n");
    ASSERT_TRUE(writeAllEmployees("Y"));
    EXPECT_FALSE(m_settings.EmployeeOnly());
    EXPECT_EQ(m_suite.readIni(), "[CORVANE]\r\nDataRoot=x\r\n[Wage]\r\nAllEmployees=Y\r\n");
}

// Without a suite INI file the switch lives in the per-user folder, and is
// remembered there, as the bare name's file was in the system folder.
TEST_F(SettingsTest, WithoutAnIniFileTheSwitchIsRememberedPerUser)
{
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

TEST_F(SettingsTest, CountryCodeRule)
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

TEST_F(SettingsTest, TaxNumberCaptionFallsBackInTurn)
{
    ini("[TAX]\r\nTaxNumberName=ABN\r\nTaxName=GST\r\n");
    EXPECT_EQ(taxNumberCaption(), "ABN Number");
    ini("[TAX]\r\nTaxName=IRD\r\n");
    EXPECT_EQ(taxNumberCaption(), "IRD Number");
}

TEST_F(SettingsTest, ColourEntryKeepsComponentsThatDoNotConvert)
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
