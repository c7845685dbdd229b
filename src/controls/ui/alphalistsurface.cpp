#include "controls/ui/alphalistsurface.h"

#include <QPainter>
#include <QWidget>

namespace {

QRect toQRect(const AlphaListRect &rect)
{
    return QRect(rect.left, rect.top, rect.width(), rect.height());
}

} // namespace

AlphaListSurface::AlphaListSurface(QWidget &widget) : m_widget(widget)
{
    // Verdana is the strip's face; where it is not installed (most Linux
    // systems) DejaVu Sans, a wide bold sans of the same kind, stands in.
    m_font.setFamilies({QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")});
    m_font.setStyleHint(QFont::SansSerif);
    m_font.setBold(true);
    fitToWidget();
}

QColor AlphaListSurface::toQColor(qint32 color)
{
    return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

void AlphaListSurface::fitToWidget()
{
    const QSize size = m_widget.size();
    if (!m_pixmap.isNull() && m_pixmap.deviceIndependentSize().toSize() == size)
        return;
    const qreal ratio = m_widget.devicePixelRatioF();
    QPixmap grown(size * ratio);
    grown.setDevicePixelRatio(ratio);
    grown.fill(m_background);
    if (!m_pixmap.isNull() && !grown.isNull()) {
        QPainter painter(&grown);
        painter.drawPixmap(0, 0, m_pixmap);
    }
    m_pixmap = grown;
}

void AlphaListSurface::paint(QPainter &painter) const
{
    painter.drawPixmap(0, 0, m_pixmap);
}

void AlphaListSurface::clear(qint32 backColor)
{
    m_background = toQColor(backColor);
    m_pixmap.fill(m_background);
    m_widget.update();
}

void AlphaListSurface::setFontSize(qint32 points)
{
    // Qt refuses sizes below one point; such a strip has no cells to draw in anyway.
    if (points > 0)
        m_font.setPointSize(points);
}

void AlphaListSurface::setOuterSize(const QSizeF &size)
{
    const QSize pixels(qMax(0, qRound(size.width())), qMax(0, qRound(size.height())));
    if (m_widget.size() != pixels) {
        m_widget.resize(pixels);
        m_widget.updateGeometry();
    }
    fitToWidget();
}

QSize AlphaListSurface::surfaceSize() const
{
    return m_pixmap.deviceIndependentSize().toSize();
}

void AlphaListSurface::fillRect(const AlphaListRect &rect, qint32 color)
{
    if (m_pixmap.isNull())
        return;
    QPainter painter(&m_pixmap);
    painter.fillRect(toQRect(rect), toQColor(color));
    m_widget.update(toQRect(rect));
}

void AlphaListSurface::frameRect(const AlphaListRect &rect, qint32 color)
{
    const QRect r = toQRect(rect);
    if (m_pixmap.isNull() || r.isEmpty())
        return;
    QPainter painter(&m_pixmap);
    const QColor c = toQColor(color);
    painter.fillRect(QRect(r.left(), r.top(), r.width(), 1), c);
    painter.fillRect(QRect(r.left(), r.bottom(), r.width(), 1), c);
    painter.fillRect(QRect(r.left(), r.top(), 1, r.height()), c);
    painter.fillRect(QRect(r.right(), r.top(), 1, r.height()), c);
    m_widget.update(r);
}

void AlphaListSurface::drawLetter(const AlphaListRect &rect, const QString &letter, qint32 color)
{
    if (m_pixmap.isNull())
        return;
    QPainter painter(&m_pixmap);
    painter.setFont(m_font);
    painter.setPen(toQColor(color));
    painter.drawText(toQRect(rect), Qt::AlignHCenter | Qt::AlignTop, letter);
    m_widget.update(toQRect(rect));
}

void AlphaListSurface::drawFocusRect(const AlphaListRect &rect, qint32 color)
{
    if (m_pixmap.isNull())
        return;
    const QRect r = toQRect(rect);
    QPainter painter(&m_pixmap);
    const QColor c = toQColor(color);
    // Every other pixel, as the platform's focus rectangle is dotted.
    for (int x = r.left(); x <= r.right(); x += 2) {
        painter.fillRect(QRect(x, r.top(), 1, 1), c);
        painter.fillRect(QRect(x, r.bottom(), 1, 1), c);
    }
    for (int y = r.top(); y <= r.bottom(); y += 2) {
        painter.fillRect(QRect(r.left(), y, 1, 1), c);
        painter.fillRect(QRect(r.right(), y, 1, 1), c);
    }
    m_widget.update(r);
}
