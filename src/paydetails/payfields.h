#pragma once

#include "data/serialdate.h"
#include "paydetails/paydetailseditor.h"

#include <optional>
#include <QDate>
#include <QString>

// What each of the pay details editor's text fields holds, for its load and save and for
// the rules of leaving a field.
namespace PayFields {

// The Employees column of each text field and each list (none for the KiwiSaver
// deduction rate, kept in the deductions).
inline constexpr const char *textColumns[PayDetailsEditor::TextCount] = {
    "Birthdate", "IRDnumber",    "PayRate", "Yearlytotal",
    "Datehired", "Datefinished", "TaxCode", "KiwiSaverStartDate"};
inline constexpr const char *listColumns[PayDetailsEditor::ListCount] = {
    "EmployeeTypeID",   "TaxTypeID", "PayIntervalID",
    "BankID",           "HeadingID", "EnterpriseID",
    "KiwiSaverEnrolID", nullptr,     "KiwiSaverEmployerRateID"};

// The Employees column as the user knows it, for messages.
inline QString columnCaption(const QString &column)
{
    static const char *const captions[][2] = {
        {"Birthdate", "Birth date"},
        {"IRDnumber", "IRD number"},
        {"PayRate", "Pay rate"},
        {"Yearlytotal", "Salary"},
        {"Datehired", "Date hired"},
        {"Datefinished", "Date finished"},
        {"TaxCode", "Tax code"},
        {"KiwiSaverStartDate", "KiwiSaver start date"},
        {"EmployeeTypeID", "Occupation"},
        {"TaxTypeID", "Tax type"},
        {"PayIntervalID", "Pay interval"},
        {"BankID", "Bank"},
        {"EnterpriseID", "Enterprise"},
        {"KiwiSaverEnrolled", "KiwiSaver member"},
        {"KiwiSaverEnrolID", "KiwiSaver enrolment"},
        {"KiwiSaverEmployerRateID", "Employer KiwiSaver rate"},
        {"ExcludeIR348", "Exclude from IR348"},
        {"IncludeESCT", "Include ESCT"}};
    for (const auto &c : captions) {
        if (column.compare(QLatin1String(c[0]), Qt::CaseInsensitive) == 0)
            return QString::fromLatin1(c[1]);
    }
    return column;
}

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
