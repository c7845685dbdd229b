#include "controls/gridcolumns.h"

#include "core/cverror.h"
#include "data/money.h"

QString fieldDisplayText(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 15);
    default:
        break;
    }
    if (value.metaType() == QMetaType::fromType<Money>())
        return value.value<Money>().toPlainString();
    return value.toString();
}

QString GridColumn::displayText(const QVariant &value) const
{
    for (const GridValueItem &item : valueItems) {
        if (item.value == value)
            return item.displayName;
    }
    return fieldDisplayText(value);
}

GridColumn &GridColumns::column(int index)
{
    if (index < 0 || index >= count())
        throw CvError(CvError::SubscriptOutOfRange, QStringLiteral("GridColumns"),
                      QStringLiteral("Subscript out of range"));
    return columns[std::size_t(index)];
}

const GridColumn &GridColumns::column(int index) const
{
    return const_cast<GridColumns *>(this)->column(index);
}

void setGridColumnCaptions(GridColumns &grid, const QVariantList &captions)
{
    for (qsizetype i = 0; i + 1 < captions.size(); ++i) {
        if (!captions[i].isNull())
            grid.column(int(i)).caption = fieldDisplayText(captions[i]);
    }
}
