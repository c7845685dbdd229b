#include "controls/alphalistlogic.h"

#include "controls/alphalistcanvas.h"
#include "controls/alphalistgeometry.h"
#include "core/cverror.h"

using namespace AlphaListGeometry;

namespace {

constexpr int LetterCount = 26;
constexpr qint32 FocusColor = 0xFFFFFF;
// Where "*" is selected from outside the strip's own arithmetic: inside the
// first cell for any cell size above 10 pixels.
constexpr double StarPoint = 10;

QString letterText(qint16 code)
{
    return QString(QChar(char16_t(code)));
}

} // namespace

AlphaListLogic::AlphaListLogic(AlphaListCanvas &canvas) : m_canvas(canvas) {}

void AlphaListLogic::initProperties()
{
    m_props = AlphaListProperties::newInstance();
}

void AlphaListLogic::readProperties(const QVariantMap &bag)
{
    m_props.read(bag);
}

void AlphaListLogic::resized()
{
    m_cellSize = AlphaListGeometry::cellSize(m_props.fontSize);
    m_canvas.setOuterSize(outerSize());
}

QSizeF AlphaListLogic::outerSize() const
{
    return AlphaListGeometry::outerSize(m_props.orientation, m_cellSize);
}

void AlphaListLogic::gotFocus()
{
    const QSize surface = m_canvas.surfaceSize();
    m_focusRect = {0, 0, surface.width(), surface.height()};
    if (m_props.showFocus)
        m_canvas.drawFocusRect(m_focusRect, FocusColor);
}

void AlphaListLogic::lostFocus()
{
    // Redrawing from scratch is what takes the focus rectangle off.
    m_canvas.clear(m_props.backColor);
    fullRedraw();
    redrawWithSelection();
}

bool AlphaListLogic::keyDown(int key)
{
    const StripKey step = stripKey(m_props.orientation, key);
    if (step == StripKey::None)
        return false;
    if (step == StripKey::Next) {
        if (m_letterCode >= FirstLetterCode && m_letterCode < LastLetterCode) {
            selectAtCell(fit16(m_letterCode - (FirstLetterCode - 2)));
        } else if (m_letterCode == StarCode) {
            m_letterCode = FirstLetterCode - 1;
            selectAtCell(1);
        }
    } else {
        if (m_letterCode > FirstLetterCode) {
            const qint16 code = m_letterCode;
            m_letterCode = fit16(code - 2);
            selectAtCell(fit16(code - FirstLetterCode));
        } else if (m_letterCode == FirstLetterCode) {
            m_letterCode = StarCode;
            selectAt(StarPoint, StarPoint);
        }
    }
    m_previousLetter = m_props.selectedLetter;
    return true;
}

void AlphaListLogic::mouseDown(Qt::MouseButton button, const QPointF &position)
{
    if (button != Qt::LeftButton)
        return;
    selectAt(position.x(), position.y());
    m_previousLetter = m_props.selectedLetter;
}

void AlphaListLogic::mouseMove(Qt::MouseButtons buttons, const QPointF &position)
{
    // Only a drag with the left button alone moves the highlight.
    if (buttons != Qt::LeftButton)
        return;
    selectAt(position.x(), position.y());
    m_previousLetter = m_props.selectedLetter;
}

void AlphaListLogic::setSelectedLetter(const QString &text)
{
    if (text == u"*") {
        m_letterCode = FirstLetterCode - 1;
        selectAt(StarPoint, StarPoint);
    } else {
        if (text.isEmpty())
            throw CvError(CvError::InvalidProcedureCall, "AlphaList",
                          "Invalid procedure call or argument");
        qint16 code = qint16(text.front().unicode());
        // "b" to "z" only: "a" is left alone on purpose, and so lands past the
        // end of the strip and changes nothing.
        if (code >= 'b' && code <= 'z')
            code -= 'a' - 'A';
        m_letterCode = code;
        selectAtCell(fit16(code - (FirstLetterCode - 1)));
    }
    m_previousLetter = m_props.selectedLetter;
}

void AlphaListLogic::setShowFocus(bool show)
{
    m_props.showFocus = show;
    changed(QStringLiteral("ShowFocus"));
    redrawWithSelection();
}

