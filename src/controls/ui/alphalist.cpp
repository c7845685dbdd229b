#include "controls/ui/alphalist.h"

#include "controls/alphalistgeometry.h"
#include "core/cverror.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

// Errors in event handlers have no caller to go to, and Qt cannot carry an
// exception through its event loop: the strip stays as far as it got.
template <typename F> void withoutRaising(F &&step)
{
    try {
        step();
    } catch (const CvError &) {
    }
}

} // namespace

AlphaList::AlphaList(QWidget *parent) : QWidget(parent), m_surface(*this), m_logic(m_surface)
{
    m_logic.initProperties();
    setUp();
}

AlphaList::AlphaList(const QVariantMap &storedProperties, QWidget *parent)
    : QWidget(parent), m_surface(*this), m_logic(m_surface)
{
    m_logic.readProperties(storedProperties);
    setUp();
}

void AlphaList::setUp()
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_logic.resized();
}

void AlphaList::setSelectedLetter(const QString &text)
{
    m_logic.setSelectedLetter(text);
}

void AlphaList::setShowFocus(bool show)
{
    m_logic.setShowFocus(show);
}

void AlphaList::setOrientation(qint32 orientation)
{
    m_logic.setOrientation(orientation);
    // The size hint changes; the strip takes its new size at the next resize.
    updateGeometry();
}

void AlphaList::setBackColor(qint32 color)
{
    m_logic.setBackColor(color);
}

void AlphaList::setTextColor(qint32 color)
{
    m_logic.setTextColor(color);
}

void AlphaList::setHighlightColor(qint32 color)
{
    m_logic.setHighlightColor(color);
}

void AlphaList::setTextHighlightColor(qint32 color)
{
    m_logic.setTextHighlightColor(color);
}

void AlphaList::setFontSize(qint32 points)
{
    m_logic.setFontSize(points);
}

QSize AlphaList::sizeHint() const
{
    QSizeF size;
    withoutRaising([&] {
        size = AlphaListGeometry::outerSize(m_logic.orientation(),
                                            AlphaListGeometry::cellSize(m_logic.fontSize()));
    });
    return QSize(qMax(0, qRound(size.width())), qMax(0, qRound(size.height())));
}

void AlphaList::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_surface.paint(painter);
    // The strip draws no disabled state of its own; a veil in the window's
    // colour tells the user it does not take clicks (employee lists).
    if (!isEnabled()) {
        QColor veil = palette().color(QPalette::Window);
        veil.setAlpha(150);
        painter.fillRect(rect(), veil);
    }
}

void AlphaList::resizeEvent(QResizeEvent *)
{
    m_surface.fitToWidget();
    withoutRaising([this] { m_logic.resized(); });
}

void AlphaList::showEvent(QShowEvent *)
{
    withoutRaising([this] { m_logic.shown(); });
}

void AlphaList::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    withoutRaising([this] { m_logic.gotFocus(); });
}

void AlphaList::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    withoutRaising([this] { m_logic.lostFocus(); });
}

void AlphaList::keyPressEvent(QKeyEvent *event)
{
    bool handled = false;
    withoutRaising([&] { handled = m_logic.keyDown(event->key()); });
    if (!handled)
        QWidget::keyPressEvent(event);
}

void AlphaList::keyReleaseEvent(QKeyEvent *event)
{
    // A held key repeats its presses but is released once.
    if (!event->isAutoRepeat())
        emit KeyUp();
    QWidget::keyReleaseEvent(event);
}

void AlphaList::mousePressEvent(QMouseEvent *event)
{
    withoutRaising([&] { m_logic.mouseDown(event->button(), event->position()); });
}

void AlphaList::mouseMoveEvent(QMouseEvent *event)
{
    withoutRaising([&] { m_logic.mouseMove(event->buttons(), event->position()); });
}

void AlphaList::mouseReleaseEvent(QMouseEvent *)
{
    emit MouseUp();
}
