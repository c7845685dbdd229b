// The letter strip: its rules without a widget (geometry, hit test, keys, the
// selected-letter setter, stored properties), then the widget, whose real
// mouse and key events reach those rules, and what it paints.
#include "controls/alphalistcanvas.h"
#include "controls/alphalistgeometry.h"
#include "controls/alphalistlogic.h"
#include "controls/ui/alphalist.h"
#include "core/cverror.h"
#include "support/errorof.h"
#include "support/qtprinters.h"

#include <functional>
#include <gtest/gtest.h>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <tuple>

using namespace AlphaListGeometry;

namespace {

// Keeps what the strip draws as readable lines, e.g. "fill 18,2,36,20 ff0000".
class RecordingCanvas : public AlphaListCanvas
{
public:
    QStringList ops;
    QSizeF outer;

    void clear(qint32 back) override { ops << QStringLiteral("clear %1").arg(back, 0, 16); }
    void setFontSize(qint32) override {}
    void setOuterSize(const QSizeF &size) override { outer = size; }
    QSize surfaceSize() const override { return outer.toSize(); }
    void fillRect(const AlphaListRect &r, qint32 c) override { add("fill", r, c); }
    void frameRect(const AlphaListRect &r, qint32 c) override { add("frame", r, c); }
    void drawLetter(const AlphaListRect &r, const QString &t, qint32 c) override
    {
        add("letter " + t, r, c);
    }
    void drawFocusRect(const AlphaListRect &r, qint32 c) override { add("focus", r, c); }

private:
    void add(const QString &what, const AlphaListRect &r, qint32 c)
    {
        ops << what + QString::asprintf(" %d,%d,%d,%d ", r.left, r.top, r.right, r.bottom) +
                   QString::number(c, 16);
    }
};

TEST(AlphaListGeometryTest, CellsHitTestAndKeys)
{
    // S is 1.5 times the font size, rounded half to even.
    EXPECT_EQ(cellSize(11), 16);
    EXPECT_EQ(cellSize(3), 4);
    EXPECT_EQ(outerSize(Vertical, 18), QSizeF(21.6, 490));
    EXPECT_EQ(outerSize(2, 18), QSizeF(0, 0));
    EXPECT_EQ(errorOf([] { outerSize(Horizontal, 1214); }), CvError::Overflow);
    EXPECT_EQ(errorOf([] { cellSize(30000); }), CvError::Overflow);
    EXPECT_EQ(starCell(18), (AlphaListRect{2, 2, 20, 20}));
    EXPECT_EQ(letterCell(Horizontal, 26, 18), (AlphaListRect{468, 2, 486, 20}));
    EXPECT_EQ(letterCell(Vertical, 1, 18), (AlphaListRect{2, 18, 20, 36}));

    // Where a point falls: the cell's start, or none before the star and past "Z" (exactly
    // 27 x S is still "Z").
    const std::pair<double, int> starts[] = {{1.9, -1}, {2, 2},     {17.9, 2},
                                             {18, 18},  {486, 468}, {486.1, -1}};
    for (const auto &[at, start] : starts)
        EXPECT_EQ(cellStart(at, 18).value_or(-1), start) << at;
    EXPECT_EQ(letterCodeAt(468, 18), 'Z');
    EXPECT_EQ(letterCodeAt(2, 4), StarCode); // 64.5 rounds to even
    EXPECT_EQ(letterCodeAt(2, 3), 'A');      // tiny cells: the first one reads as "A"

    // Only the arrows along the strip move it.
    EXPECT_EQ(stripKey(Horizontal, Qt::Key_Right), StripKey::Next);
    EXPECT_EQ(stripKey(Horizontal, Qt::Key_Up), StripKey::None);
    EXPECT_EQ(stripKey(Vertical, Qt::Key_Up), StripKey::Previous);
}

class AlphaListLogicTest : public ::testing::Test
{
protected:
    void show(const QVariantMap &stored)
    {
        logic.readProperties(stored);
        logic.resized();
        logic.shown();
    }
    void showNew()
    {
        logic.initProperties();
        logic.resized();
        logic.shown();
    }
    // What the last call drew.
    QStringList drawnBy(const std::function<void()> &call)
    {
        canvas.ops.clear();
        call();
        return canvas.ops;
    }

