#include "controls/alphalistproperties.h"

#include "controls/alphalistgeometry.h"
#include "core/cverror.h"

#include <limits>

namespace {

const QString Orientation = QStringLiteral("Orientation");
const QString SelectedLetter = QStringLiteral("SelectedLetter");
const QString BackColor = QStringLiteral("BackColor");
const QString TextColor = QStringLiteral("TextColor");
const QString HighlightColor = QStringLiteral("HighlightColor");
const QString TextHighlightColor = QStringLiteral("TextHighlightColor");
const QString FontSize = QStringLiteral("FontSize");
const QString ShowFocus = QStringLiteral("ShowFocus");

// Write defaults: what a stored bag without the entry was saved with.
constexpr qint16 WriteOrientation = 0;
const QString WriteSelectedLetter = QStringLiteral("*");
constexpr qint32 WriteColor = 0;
constexpr qint32 WriteFontSize = 12;
constexpr bool WriteShowFocus = true;

qint64 wholeNumber(const QVariant &value)
{
    bool ok = false;
    const qint64 number = value.toLongLong(&ok);
    if (!ok)
        throw CvError(CvError::TypeMismatch, "AlphaList", "Type mismatch");
    return number;
}

void readInt32(const QVariantMap &bag, const QString &name, qint32 &member)
{
    if (const auto it = bag.find(name); it != bag.end()) {
        const qint64 number = wholeNumber(*it);
        if (number < std::numeric_limits<qint32>::min() ||
            number > std::numeric_limits<qint32>::max())
            throw CvError(CvError::Overflow, "AlphaList", "Overflow");
        member = qint32(number);
    }
}

template <typename T> void store(QVariantMap &bag, const QString &name, T value, T writeDefault)
{
    if (value != writeDefault)
        bag.insert(name, value);
}

} // namespace

AlphaListProperties AlphaListProperties::newInstance()
{
    AlphaListProperties p;
    p.orientation = 0;
    p.selectedLetter = QStringLiteral("A");
    p.backColor = 0;
    p.textColor = 0xC0C0C0;
    p.highlightColor = 0xFF0000;
    p.textHighlightColor = 0xFFFF;
    p.fontSize = 12;
    p.showFocus = false;
    return p;
}

void AlphaListProperties::read(const QVariantMap &bag)
{
    if (const auto it = bag.find(Orientation); it != bag.end())
        orientation = AlphaListGeometry::fit16(wholeNumber(*it));
    if (const auto it = bag.find(SelectedLetter); it != bag.end())
        selectedLetter = it->toString();
    readInt32(bag, BackColor, backColor);
    readInt32(bag, TextColor, textColor);
    readInt32(bag, HighlightColor, highlightColor);
    readInt32(bag, TextHighlightColor, textHighlightColor);
    readInt32(bag, FontSize, fontSize);
    if (const auto it = bag.find(ShowFocus); it != bag.end())
        showFocus = it->toBool();
}

QVariantMap AlphaListProperties::write() const
{
    QVariantMap bag;
    store(bag, Orientation, orientation, WriteOrientation);
    store(bag, SelectedLetter, selectedLetter, WriteSelectedLetter);
    store(bag, BackColor, backColor, WriteColor);
    store(bag, TextColor, textColor, WriteColor);
    store(bag, HighlightColor, highlightColor, WriteColor);
    store(bag, TextHighlightColor, textHighlightColor, WriteColor);
    store(bag, FontSize, fontSize, WriteFontSize);
    store(bag, ShowFocus, showFocus, WriteShowFocus);
    return bag;
}

QVariantMap AlphaListProperties::addressBookFilter()
{
    return {
        {SelectedLetter, QString()},
        {TextColor, qint32(0xFFFFFF)},
        {HighlightColor, qint32(0xFF)},
        {ShowFocus, false},
    };
}
