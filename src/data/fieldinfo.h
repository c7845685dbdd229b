#pragma once

#include "data/jettype.h"

#include <QString>

// One column of a recordset: its name as the recordset shows it, its type, and
// the table column it comes from (empty for an expression).
struct FieldInfo
{
    QString name;
    JetType type = JetType::Unknown;
    int size = 0;   // the n of TEXT(n); 0 for every other type
    QString table;  // origin table, empty for an expression
    QString column; // origin column, empty for an expression
    bool autoNumber = false;
    bool required = false; // declared NOT NULL

    bool isExpression() const { return table.isEmpty(); }
};
