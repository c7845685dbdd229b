// The INI reader and writer on real files.
#include "config/profilestring.h"
#include "support/confighome.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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
    const QString ini = write("\xEF\xBB\xBF[corvane]\r\n"
                              "  DataRoot  =  C:\\Data  \r\n"
                              "Quoted=\"  with blanks  \"\n"
                              "Single='x'\r"
                              "Twice=\"\"inner\"\"\n"
                              "Unbalanced=\"abc'\n"
                              "Empty=\n"
                              "Dup=first\n"
                              "dup=second\n"
                              "[START]\n"
                              "Firm=Acme\n"
                              "[Corvane]\n"
                              "Late=in the second section\n"
                              "[ TAX ]\n"
                              "WageAccount = 401002");

    EXPECT_EQ(read(ini, "CORVANE", "dataroot"), "C:\\Data");
    EXPECT_EQ(read(ini, "CORVANE", "Quoted"), "  with blanks  ");
    EXPECT_EQ(read(ini, "CORVANE", "Single"), "x");
    EXPECT_EQ(read(ini, "CORVANE", "Twice"), "\"inner\"");
    EXPECT_EQ(read(ini, "CORVANE", "Unbalanced"), "\"abc'");
    EXPECT_EQ(read(ini, "CORVANE", "Dup"), "first");
    EXPECT_EQ(read(ini, "START", "FIRM"), "Acme");
    // Only the first of two sections of one name is read.
    EXPECT_EQ(read(ini, "CORVANE", "Late"), "");
    EXPECT_EQ(read(ini, "TAX", "WageAccount"), "401002");
    EXPECT_EQ(readProfileString("CORVANE", "Empty", "dflt", ini), "");
    EXPECT_EQ(readProfileString("CORVANE", "Absent", "dflt", ini), "dflt");
    EXPECT_EQ(readProfileString("NOSUCH", "Firm", "dflt", ini), "dflt");
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
        {"", "[WAGE]\r\nAllEmployees=Y\r\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.before.toStdString());
        const QString ini = c.before.isEmpty() ? m_dir.filePath("fresh.ini") : write(c.before);
        ASSERT_TRUE(writeProfileString("WAGE", "AllEmployees", "Y", ini));
        EXPECT_EQ(contents(ini), c.after);
        EXPECT_EQ(read(ini, "wage", "allemployees"), "Y");
    }
}

TEST_F(ProfileFileTest, ABareNameIsAFileInThePerUserFolder)
{
    ScopedConfigHome home;
    EXPECT_EQ(readTextLines("Corvane.ini"), std::nullopt);
    ASSERT_TRUE(writeProfileString("WAGE", "AllEmployees", "Y", "Corvane.ini"));
    ASSERT_TRUE(writeProfileString("wage", "AllEmployees", "N", "Corvane.ini"));
    EXPECT_EQ(contents(home.iniPath()), "[WAGE]\r\nAllEmployees=N\r\n");
    EXPECT_EQ(read("Corvane.ini", "Wage", "AllEmployees"), "N");
    EXPECT_EQ(readTextLines("Corvane.ini"), QStringList({"[WAGE]", "AllEmployees=N"}));
}

TEST_F(ProfileFileTest, WriterReportsWhatItCannotWrite)
{
    ScopedConfigHome home;
    EXPECT_FALSE(writeProfileString("WAGE", "AllEmployees", "Y", "WIN.INI"));
    EXPECT_FALSE(
        writeProfileString("WAGE", "AllEmployees", "Y", m_dir.filePath("no/such/dir/x.ini")));
}

} // namespace