void AlphaListLogic::setOrientation(qint32 orientation)
{
    m_props.orientation = fit16(orientation);
    changed(QStringLiteral("Orientation"));
    redrawWithSelection();
}

void AlphaListLogic::setBackColor(qint32 color)
{
    m_props.backColor = color;
    changed(QStringLiteral("BackColor"));
    m_canvas.clear(color);
    redrawWithSelection();
}

void AlphaListLogic::setTextColor(qint32 color)
{
    m_props.textColor = color;
    changed(QStringLiteral("TextColor"));
    redrawWithSelection();
}

void AlphaListLogic::setHighlightColor(qint32 color)
{
    m_props.highlightColor = color;
    changed(QStringLiteral("HighlightColor"));
    redrawWithSelection();
}

void AlphaListLogic::setTextHighlightColor(qint32 color)
{
    m_props.textHighlightColor = color;
    changed(QStringLiteral("TextHighlightColor"));
    redrawWithSelection();
}

void AlphaListLogic::setFontSize(qint32 points)
{
    m_props.fontSize = points;
    changed(QStringLiteral("FontSize"));
    // The view repaints from the surface as it is drawn, so there is nothing
    // to refresh before redrawing.
    fullRedraw();
    redrawWithSelection();
}

void AlphaListLogic::fullRedraw()
{
    m_canvas.clear(m_props.backColor);
    m_cellSize = AlphaListGeometry::cellSize(m_props.fontSize);
    m_canvas.setFontSize(m_props.fontSize);
    if (!isDrawn(m_props.orientation))
        return;
    m_canvas.setOuterSize(outerSize());

    m_cellRect = starCell(m_cellSize);
    m_canvas.drawLetter(m_cellRect, letterText(StarCode), m_props.textColor);
    for (int i = 1; i <= LetterCount; ++i) {
        m_cellRect = letterCell(m_props.orientation, i, m_cellSize);
        m_canvas.drawLetter(m_cellRect, letterText(qint16(FirstLetterCode - 1 + i)),
                            m_props.textColor);
    }
}

void AlphaListLogic::redrawWithSelection()
{
    fullRedraw();
    // The cell rectangle now holds the "Z" cell.
    m_previousLetter = QStringLiteral("Z");
    const QString &letter = m_props.selectedLetter;
    if (!letter.isEmpty() && letter != u"*") {
        // No case folding here: a stored "m" selects nothing.
        m_letterCode = qint16(letter.front().unicode());
        selectAtCell(fit16(m_letterCode - (FirstLetterCode - 1)));
    } else {
        // A third of a cell in; with cells under 6 pixels that is before the
        // strip starts, and "*" stays unselected.
        m_letterCode = StarCode;
        selectAt(m_cellSize / 3.0, m_cellSize / 3.0);
    }
    m_previousLetter = m_props.selectedLetter;
}

void AlphaListLogic::selectAt(double x, double y)
{
    if (!isDrawn(m_props.orientation))
        return;
    const std::optional<double> start =
        cellStart(alongStrip(m_props.orientation, x, y), m_cellSize);
    if (!start)
        return;

    m_canvas.fillRect(m_cellRect, m_props.backColor);
    m_canvas.drawLetter(m_cellRect, m_previousLetter, m_props.textColor);

    const qint32 from = qint32(*start);
    if (m_props.orientation == Vertical) {
        m_cellRect.top = from;
        m_cellRect.bottom = from + m_cellSize;
    } else {
        m_cellRect.left = from;
        m_cellRect.right = from + m_cellSize;
    }
    m_canvas.fillRect(m_cellRect, m_props.highlightColor);
    m_canvas.frameRect(m_cellRect, m_props.textHighlightColor);

    m_letterCode = letterCodeAt(*start, m_cellSize);
    m_props.selectedLetter = letterText(m_letterCode);
    m_canvas.drawLetter(m_cellRect, m_props.selectedLetter, m_props.textHighlightColor);
}

void AlphaListLogic::changed(const QString &name)
{
    if (!m_changed.contains(name))
        m_changed.append(name);
}

void AlphaListLogic::selectAtCell(qint16 cellsFromStart)
{
    const double p = fit16(qint64(cellsFromStart) * m_cellSize);
    selectAt(p, p);
}
