#pragma once

#include <memory>
#include <QString>
#include <QVariantList>
#include <vector>

// Turns statements in the Jet dialect into SQLite's or PostgreSQL's, token by token:
// DISTINCTROW and the star of DELETE * FROM are dropped, SELECT TOP n becomes
// LIMIT n, [bracketed] and reserved names become quoted identifiers, "text"
// becomes 'text', True/False become -1/0, & becomes ||, LIKE patterns become
// SQLite's or a MATCH (JetLike), and a #m/d/yyyy# date becomes its serial number.
// Text inside string literals is never changed. Translations are cached.
//
// On PostgreSQL Jet's meaning is kept as SQLite keeps it: names are folded to the
// server's lower case (the tables are made that way), LIKE becomes ILIKE (or a ~*
// regular expression where a pattern has no LIKE equal), and sorts put Nulls first
// as Jet and SQLite do. Markers stay ?: the server connection numbers them.
class JetSql
{
public:
    enum class Dialect { Sqlite, Postgres };

    struct Translation
    {
        Dialect dialect = Dialect::Sqlite;
        QString sql; // the backend's text without a trailing semicolon
        bool isSelect = false;
        bool isSimple = false;  // one table's rows: no DISTINCT, GROUP BY or UNION
        QString fromTable;      // the first table after the top-level FROM
        QString fromAlias;      // its alias, empty when it has none
        qsizetype fromPos = -1; // offset of that FROM keyword in sql
        // Each LIKE whose pattern is bound to a ? marker: offsets in sql of the LIKE
        // and of its marker, and the marker's number (from 0).
        struct LikeParameter
        {
            qsizetype operatorAt;
            qsizetype markerAt;
            int parameter;
            qsizetype notAt = -1; // a NOT LIKE's NOT
        };
        std::vector<LikeParameter> likeParameters;
    };

    // Throws CvError 3075 when the text cannot be read (an open quote or bracket,
    // a LIKE pattern with a [ and no ]).
    static QString translate(const QString &jetSql, Dialect dialect = Dialect::Sqlite);
    static std::shared_ptr<const Translation> translation(const QString &jetSql,
                                                          Dialect dialect = Dialect::Sqlite);

    // The statement to prepare with values bound to its ? markers in order. A value
    // bound to a LIKE is a Jet pattern: it is put into SQLite's terms here (values
    // changes), or the LIKE becomes a MATCH. *fromPos, when given, follows the text.
    static QString bind(const Translation &t, QVariantList &values, qsizetype *fromPos = nullptr);

    // The value as a Jet string literal: in double quotes, embedded double quotes
    // doubled. Every value concatenated into a statement goes through this.
    static QString quote(const QString &value);
    // The value as a Jet LIKE pattern that matches only itself: * ? # and [
    // bracketed. Quote the result (or the pattern it is part of) with quote().
    static QString likeLiteral(const QString &value);
    // An identifier as the backend writes it: "name", embedded quotes doubled; on
    // PostgreSQL in lower case, as the tables are made there.
    static QString quoteIdentifier(const QString &name, Dialect dialect = Dialect::Sqlite);
};
