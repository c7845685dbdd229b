#pragma once

#include <QString>
#include <QVariantMap>

// The letter strip's persistent properties. A default-constructed set is the
// state of a freshly constructed control: FontSize from the design font (12),
// everything else zero or empty. Colours are 0x00BBGGRR.
struct AlphaListProperties
{
    qint16 orientation = 0;
    QString selectedLetter;
    qint32 backColor = 0;
    qint32 textColor = 0;
    qint32 highlightColor = 0;
    qint32 textHighlightColor = 0;
    qint32 fontSize = 12;
    bool showFocus = false;

    // A control newly placed on a host: silver letters on black, blue
    // highlight with yellow text, "A" selected.
    static AlphaListProperties newInstance();

    // Reads a stored property bag. An entry that is missing leaves the value
    // as it is; an Orientation that does not fit 16 bits raises Overflow.
    void read(const QVariantMap &bag);
    // The bag to store: a value equal to its write default is left out.
    QVariantMap write() const;

    // What the address book window stores for its letter filter: "*" selected
    // (stored empty), white letters, red highlight, no focus rectangle.
    static QVariantMap addressBookFilter();
};
