// The letter strip's rules without a widget: geometry, hit test, keys, the
// selected-letter setter, drawing order and stored properties.
#include "controls/alphalistcanvas.h"
#include "controls/alphalistgeometry.h"
#include "controls/alphalistlogic.h"
#include "core/cverror.h"
#include "support/errorof.h"
#include "support/qtprinters.h"

#include <functional>
#include <gtest/gtest.h>

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
        ops << QStringLiteral("%1 %2,%3,%4,%5 %6")
                   .arg(what)
                   .arg(r.left)
                   .arg(r.top)
                   .arg(r.right)
                   .arg(r.bottom)
                   .arg(c, 0, 16);
    }
};

TEST(AlphaListGeometryTest, CellAndStripSizes)
{
    EXPECT_EQ(cellSize(9), 14); // 13.5 rounds to even
    EXPECT_EQ(cellSize(11), 16);
    EXPECT_EQ(cellSize(12), 18);
    EXPECT_EQ(cellSize(3), 4); // 4.5 rounds to even
    EXPECT_EQ(outerSize(Horizontal, 18), QSizeF(490, 21.6));
    EXPECT_EQ(outerSize(Vertical, 18), QSizeF(21.6, 490));
    EXPECT_EQ(outerSize(2, 18), QSizeF(0, 0));
    EXPECT_EQ(outerSize(Horizontal, 1213).width(), 32755);
    EXPECT_EQ(errorOf([] { outerSize(Horizontal, 1214); }), CvError::Overflow);
    EXPECT_EQ(errorOf([] { cellSize(30000); }), CvError::Overflow);

    EXPECT_EQ(starCell(18), (AlphaListRect{2, 2, 20, 20}));
    EXPECT_EQ(letterCell(Horizontal, 26, 18), (AlphaListRect{468, 2, 486, 20}));
    EXPECT_EQ(letterCell(Vertical, 1, 18), (AlphaListRect{2, 18, 20, 36}));
}

TEST(AlphaListGeometryTest, HitTestAtTheEndsOfTheStrip)
{
    EXPECT_FALSE(cellStart(1.9, 18));
    EXPECT_EQ(cellStart(2, 18), 2);
    EXPECT_EQ(cellStart(17.9, 18), 2);
    EXPECT_EQ(cellStart(18, 18), 18);
    EXPECT_EQ(cellStart(485.9, 18), 468);
    EXPECT_EQ(cellStart(486, 18), 468); // exactly 27 x S is still "Z"
    EXPECT_FALSE(cellStart(486.1, 18));

    EXPECT_EQ(letterCodeAt(2, 18), StarCode);
    EXPECT_EQ(letterCodeAt(18, 18), 'A');
    EXPECT_EQ(letterCodeAt(468, 18), 'Z');
    EXPECT_EQ(letterCodeAt(2, 4), StarCode); // 64.5 rounds to even
    EXPECT_EQ(letterCodeAt(2, 3), 'A');      // tiny cells: the first one reads as "A"

    EXPECT_EQ(stripKey(Horizontal, Qt::Key_Right), StripKey::Next);
    EXPECT_EQ(stripKey(Horizontal, Qt::Key_Up), StripKey::None);
    EXPECT_EQ(stripKey(Vertical, Qt::Key_Up), StripKey::Previous);
    EXPECT_EQ(stripKey(Vertical, Qt::Key_Left), StripKey::None);
    EXPECT_EQ(stripKey(2, Qt::Key_Right), StripKey::None);
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

TEST_F(AlphaListLogicTest, ShowDrawsTheStripThenMovesTheHighlightOffZ)
{
    showNew();
    EXPECT_EQ(canvas.outer, QSizeF(490, 21.6));
    const QStringList &ops = canvas.ops;
    ASSERT_EQ(ops.size(), 1 + 27 + 5);
    EXPECT_EQ(ops[0], "clear 0");
    EXPECT_EQ(ops[1], "letter * 2,2,20,20 c0c0c0");
    EXPECT_EQ(ops[2], "letter A 18,2,36,20 c0c0c0");
    EXPECT_EQ(ops[27], "letter Z 468,2,486,20 c0c0c0");
    // Erase the cell last drawn ("Z"), then highlight the stored letter.
    EXPECT_EQ(ops.mid(28), (QStringList{"fill 468,2,486,20 0", "letter Z 468,2,486,20 c0c0c0",
                                        "fill 18,2,36,20 ff0000", "frame 18,2,36,20 ffff",
                                        "letter A 18,2,36,20 ffff"}));
    EXPECT_EQ(logic.selectedLetter(), "A");

    // Moving on erases the highlighted cell with the letter it showed.
    EXPECT_EQ(drawnBy([&] {
                  logic.mouseDown(Qt::LeftButton, {40, 10});
              }).mid(0, 2),
              (QStringList{"fill 18,2,36,20 0", "letter A 18,2,36,20 c0c0c0"}));

    logic.setOrientation(Vertical);
    EXPECT_EQ(canvas.outer, QSizeF(21.6, 490));
    EXPECT_TRUE(canvas.ops.contains("letter Z 2,468,20,486 c0c0c0"));
    EXPECT_TRUE(canvas.ops.contains("fill 2,36,20,54 ff0000")); // "B" stays selected
}

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
    EXPECT_EQ(logic.selectedLetter(), "*");
    EXPECT_EQ(logic.letterCode(), StarCode);
    EXPECT_EQ(logic.previousLetter(), "*");
    EXPECT_EQ(errorOf([&] { logic.setSelectedLetter(""); }), CvError::InvalidProcedureCall);

    // Only the other setters mark their property for saving.
    EXPECT_TRUE(logic.changedProperties().isEmpty());
    logic.setHighlightColor(0xFF);
    EXPECT_EQ(logic.changedProperties(), QStringList{"HighlightColor"});
    EXPECT_EQ(logic.selectedLetter(), "*");
}

