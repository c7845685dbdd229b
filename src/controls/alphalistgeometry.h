#pragma once

#include "controls/alphalistrect.h"

#include <optional>
#include <QSizeF>
#include <QtGlobal>

// The letter strip's geometry and keyboard rules, in device-independent pixels.
// The strip has 27 cells, "*" then "A" to "Z"; a cell is S pixels long along
// the strip. The cell arithmetic is 16-bit, so a strip that would be longer
// than 32,767 pixels raises Overflow.
namespace AlphaListGeometry {

enum Orientation : qint16 { Horizontal = 0, Vertical = 1 };

constexpr qint16 StarCode = 42;        // "*"
constexpr qint16 FirstLetterCode = 65; // "A"
constexpr qint16 LastLetterCode = 90;  // "Z"

bool isDrawn(qint16 orientation);

// S: the font size times 1.5, rounded half to even (12 points give 18).
qint16 cellSize(qint32 fontSize);

// The outer size the control forces on itself: zero for an orientation that is
// not drawn.
QSizeF outerSize(qint16 orientation, qint16 cellSize);

// The cells as a full redraw lays them out; letter index 1 is "A", 26 is "Z".
AlphaListRect starCell(qint16 cellSize);
AlphaListRect letterCell(qint16 orientation, int index, qint16 cellSize);

// The coordinate along the strip.
double alongStrip(qint16 orientation, double x, double y);

// Where the cell under the along-strip coordinate p starts; nothing when p is
// before the strip or past its last cell.
std::optional<double> cellStart(double p, qint16 cellSize);

// The character code of the cell that starts at `start`: 42 for "*", else 65 to 90.
qint16 letterCodeAt(double start, qint16 cellSize);

// The arrow keys that move along a strip of this orientation.
enum class StripKey { None, Next, Previous };
StripKey stripKey(qint16 orientation, int key);

// 16-bit arithmetic, raising Overflow as the cell computations must.
qint16 fit16(qint64 value);

} // namespace AlphaListGeometry
