#include "addressbook/addressform.h"

#include "addressbook/addressfields.h"

using namespace AddressFields;

AddressForm::AddressForm(qint32 country, const QString &taxNumberName)
    : m_taxNumberCaption(taxNumberName)
{
    m_captions.showInCashbook = QStringLiteral("Show in Cashbook");
    m_captions.showInWagebook = QStringLiteral("Show in Wagebook");
    m_captions.cashbookHeading = QStringLiteral("Cashbook Heading");
    m_captions.employeeSwitch = QStringLiteral("Show Current Employees Only");
    m_captions.notesHint = QStringLiteral("Ctrl Enter for a new line");
    m_captions.mergeRemark =
        QStringLiteral("Address Book information can be merged into Notepad files");
    m_captions.add = QStringLiteral("&Add");
    m_captions.remove = QStringLiteral("&Delete");
    m_captions.close = QStringLiteral("&Close");
    m_captions.editPays = QStringLiteral("&Edit Pay Details");

    switch (country) {
    case 61: // the BSB as two halves of three digits
        m_bank.groupCaption = QStringLiteral("BSB");
        m_bank.hyphenVisible = true;
        m_bank.suffixVisible = false;
        m_bank.branchAsWideAsBank = true;
        m_branchMaxLength = 3;
        break;
    case 27:
        m_bank.hyphenVisible = true;
        m_branchMaxLength = 6;
        break;
    default:
        break;
    }
}

int AddressForm::maxLength(int field) const
{
    if (!isField(field))
        return 0;
    if (field == BusBankAcBranch && m_branchMaxLength >= 0)
        return m_branchMaxLength;
    return table[std::size_t(field)].maxLength;
}

int AddressForm::boxChars(int field) const
{
    if (field == BusBankAcBranch && m_branchMaxLength >= 0)
        return qMin(m_branchMaxLength, WideBoxChars);
    return isField(field) ? table[std::size_t(field)].boxChars : 0;
}

QString AddressForm::fieldCaption(int field) const
{
    if (!isField(field))
        return QString();
    if (field == TaxNumber)
        return m_taxNumberCaption;
    if (!m_bank.suffixVisible && (field == BusBankAcBranch || field == BusBankAcSuffix))
        return QString();
    return table[std::size_t(field)].caption;
}