TEST_F(AlphaListLogicTest, ArrowKeysStopAtTheEnds)
{
    showNew();
    logic.setSelectedLetter("Y");
    EXPECT_TRUE(logic.keyDown(Qt::Key_Right));
    EXPECT_EQ(logic.selectedLetter(), "Z");
    EXPECT_TRUE(drawnBy([&] { EXPECT_TRUE(logic.keyDown(Qt::Key_Right)); }).isEmpty());

    logic.setSelectedLetter("B");
    logic.keyDown(Qt::Key_Left);
    EXPECT_EQ(logic.selectedLetter(), "A");
    logic.keyDown(Qt::Key_Left);
    EXPECT_EQ(logic.selectedLetter(), "*");
    EXPECT_TRUE(drawnBy([&] { logic.keyDown(Qt::Key_Left); }).isEmpty());
    logic.keyDown(Qt::Key_Right);
    EXPECT_EQ(logic.selectedLetter(), "A");
    EXPECT_FALSE(logic.keyDown(Qt::Key_Down));
    EXPECT_FALSE(logic.keyDown(Qt::Key_Home));

    logic.setOrientation(Vertical);
    logic.keyDown(Qt::Key_Down);
    EXPECT_EQ(logic.selectedLetter(), "B");
    logic.keyDown(Qt::Key_Up);
    logic.keyDown(Qt::Key_Up);
    EXPECT_EQ(logic.selectedLetter(), "*");
    EXPECT_FALSE(logic.keyDown(Qt::Key_Right));
}

TEST_F(AlphaListLogicTest, MouseSelectsWithTheLeftButtonAlone)
{
    showNew();
    logic.mouseDown(Qt::LeftButton, {3 * 18 + 9, 10});
    EXPECT_EQ(logic.selectedLetter(), "C");
    logic.mouseDown(Qt::RightButton, {5 * 18 + 9, 10});
    logic.mouseMove(Qt::LeftButton | Qt::RightButton, {5 * 18 + 9, 10});
    logic.mouseMove(Qt::LeftButton, {1.5, 10});
    logic.mouseMove(Qt::LeftButton, {486.5, 10});
    EXPECT_EQ(logic.selectedLetter(), "C");
    logic.mouseMove(Qt::LeftButton, {486, 10});
    EXPECT_EQ(logic.selectedLetter(), "Z");
    logic.mouseMove(Qt::LeftButton, {5, 10});
    EXPECT_EQ(logic.selectedLetter(), "*");

    logic.setOrientation(Vertical);
    logic.mouseDown(Qt::LeftButton, {300, 2 * 18 + 1}); // across the strip does not matter
    EXPECT_EQ(logic.selectedLetter(), "B");
}

TEST_F(AlphaListLogicTest, OtherOrientationsDrawAndSelectNothing)
{
    showNew();
    const QSizeF before = canvas.outer;
    EXPECT_EQ(drawnBy([&] { logic.setOrientation(2); }), QStringList{"clear 0"});
    EXPECT_EQ(canvas.outer, before); // until the next resize
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
    // 1,000 points: cells of 1,500 pixels, a strip too long for 16 bits.
    EXPECT_EQ(errorOf([&] { logic.setFontSize(1000); }), CvError::Overflow);
}

TEST_F(AlphaListLogicTest, CellsUnderSixPixelsCannotHighlightTheStar)
{
    show({{"FontSize", 3}}); // S = 4: a third of a cell is before the strip
    EXPECT_EQ(logic.cellSize(), 4);
    EXPECT_EQ(logic.selectedLetter(), "");
    EXPECT_FALSE(canvas.ops.last().startsWith("letter *"));

    logic.setFontSize(4); // S = 6
    EXPECT_EQ(logic.selectedLetter(), "*");

    // Setting "*" aims 10 pixels in, which is the "A" cell once cells are 10 or less.
    logic.setFontSize(6);
    logic.setSelectedLetter("*");
    EXPECT_EQ(logic.selectedLetter(), "A");
}

TEST_F(AlphaListLogicTest, StoredProperties)
{
    const QVariantMap written = AlphaListProperties::newInstance().write();
    EXPECT_EQ(written.keys(), (QStringList{"HighlightColor", "SelectedLetter", "ShowFocus",
                                           "TextColor", "TextHighlightColor"}));
    EXPECT_EQ(written["ShowFocus"], false);

    // Missing entries keep what a constructed control holds: black highlight text.
    const QVariantMap bag = AlphaListProperties::addressBookFilter();
    show(bag);
    EXPECT_EQ(logic.selectedLetter(), "*");
    EXPECT_EQ(logic.textColor(), 0xFFFFFF);
    EXPECT_EQ(logic.textHighlightColor(), 0);
    EXPECT_EQ(logic.fontSize(), 12);
    EXPECT_TRUE(canvas.ops.contains("fill 2,2,20,20 ff"));

    AlphaListProperties stored;
    stored.read(bag);
    EXPECT_EQ(stored.write(), bag);
    stored.read({{"FontSize", 9}});
    stored.read({});
    EXPECT_EQ(stored.fontSize, 9);
    EXPECT_EQ(errorOf([&] { stored.read({{"Orientation", 70000}}); }), CvError::Overflow);
    EXPECT_EQ(stored.orientation, 0);
}

} // namespace
