#include "controls/alphalistgeometry.h"

#include "core/cverror.h"
#include "core/numerictext.h"

#include <cmath>
#include <limits>
#include <qnamespace.h>

namespace AlphaListGeometry {

namespace {

constexpr int StripCells = 27;
// The strip starts this far in, and the first cell is measured from here.
constexpr int Inset = 2;
// The strip is a little deeper than a cell.
constexpr double Depth = 1.2;

[[noreturn]] void overflow()
{
    throw CvError(CvError::Overflow, "AlphaList", "Overflow");
}

} // namespace

bool isDrawn(qint16 orientation)
{
    return orientation == Horizontal || orientation == Vertical;
}

qint16 fit16(qint64 value)
{
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        overflow();
    return qint16(value);
}

qint16 cellSize(qint32 fontSize)
{
    const std::optional<qint16> size = roundToInt16(fontSize * 1.5);
    if (!size)
        overflow();
    return *size;
}

QSizeF outerSize(qint16 orientation, qint16 cellSize)
{
    if (!isDrawn(orientation))
        return QSizeF(0, 0);
    const double length = fit16(qint64(fit16(qint64(StripCells) * cellSize)) + 2 * Inset);
    const double depth = cellSize * Depth;
    // The vertical strip used to convert its width with the vertical twips per
    // pixel and its height with the horizontal one. In device-independent
    // pixels both are 15 twips, so the swap cannot be seen and is not kept.
    return orientation == Horizontal ? QSizeF(length, depth) : QSizeF(depth, length);
}

AlphaListRect starCell(qint16 cellSize)
{
    return {Inset, Inset, cellSize + Inset, cellSize + Inset};
}

AlphaListRect letterCell(qint16 orientation, int index, qint16 cellSize)
{
    const qint32 from = fit16(qint64(index) * cellSize);
    const qint32 to = fit16(qint64(index + 1) * cellSize);
    if (orientation == Vertical)
        return {Inset, from, cellSize + Inset, to};
    return {from, Inset, to, cellSize + Inset};
}

double alongStrip(qint16 orientation, double x, double y)
{
    return orientation == Vertical ? y : x;
}

std::optional<double> cellStart(double p, qint16 cellSize)
{
    if (p < Inset || p > fit16(qint64(StripCells) * cellSize))
        return std::nullopt;
    // Past the range check S is at least 1, as p >= 2 > 27 * S otherwise.
    double start = std::floor(p / cellSize) * cellSize;
    if (cellSize / 3.0 > start)
        start = Inset;
    else if (start > fit16(qint64(StripCells - 1) * cellSize))
        start = (StripCells - 1) * cellSize; // only p = 27 * S exactly gets here: "Z"
    return start;
}

qint16 letterCodeAt(double start, qint16 cellSize)
{
    // The first cell starts at 2, not 0: 2 / S rounds away for any S above 4,
    // but for S of 3 or less the first cell reads as "A".
    const qint16 code = roundToInt16(start / cellSize + (FirstLetterCode - 1)).value_or(0);
    return code == FirstLetterCode - 1 ? StarCode : code;
}

StripKey stripKey(qint16 orientation, int key)
{
    if (orientation == Horizontal) {
        if (key == Qt::Key_Right)
            return StripKey::Next;
        if (key == Qt::Key_Left)
            return StripKey::Previous;
    } else if (orientation == Vertical) {
        if (key == Qt::Key_Down)
            return StripKey::Next;
        if (key == Qt::Key_Up)
            return StripKey::Previous;
    }
    return StripKey::None;
}

} // namespace AlphaListGeometry
