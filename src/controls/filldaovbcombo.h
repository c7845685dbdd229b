#pragma once

#include <QLatin1String>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <vector>

class ComboList;
class Database;

namespace ErrorOrigin {
inline constexpr QLatin1String
    FillDaoVBCombo(") was generated in CommonCode.DAOVBCombo.FillDaoVBCombo");
} // namespace ErrorOrigin

// Fills a drop-down list from a query. Field 0 is each row's identifier; the text shown is
// field 1 when useItemData is set (the identifier then becomes the item's data), else field
// 0, so a one-column query shows and matches on the same field. Rows with a null text are
// left out. The item whose identifier equals selectedId is selected (with matchZero, the one
// whose identifier is 0 when selectedId is 0); with no match the first item, which is the
// none item when addNone is set ("None" when noneText is empty). leaveSelection leaves the
// list with nothing selected, for a caller that selects by its own rule.
//
// A failure is reported to the user and ends the fill: the list keeps what was added.
void FillDaoVBCombo(Database &db, ComboList &list, const QString &query, qint32 selectedId,
                    bool addNone, QString noneText, bool matchZero, bool useItemData,
                    bool leaveSelection);

// One entry of a grid column's drop-down: the grid stores value and shows displayName.
struct GridValueItem
{
    QVariant value;
    QString displayName;

    bool operator==(const GridValueItem &) const = default;
};

// How the view presents a column's value list; the logic only keeps it.
struct GridValueListOptions
{
    bool dropDownOnly = true;    // the user picks from the list and cannot type
    bool sorted = false;         // the view sorts the names
    bool translateValues = true; // cells show the name for the stored value
    int maxVisibleItems = 8;
};

struct GridColumn
{
    QString caption;
    std::vector<GridValueItem> valueItems; // empty: a plain column
    GridValueListOptions options;

    // The name shown for a stored value, or the value's own text when it is not listed.
    QString displayText(const QVariant &value) const;
};

// A grid's columns as the logic sets them up; the view builds its header and delegates from
// this.
struct GridColumns
{
    explicit GridColumns(int count = 0) : columns(std::size_t(count)) {}

    int count() const { return int(columns.size()); }
    // Throws CvError 9 when there is no such column.
    GridColumn &column(int index);
    const GridColumn &column(int index) const;

    std::vector<GridColumn> columns;
};

// Sets the captions of columns 0 to captions.size() - 2 from captions, leaving a column
// whose element is null as it was. The last element is never used: callers pass one more
// element than they have columns.
void setGridColumnCaptions(GridColumns &grid, const QVariantList &captions);

// Fills the column's value list from the query on db:
// boundField is the value the grid stores, displayField the name it shows. When the query
// cannot be read the user is told "Database out of date, problem reading " + tableName and
// the list is left empty.
void fillGridColumnValueList(GridColumns &grid, const QString &query, int column, Database &db,
                             const QString &displayField, const QString &boundField,
                             const QString &tableName, const GridValueListOptions &options = {});
