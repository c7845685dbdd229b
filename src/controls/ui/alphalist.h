#pragma once

#include "controls/alphalistlogic.h"
#include "controls/ui/alphalistsurface.h"

#include <QVariantMap>
#include <QWidget>

// The letter strip filter: "*" then "A" to "Z" in a row (Orientation 0) or a
// column (1). The user picks a cell by clicking or dragging with the left
// button, or with the arrow keys along the strip; the highlighted cell is
// SelectedLetter. The strip does no filtering: MouseUp and KeyUp tell the host
// that a gesture is over, and the host reads SelectedLetter ("*" for all).
// The control sizes itself from FontSize (cells of FontSize x 1.5 pixels).
// A failure inside one of the strip's event handlers (size, show, focus, keys, mouse)
// is silent, as in the suite's control: those events have no caller to tell, and the
// strip stays as far as it got. Failures of the property setters reach their caller.
class AlphaList : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString SelectedLetter READ selectedLetter WRITE setSelectedLetter)
    Q_PROPERTY(bool ShowFocus READ showFocus WRITE setShowFocus)
    Q_PROPERTY(int Orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(int BackColor READ backColor WRITE setBackColor)
    Q_PROPERTY(int TextColor READ textColor WRITE setTextColor)
    Q_PROPERTY(int HighlightColor READ highlightColor WRITE setHighlightColor)
    Q_PROPERTY(int TextHighlightColor READ textHighlightColor WRITE setTextHighlightColor)
    Q_PROPERTY(int FontSize READ fontSize WRITE setFontSize)

public:
    // A new instance, with the defaults of AlphaListProperties::newInstance().
    explicit AlphaList(QWidget *parent = nullptr);
    // A stored instance: the bag's entries over a freshly constructed control,
    // e.g. AlphaListProperties::addressBookFilter().
    explicit AlphaList(const QVariantMap &storedProperties, QWidget *parent = nullptr);

    QVariantMap storedProperties() const { return m_logic.writeProperties(); }

    // Colours are 0x00BBGGRR. The setters raise CvError as AlphaListLogic's do.
    QString selectedLetter() const { return m_logic.selectedLetter(); }
    void setSelectedLetter(const QString &text);
    bool showFocus() const { return m_logic.showFocus(); }
    void setShowFocus(bool show);
    qint16 orientation() const { return m_logic.orientation(); }
    void setOrientation(qint32 orientation);
    qint32 backColor() const { return m_logic.backColor(); }
    void setBackColor(qint32 color);
    qint32 textColor() const { return m_logic.textColor(); }
    void setTextColor(qint32 color);
    qint32 highlightColor() const { return m_logic.highlightColor(); }
    void setHighlightColor(qint32 color);
    qint32 textHighlightColor() const { return m_logic.textHighlightColor(); }
    void setTextHighlightColor(qint32 color);
    qint32 fontSize() const { return m_logic.fontSize(); }
    void setFontSize(qint32 points);

    // The strip's own size: 490 x 22 for a row at 12 points, nothing when the
    // orientation is neither a row nor a column.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // The font the letters are drawn in (Verdana, or its stand-in).
    const QFont &letterFont() const { return m_surface.font(); }

signals:
    // On every mouse button release, whatever the button and wherever.
    void MouseUp();
    // On every key release while the strip has the focus.
    void KeyUp();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void setUp();

    AlphaListSurface m_surface;
    AlphaListLogic m_logic;
};
