#include "controls/filldaovbcombo.h"

#include "controls/combolist.h"
#include "core/conversions.h"
#include "core/cverror.h"
#include "core/numerictext.h"
#include "data/database.h"
#include "data/money.h"
#include "data/recordset.h"
#include "data/serialdate.h"

#include <QDateTime>
#include <utility>

namespace {

constexpr int InvalidUseOfNull = 94;
const QLatin1String Source("FillDaoVBCombo");

// A field's value as a number, for comparing and converting identifiers. Text must be
// numeric; anything else is a type mismatch, as it is when the platform compares or
// converts a variant.
double numberOf(const QVariant &value)
{
    const QMetaType type = value.metaType();
    if (type == QMetaType::fromType<Money>())
        return double(value.value<Money>().scaled()) / double(Money::Scale);
    if (type == QMetaType::fromType<QDateTime>())
        return SerialDate::fromDateTime(value.toDateTime());
    if (type == QMetaType::fromType<bool>())
        return value.toBool() ? -1.0 : 0.0;
    if (type == QMetaType::fromType<QString>()) {
        if (const std::optional<double> number = numericValue(value.toString()))
            return *number;
        throw CvError(CvError::TypeMismatch, Source, QStringLiteral("Type mismatch"));
    }
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok)
        throw CvError(CvError::TypeMismatch, Source, QStringLiteral("Type mismatch"));
    return number;
}

// The identifier as item data: rounded half to even, and it must fit in 32 bits.
qint32 identifierToInt32(const QVariant &value)
{
    if (value.isNull())
        throw CvError(InvalidUseOfNull, Source, QStringLiteral("Invalid use of Null"));
    if (value.metaType() == QMetaType::fromType<QString>())
        return textToInt32(value.toString());
    const std::optional<qint32> id = roundToInt32(numberOf(value));
    if (!id)
        throw CvError(CvError::Overflow, Source, QStringLiteral("Overflow"));
    return *id;
}

// Null equals nothing.
bool identifierEquals(const QVariant &value, qint32 id)
{
    return !value.isNull() && numberOf(value) == double(id);
}

} // namespace

void FillDaoVBCombo(Database &db, ComboList &list, const QString &query, qint32 selectedId,
                    bool addNone, QString noneText, bool matchZero, bool useItemData,
                    bool leaveSelection)
{
    FillDaoVBCombo(db, list, query, QVariantList(), selectedId, addNone, std::move(noneText),
                   matchZero, useItemData, leaveSelection);
}

void FillDaoVBCombo(Database &db, ComboList &list, const QString &query, const QVariantList &values,
                    qint32 selectedId, bool addNone, QString noneText, bool matchZero,
                    bool useItemData, bool leaveSelection)
{
    Recordset rs(db, query, values, Recordset::Snapshot);
    if (noneText.isEmpty())
        noneText = QStringLiteral("None");
    const int shownField = useItemData ? 1 : 0;

    list.clear();
    int selectIndex = 0;
    if (addNone)
        list.addItem(noneText, 0); // item data 0 whether or not item data is used

    while (!rs.eof()) {
        const QVariant shown = rs.value(shownField);
        if (!shown.isNull()) {
            const QVariant id = rs.value(0);
            list.addItem(fieldDisplayText(shown));
            const int added = list.count() - 1;
            if (useItemData)
                list.setItemData(added, identifierToInt32(id));
            if (selectedId != 0) {
                if (identifierEquals(id, selectedId))
                    selectIndex = added;
            } else if (matchZero && identifierEquals(id, 0)) {
                selectIndex = added;
            }
        }
        rs.moveNext();
    }

    if (!leaveSelection && list.count() > 0 && list.listIndex() < 0)
        list.setListIndex(selectIndex);
}

void fillGridColumnValueList(GridColumns &grid, const QString &query, int column, Database &db,
                             const QString &displayField, const QString &boundField,
                             const GridValueListOptions &options)
{
    fillGridColumnValueList(grid, query, QVariantList(), column, db, displayField, boundField,
                            options);
}

void fillGridColumnValueList(GridColumns &grid, const QString &query, const QVariantList &values,
                             int column, Database &db, const QString &displayField,
                             const QString &boundField, const GridValueListOptions &options)
{
    GridColumn &target = grid.column(column);
    target.options = options;
    target.valueItems.clear();
    std::vector<GridValueItem> items;
    Recordset rs(db, query, values, Recordset::Snapshot);
    for (; !rs.eof(); rs.moveNext())
        items.push_back({rs.value(boundField), fieldDisplayText(rs.value(displayField))});
    target.valueItems = std::move(items);
}
