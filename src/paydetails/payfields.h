#pragma once

#include "data/serialdate.h"
#include "paydetails/paydetailseditor.h"

#include <optional>
#include <QDate>
#include <QString>

// What each of the pay details editor's text fields holds, for its load and save and for
// the rules of leaving a field.
namespace PayFields {

inline bool isDate(int field)
{
    return field == PayDetailsEditor::Birthdate || field == PayDetailsEditor::Datehired ||
           field == PayDetailsEditor::Datefinished;
}

inline bool isMoney(int field)
{
    return field == PayDetailsEditor::PayRate || field == PayDetailsEditor::Yearlytotal;
}

inline bool hasPicker(int field)
{
    return isDate(field) || field == PayDetailsEditor::KiwiSaverStartDate;
}

inline std::optional<QDate> typedDate(const QString &text)
{
    const auto parsed = SerialDate::parse(text);
    return parsed ? std::optional<QDate>(parsed->date()) : std::nullopt;
}

} // namespace PayFields
