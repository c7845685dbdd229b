#pragma once

#include <QString>
#include <QVariant>
#include <QVariantList>
#include <vector>

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

// A field's value as a list or a grid shows it: numbers plainly, yes/no as True/False.
QString fieldDisplayText(const QVariant &value);
