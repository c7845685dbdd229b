#pragma once

#include "controls/gridcolumns.h"

#include <QLatin1String>
#include <QString>
#include <QVariantList>

class ComboList;
class Database;

// The origin under which a procedure reports a list it could not fill, before it goes on
// with the list as far as it got.
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
// A failure throws CvError and ends the fill: the list keeps what was added.
void FillDaoVBCombo(Database &db, ComboList &list, const QString &query, qint32 selectedId,
                    bool addNone, QString noneText, bool matchZero, bool useItemData,
                    bool leaveSelection);
// The same with values bound in order to the query's ? markers.
void FillDaoVBCombo(Database &db, ComboList &list, const QString &query, const QVariantList &values,
                    qint32 selectedId, bool addNone, QString noneText, bool matchZero,
                    bool useItemData, bool leaveSelection);

// Fills the column's value list from the query on db:
// boundField is the value the grid stores, displayField the name it shows. When the query
// cannot be read (an older data file lacks the table or a column it names) the list is left
// empty and CvError thrown; the procedure tells the user with msgDatabaseOutOfDate.
void fillGridColumnValueList(GridColumns &grid, const QString &query, int column, Database &db,
                             const QString &displayField, const QString &boundField,
                             const GridValueListOptions &options = {});
// The same with values bound in order to the query's ? markers.
void fillGridColumnValueList(GridColumns &grid, const QString &query, const QVariantList &values,
                             int column, Database &db, const QString &displayField,
                             const QString &boundField, const GridValueListOptions &options = {});
