#pragma once

#include <QtGlobal>

// A rectangle of the letter strip's surface in pixels, edges as the drawing
// calls take them: right and bottom are just outside the rectangle.
struct AlphaListRect
{
    qint32 left = 0;
    qint32 top = 0;
    qint32 right = 0;
    qint32 bottom = 0;

    qint32 width() const { return right - left; }
    qint32 height() const { return bottom - top; }
    bool operator==(const AlphaListRect &) const = default;
};
