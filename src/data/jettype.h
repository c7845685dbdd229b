#pragma once

#include <QString>
#include <QVariant>

// The column types of the suite's data files. The declared SQLite type of each
// column carries its type: LONG, SHORT, TEXT(n), MEMO, CURRENCY, DATETIME, YESNO,
// SINGLE, DOUBLE, and INTEGER PRIMARY KEY AUTOINCREMENT for an AutoNumber key.
enum class JetType {
    Unknown, // an expression whose value is Null in every row
    AutoNumber,
    Long,
    Short,
    Text,
    Memo,
    Currency,
    DateTime,
    YesNo,
    Single,
    Double,
};

// The type named by a declared column type; size receives n of TEXT(n), else 0.
JetType jetTypeFromDeclared(const QString &declared, int *size = nullptr);

// "Currency", "Date/Time" and so on, for messages.
QString jetTypeName(JetType type);

// The type of a value read from an expression: Long for an integer, Double for a real,
// Memo for text; Unknown for Null and anything else.
JetType jetTypeOfValue(const QVariant &value);
