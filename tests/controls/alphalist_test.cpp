// The letter strip widget: real mouse and key events, the pixels it paints,
// and screenshots to look at.
#include "controls/ui/alphalist.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <iostream>
#include <QApplication>
#include <QDir>
#include <QFontInfo>
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

QRect cellAt(int k)
{
    return QRect(k == 0 ? 2 : k * S, 2, S, S);
}

int pixelsOf(const QImage &image, const QRect &area, QColor colour)
{
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            n += image.pixelColor(x, y) == colour;
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

TEST(AlphaListWidgetTest, AddressBookStripHighlightsTheStarInRed)
{
    Host host(new AlphaList(AlphaListProperties::addressBookFilter()));
    AlphaList &strip = *host.strip;
    EXPECT_EQ(strip.size(), QSize(490, 22));
    EXPECT_EQ(strip.sizeHint(), QSize(490, 22));
    EXPECT_EQ(strip.selectedLetter(), "*");

    QImage image = host.image();
    EXPECT_GT(pixelsOf(image, cellAt(0), Qt::red), S * S / 3);
    EXPECT_EQ(pixelsOf(image, cellAt(13), Qt::red), 0);
    EXPECT_GT(pixelsOf(image, cellAt(13), Qt::white), 10); // the "M" itself
    EXPECT_EQ(pixelsOf(image, QRect(0, 0, 490, 2), Qt::black), 490 * 2);

    strip.setSelectedLetter("m");
    EXPECT_EQ(strip.selectedLetter(), "M");
    image = host.image();
    EXPECT_GT(pixelsOf(image, cellAt(13), Qt::red), S * S / 3);
    EXPECT_EQ(pixelsOf(image, cellAt(0), Qt::red), 0);
}

TEST(AlphaListWidgetTest, DraggingMovesTheHighlightCellByCell)
{
    Host host(new AlphaList);
    AlphaList &strip = *host.strip;
    QSignalSpy mouseUps(&strip, &AlphaList::MouseUp);

    QTest::mousePress(&strip, Qt::LeftButton, {}, cellCentre(3));
    EXPECT_EQ(strip.selectedLetter(), "C");
    for (int k = 4; k <= 7; ++k) {
        QTest::mouseMove(&strip, cellCentre(k));
        EXPECT_EQ(strip.selectedLetter(), QString(QChar('A' + k - 1)));
    }
    EXPECT_EQ(mouseUps.count(), 0);
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, cellCentre(7));
    EXPECT_EQ(mouseUps.count(), 1);

    // Misses and other buttons select nothing, but every release is reported.
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(1, 10));
    QTest::mouseClick(&strip, Qt::RightButton, {}, cellCentre(20));
    EXPECT_EQ(strip.selectedLetter(), "G");
    EXPECT_EQ(mouseUps.count(), 3);

    // Disabled, it ignores input and reports nothing.
    QSignalSpy keyUps(&strip, &AlphaList::KeyUp);
    strip.setEnabled(false);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, cellCentre(5));
    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_EQ(strip.selectedLetter(), "G");
    EXPECT_EQ(mouseUps.count() + keyUps.count(), 3);
}

TEST(AlphaListWidgetTest, ArrowKeysMoveAndEveryReleaseIsReported)
{
    Host host(new AlphaList);
    AlphaList &strip = *host.strip;
    strip.setFocus();
    QSignalSpy keyUps(&strip, &AlphaList::KeyUp);

    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_EQ(strip.selectedLetter(), "B");
    QTest::keyClick(&strip, Qt::Key_Left);
    QTest::keyClick(&strip, Qt::Key_Left);
    QTest::keyClick(&strip, Qt::Key_End);
    EXPECT_EQ(strip.selectedLetter(), "*");
    EXPECT_EQ(keyUps.count(), 4);

    strip.setOrientation(1);
    EXPECT_EQ(strip.size(), QSize(22, 490));
    QTest::keyClick(&strip, Qt::Key_Right);
    EXPECT_EQ(strip.selectedLetter(), "*");
    QTest::keyClick(&strip, Qt::Key_Down);
    EXPECT_EQ(strip.selectedLetter(), "A");
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(10, 3 * S + 5));
    EXPECT_EQ(strip.selectedLetter(), "C");

    strip.setOrientation(2); // neither: the strip takes no room
    EXPECT_EQ(strip.sizeHint(), QSize(0, 0));
    strip.resize(200, 40);
    EXPECT_EQ(strip.size(), QSize(0, 0));
}

TEST(AlphaListWidgetTest, FocusRectangleComesAndGoes)
{
    Host host(new AlphaList);
    AlphaList &strip = *host.strip;
    strip.setShowFocus(true);
    strip.setFocus();
    QImage image = host.image();
    EXPECT_EQ(image.pixelColor(0, 0), Qt::white);
    EXPECT_EQ(image.pixelColor(1, 0), Qt::black); // dotted
    EXPECT_EQ(image.pixelColor(488, 21), Qt::white);

    host.field->setFocus();
    EXPECT_EQ(host.image().pixelColor(0, 0), Qt::black);

    strip.setShowFocus(false);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, cellCentre(2));
    EXPECT_TRUE(strip.hasFocus());
    EXPECT_EQ(host.image().pixelColor(0, 0), Qt::black);
}

TEST(AlphaListWidgetTest, Screenshots)
{
    const QString folder = QDir::currentPath() + "/screenshots";
    QDir().mkpath(folder);

    Host row(new AlphaList);
    const QFontInfo font(row.strip->letterFont());
    std::cout << "letters: " << font.family().toStdString() << ' ' << font.pixelSize()
              << "px bold=" << font.bold() << '\n';
    Host column(new AlphaList);
    column.strip->setSelectedLetter("K");
    column.strip->setOrientation(1);
    Host addressBook(new AlphaList(AlphaListProperties::addressBookFilter()));
    addressBook.strip->setSelectedLetter("M");

    const std::pair<const char *, const Host *> shots[] = {
        {"alphalist_horizontal.png", &row},
        {"alphalist_vertical.png", &column},
        {"alphalist_addressbook.png", &addressBook},
    };
    for (const auto &[name, host] : shots) {
        const QString path = folder + '/' + name;
        ASSERT_TRUE(host->strip->grab().save(path));
        std::cout << "screenshot: " << path.toStdString() << '\n';
    }

    // Every letter, centred and top-aligned, fits its cell in the font
    // actually used (Verdana or its stand-in), so none is clipped.
    const QFontMetrics metrics(row.strip->letterFont());
    for (char16_t c : u"*ABCDEFGHIJKLMNOPQRSTUVWXYZ") {
        if (c == 0)
            continue;
        const QChar letter(c);
        const QRect ink = metrics.boundingRect(letter).translated(
            (S - metrics.horizontalAdvance(letter)) / 2, metrics.ascent());
        EXPECT_TRUE(QRect(0, 0, S, S).contains(ink))
            << char(c) << " ink " << ink.x() << ',' << ink.y() << ' ' << ink.width() << 'x'
            << ink.height();
    }
}

} // namespace