    RecordingCanvas canvas;
    AlphaListLogic logic{canvas};
};

TEST_F(AlphaListLogicTest, SelectedLetterSetter)
{
    showNew();
    logic.setSelectedLetter("m");
    EXPECT_EQ(logic.selectedLetter(), "M");
    EXPECT_EQ(logic.cellRect(), (AlphaListRect{234, 2, 252, 20}));

    // "a" is not folded: it points past the strip and nothing changes.
    EXPECT_TRUE(drawnBy([&] { logic.setSelectedLetter("a"); }).isEmpty());
    EXPECT_EQ(logic.selectedLetter(), "M");

    logic.setSelectedLetter("*");
    EXPECT_EQ(logic.letterCode(), StarCode);
    EXPECT_EQ(errorOf([&] { logic.setSelectedLetter(""); }), CvError::InvalidProcedureCall);

    // Only the other setters mark their property for saving.
    EXPECT_TRUE(logic.changedProperties().isEmpty());
    logic.setHighlightColor(0xFF);
    EXPECT_EQ(logic.changedProperties(), QStringList{"HighlightColor"});
    EXPECT_EQ(logic.selectedLetter(), "*");
}

// Arrow keys along the strip stop at its ends, drawing nothing there; only the left
// button selects, and only on a cell.
TEST_F(AlphaListLogicTest, KeysAndTheLeftButtonMoveTheSelection)
{
    showNew();
    const auto key = [this](int k) { return [this, k] { logic.keyDown(k); }; };
    const auto press = [this](Qt::MouseButton b, double x, double y = 10) {
        return [this, b, x, y] { logic.mouseDown(b, {x, y}); };
    };
    const auto drag = [this](Qt::MouseButtons b, double x) {
        return [this, b, x] { logic.mouseMove(b, {x, 10}); };
    };
    const auto set = [this](const char *letter) {
        return [this, letter] { logic.setSelectedLetter(letter); };
    };
    const std::tuple<std::function<void()>, const char *, bool> steps[] = {
        {set("Y"), "Y", true},
        {key(Qt::Key_Right), "Z", true},
        {key(Qt::Key_Right), "Z", false},
        {set("A"), "A", true},
        {key(Qt::Key_Left), "*", true},
        {key(Qt::Key_Left), "*", false},
        {press(Qt::LeftButton, 3 * 18 + 9), "C", true},
        {press(Qt::RightButton, 5 * 18 + 9), "C", false},
        {drag(Qt::LeftButton | Qt::RightButton, 5 * 18 + 9), "C", false},
        {drag(Qt::LeftButton, 486.5), "C", false},
        {drag(Qt::LeftButton, 486), "Z", true},
        {[this] { logic.setOrientation(Vertical); }, "Z", true},
        {key(Qt::Key_Up), "Y", true},
        {key(Qt::Key_Right), "Y", false},
        {press(Qt::LeftButton, 300, 2 * 18 + 1), "B", true}, // across the strip: no matter
    };
    for (const auto &[step, letter, draws] : steps) {
        SCOPED_TRACE(letter);
        EXPECT_EQ(drawnBy(step).isEmpty(), !draws);
        EXPECT_EQ(logic.selectedLetter(), letter);
    }
    EXPECT_FALSE(logic.keyDown(Qt::Key_Left));
}

TEST_F(AlphaListLogicTest, OtherOrientationsDrawAndSelectNothing)
{
    showNew();
    EXPECT_EQ(drawnBy([&] { logic.setOrientation(2); }), QStringList{"clear 0"});
    EXPECT_TRUE(drawnBy([&] {
                    logic.mouseDown(Qt::LeftButton, {100, 10});
                    EXPECT_FALSE(logic.keyDown(Qt::Key_Right));
                    logic.setSelectedLetter("Q");
                }).isEmpty());
    EXPECT_EQ(logic.selectedLetter(), "A");
    logic.resized();
    EXPECT_EQ(canvas.outer, QSizeF(0, 0));

    logic.setOrientation(Horizontal);
    EXPECT_EQ(errorOf([&] { logic.setOrientation(40000); }), CvError::Overflow);
    EXPECT_EQ(logic.orientation(), Horizontal);
}

TEST_F(AlphaListLogicTest, StoredProperties)
{
    // Missing entries keep what a constructed control holds: black highlight text.
    const QVariantMap bag = AlphaListProperties::addressBookFilter();
    show(bag);
    EXPECT_EQ(logic.selectedLetter(), "*");
    EXPECT_EQ(logic.textHighlightColor(), 0);
    EXPECT_TRUE(canvas.ops.contains("fill 2,2,20,20 ff"));

    AlphaListProperties stored;
    stored.read(bag);
    EXPECT_EQ(stored.write(), bag);
    EXPECT_EQ(errorOf([&] { stored.read({{"Orientation", 70000}}); }), CvError::Overflow);
    EXPECT_EQ(stored.orientation, 0);
}

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
    EXPECT_EQ(host.image().pixelColor(0, 0), Qt::white); // dotted
    host.field->setFocus();
    EXPECT_EQ(host.image().pixelColor(0, 0), Qt::black);
}

TEST(AlphaListWidgetTest, MouseAndKeysReachTheLogicAndEveryReleaseIsReported)
{
    Host host(new AlphaList);
    AlphaList &strip = *host.strip;
    QSignalSpy mouseUps(&strip, &AlphaList::MouseUp), keyUps(&strip, &AlphaList::KeyUp);
    QTest::mousePress(&strip, Qt::LeftButton, {}, cellCentre(3));
    EXPECT_EQ(strip.selectedLetter(), "C");
    QTest::mouseMove(&strip, cellCentre(7));
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, cellCentre(7));
    QTest::mouseClick(&strip, Qt::RightButton, {}, cellCentre(20));
    EXPECT_EQ(strip.selectedLetter(), "G");
    EXPECT_EQ(mouseUps.count(), 2);
    EXPECT_TRUE(strip.hasFocus()) << "a click gives the strip the focus";

    QTest::keyClick(&strip, Qt::Key_Right);
    strip.setOrientation(1);
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
