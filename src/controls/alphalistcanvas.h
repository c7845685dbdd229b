#pragma once

#include "controls/alphalistrect.h"

#include <QSize>
#include <QSizeF>
#include <QString>

// The retained drawing surface the letter strip draws on. What is drawn stays
// until the surface is cleared; the view shows it as it stands. Colours are
// 0x00BBGGRR, coordinates pixels of the surface.
class AlphaListCanvas
{
public:
    virtual ~AlphaListCanvas() = default;

    // Wipes the surface to this background colour, which it keeps from now on.
    virtual void clear(qint32 backColor) = 0;
    virtual void setFontSize(qint32 points) = 0;
    // Forces the control's outer size (device-independent pixels; may be fractional).
    virtual void setOuterSize(const QSizeF &size) = 0;
    virtual QSize surfaceSize() const = 0;

    virtual void fillRect(const AlphaListRect &rect, qint32 color) = 0;
    // A one-pixel outline just inside rect.
    virtual void frameRect(const AlphaListRect &rect, qint32 color) = 0;
    // Text centred horizontally and aligned to the top of rect, on a
    // transparent background.
    virtual void drawLetter(const AlphaListRect &rect, const QString &letter, qint32 color) = 0;
    // A dotted outline just inside rect.
    virtual void drawFocusRect(const AlphaListRect &rect, qint32 color) = 0;
};
