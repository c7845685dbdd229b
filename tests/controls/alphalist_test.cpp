// The letter strip widget: real mouse and key events reach its logic, and what it paints.
// The rules themselves are tested on AlphaListLogic.
#include "controls/ui/alphalist.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QFontMetrics>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

namespace {

constexpr int S = 18; // cells at the default 12 points

// The middle of cell k along a row: 0 is "*", 1 "A", ... 26 "Z".
QPoint cellCentre(int k)
{
    return QPoint(k == 0 ? 2 + S / 2 : k * S + S / 2, 2 + S / 2);
}

int redPixelsIn(const QImage &image, int k)
{
    int n = 0;
    for (int y = 2; y < 2 + S; ++y)
        for (int x = k == 0 ? 2 : k * S; x < (k == 0 ? 2 : k * S) + S; ++x)
            n += image.pixelColor(x, y) == Qt::red;
    return n;
}

// A window holding the strip above another focusable field, as the address book does.
struct Host
{
    explicit Host(AlphaList *strip) : strip(strip)
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(strip);
        layout->addWidget(field);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    QImage image() const { return strip->grab().toImage(); }

    QWidget window;
    AlphaList *strip;
    QLineEdit *field = new QLineEdit(&window);
};

TEST(AlphaListWidgetTest, PaintsTheSelectedCellAndTheFocus)
{
    Host host(new AlphaList(AlphaListProperties::addressBookFilter()));
    AlphaList &strip = *host.strip;
    EXPECT_EQ(strip.size(), QSize(490, 22));
    EXPECT_EQ(strip.selectedLetter(), "*");
    EXPECT_GT(redPixelsIn(host.image(), 0), S * S / 3);
    strip.setSelectedLetter("m");
    const QImage image = host.image();
    EXPECT_GT(redPixelsIn(image, 13), S * S / 3);
    EXPECT_EQ(redPixelsIn(image, 0), 0);

    strip.setShowFocus(true);
    strip.setFocus();
    EXPECT_EQ(host.image().pixelColor(1, 0), Qt::black); // dotted
    EXPECT_EQ(host.image().pixelColor(0, 0), Qt::white);
    host.field->setFocus();
    EXPECT_EQ(host.image().pixelColor(0, 0), Qt::black);

    // Every letter, centred and top-aligned, fits its cell in the font actually used
    // (Verdana or its stand-in), so none is clipped.
    const QFontMetrics metrics(strip.letterFont());
    for (const QChar letter : QStringLiteral("*ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
        const QRect ink = metrics.boundingRect(letter).translated(
            (S - metrics.horizontalAdvance(letter)) / 2, metrics.ascent());
        EXPECT_TRUE(QRect(0, 0, S, S).contains(ink)) << letter.toLatin1();
    }
}

TEST(AlphaListWidgetTest, MouseAndKeysReachTheLogicAndEveryReleaseIsReported)
{
    Host host(new AlphaList);
    AlphaList &strip = *host.strip;
    QSignalSpy mouseUps(&strip, &AlphaList::MouseUp), keyUps(&strip, &AlphaList::KeyUp);
    QTest::mousePress(&strip, Qt::LeftButton, {}, cellCentre(3));
    EXPECT_EQ(strip.selectedLetter(), "C");
    QTest::mouseMove(&strip, cellCentre(7));
    EXPECT_EQ(strip.selectedLetter(), "G");
    EXPECT_EQ(mouseUps.count(), 0);
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, cellCentre(7));
    QTest::mouseClick(&strip, Qt::RightButton, {}, cellCentre(20));
    EXPECT_EQ(strip.selectedLetter(), "G");
    EXPECT_EQ(mouseUps.count(), 2);
    EXPECT_TRUE(strip.hasFocus()) << "a click gives the strip the focus";

    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_EQ(strip.selectedLetter(), "H");
    strip.setOrientation(1);
    EXPECT_EQ(strip.size(), QSize(22, 490));
    QTest::keyClick(&strip, Qt::Key_Down);
    EXPECT_EQ(strip.selectedLetter(), "I");
    EXPECT_EQ(keyUps.count(), 2);

    // Disabled, it ignores input and reports nothing.
    strip.setEnabled(false);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(10, 3 * S + 5));
    QTest::keyClick(&strip, Qt::Key_Down);
    EXPECT_EQ(strip.selectedLetter(), "I");
    EXPECT_EQ(mouseUps.count() + keyUps.count(), 4);
}

} // namespace
