#pragma once

#include <QString>

// The texts of the address window and its first tab's boxes as the suite's country
// has them: the bank boxes' layout, their limits and captions, the tax number's name.
// The boxes' own facts come from AddressFields::table; this adds what the country
// changes. Before the window loads, the form has no texts and the default layout.
class AddressForm
{
public:
    // The country's layout of the four bank boxes.
    struct BankLayout
    {
        QString groupCaption = QStringLiteral("Bank"); // "BSB" in Australia
        QString remark = QStringLiteral("Required for electronic payments ");
        bool hyphenVisible = false; // the "-" between the bank and branch boxes
        bool suffixVisible = true;
        bool branchAsWideAsBank = false;
    };

    // Texts of the window besides the field captions.
    struct Captions
    {
        QString showInCashbook;               // check box of BusinessFlag
        QString showInWagebook;               // check box of WageFlag
        QString cashbookHeading;              // label of the heading list
        QString employeeSwitch;               // label of chk_employee
        QString notesHint;                    // "Ctrl Enter for a new line"
        QString mergeRemark;                  // the remark about Notepad files
        QString add, remove, close, editPays; // button texts with their accelerators
    };

    AddressForm() = default;
    // The form of the country (by its dialling code), the tax number called taxNumberName.
    AddressForm(qint32 country, const QString &taxNumberName);

    const BankLayout &bankLayout() const { return m_bank; }
    const Captions &captions() const { return m_captions; }
    QString taxNumberCaption() const { return m_taxNumberCaption; }
    // 0 when the box takes any length.
    int maxLength(int field) const;
    // How many characters the box shows; a longer maximum lets it grow to it.
    int boxChars(int field) const;
    // Empty for the second and third street address lines, and for the branch and
    // suffix in the Australian layout.
    QString fieldCaption(int field) const;

private:
    BankLayout m_bank;
    Captions m_captions;
    QString m_taxNumberCaption;
    int m_branchMaxLength = -1; // -1: as the table has it
};
