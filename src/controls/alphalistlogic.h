#pragma once

#include "controls/alphalistproperties.h"
#include "controls/alphalistrect.h"

#include <qnamespace.h>
#include <QPointF>
#include <QSizeF>
#include <QStringList>

class AlphaListCanvas;

// The letter strip's state and rules: what it draws on its canvas, which cell
// a point or an arrow key selects, and its properties. The view forwards its
// events here and raises MouseUp and KeyUp itself. Overflow in the 16-bit cell
// arithmetic (a very large FontSize) and an Orientation that does not fit 16
// bits raise CvError to the caller.
class AlphaListLogic
{
public:
    // A freshly constructed control (see AlphaListProperties); follow with
    // initProperties() for a new instance or readProperties() for a stored one.
    explicit AlphaListLogic(AlphaListCanvas &canvas);

    void initProperties();
    void readProperties(const QVariantMap &bag);
    QVariantMap writeProperties() const { return m_props.write(); }
    const AlphaListProperties &properties() const { return m_props; }

    // Lifecycle and input.
    void resized();
    void shown() { redrawWithSelection(); }
    void gotFocus();
    void lostFocus();
    // True when the key is an arrow of the strip's orientation, moved or not.
    bool keyDown(int key);
    void mouseDown(Qt::MouseButton button, const QPointF &position);
    void mouseMove(Qt::MouseButtons buttons, const QPointF &position);

    // Properties. Every setter but setSelectedLetter marks the property as
    // changed and redraws the strip with its selection.
    QString selectedLetter() const { return m_props.selectedLetter; }
    // "*" selects the first cell, a letter its cell ("m" selects "M"); "a"
    // deliberately selects nothing; empty text is an invalid argument.
    void setSelectedLetter(const QString &text);
    bool showFocus() const { return m_props.showFocus; }
    void setShowFocus(bool show);
    qint16 orientation() const { return m_props.orientation; }
    void setOrientation(qint32 orientation);
    qint32 backColor() const { return m_props.backColor; }
    void setBackColor(qint32 color);
    qint32 textColor() const { return m_props.textColor; }
    void setTextColor(qint32 color);
    qint32 highlightColor() const { return m_props.highlightColor; }
    void setHighlightColor(qint32 color);
    qint32 textHighlightColor() const { return m_props.textHighlightColor; }
    void setTextHighlightColor(qint32 color);
    qint32 fontSize() const { return m_props.fontSize; }
    void setFontSize(qint32 points);

    // Names of the properties set since construction, for the host's save.
    const QStringList &changedProperties() const { return m_changed; }

    // The drawing steps, in the order the lifecycle uses them.
    void fullRedraw();
    void redrawWithSelection();
    void selectAt(double x, double y);

    // Working state.
    qint16 cellSize() const { return m_cellSize; }
    qint16 letterCode() const { return m_letterCode; }
    const QString &previousLetter() const { return m_previousLetter; }
    const AlphaListRect &cellRect() const { return m_cellRect; }
    const AlphaListRect &focusRect() const { return m_focusRect; }
    // The size the control forces on itself at the current cell size.
    QSizeF outerSize() const;

private:
    void changed(const QString &name);
    void selectAtCell(qint16 cellsFromStart);

    AlphaListCanvas &m_canvas;
    AlphaListProperties m_props;
    qint16 m_letterCode = 0;
    QString m_previousLetter;
    AlphaListRect m_focusRect;
    AlphaListRect m_cellRect;
    qint16 m_cellSize = 0;
    QStringList m_changed;
};
