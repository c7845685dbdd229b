// One main for every test executable: a QApplication on the offscreen
// platform with the New Zealand locale, then GoogleTest.
#include <gtest/gtest.h>
#include <QApplication>
#include <QLocale>

int main(int argc, char **argv)
{
    // Before the application object exists, so listing tests needs no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TZ", "Pacific/Auckland");
    QLocale::setDefault(QLocale(QLocale::English, QLocale::NewZealand));
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
