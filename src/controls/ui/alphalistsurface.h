#pragma once

#include "controls/alphalistcanvas.h"

#include <QColor>
#include <QFont>
#include <QPixmap>

class QPainter;
class QWidget;

// The letter strip's retained surface: a pixmap the size of the widget that
// keeps everything drawn on it until it is cleared. The widget's paint event
// only copies it to the screen.
class AlphaListSurface : public AlphaListCanvas
{
public:
    explicit AlphaListSurface(QWidget &widget);

    // Follows the widget's size, keeping what is drawn; new area is background.
    void fitToWidget();
    void paint(QPainter &painter) const;
    const QFont &font() const { return m_font; }

    void clear(qint32 backColor) override;
    void setFontSize(qint32 points) override;
    void setOuterSize(const QSizeF &size) override;
    QSize surfaceSize() const override;
    void fillRect(const AlphaListRect &rect, qint32 color) override;
    void frameRect(const AlphaListRect &rect, qint32 color) override;
    void drawLetter(const AlphaListRect &rect, const QString &letter, qint32 color) override;
    void drawFocusRect(const AlphaListRect &rect, qint32 color) override;

    // A 0x00BBGGRR colour as Qt's.
    static QColor toQColor(qint32 color);

private:
    QWidget &m_widget;
    QPixmap m_pixmap;
    QColor m_background = Qt::black;
    QFont m_font;
};
