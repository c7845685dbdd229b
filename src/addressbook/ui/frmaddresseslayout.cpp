#include "addressbook/ui/frmaddresses.h"

#include "controls/alphalistproperties.h"
#include "controls/ui/alphalist.h"
#include "controls/ui/combolistmodel.h"
#include "controls/ui/formwidgets.h"
#include "paydetails/ui/wagestab.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpacerItem>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

// The address window's widgets and their places; frmaddresses.cpp keeps them in line
// with the logic.

namespace {

using Logic = AddressBookLogic;

// The name list lines up with the letter strip above it (27 cells of 18
// pixels and the border).
constexpr int kStripWidth = 490;

// The columns of the first tab, top to bottom; the bank boxes have a group of
// their own.
constexpr int kLeftColumn[] = {
    Logic::BusName,         Logic::ContactTitle, Logic::ContactInitials, Logic::ContactFirstName,
    Logic::ContactLastName, Logic::BusAddress1,  Logic::BusAddress2,     Logic::BusAddress3,
    Logic::BusPOBox,        Logic::BusCity,      Logic::BusState,        Logic::BusCountry,
    Logic::BusPostCode,
};
constexpr int kRightColumn[] = {
    Logic::BusPhone, Logic::BusFax,         Logic::BusCellular, Logic::ContactEmail,
    Logic::BusWeb,   Logic::CustomerNumber, Logic::TaxNumber,
};

QLabel *remarkLabel(const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

void frmAddresses::buildLayout()
{
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName("Tab1");
    // Ctrl+Tab changes tabs; Enter and Tab go straight from the name list to
    // the fields.
    m_tabs->tabBar()->setFocusPolicy(Qt::ClickFocus);
    m_addressesPage = buildAddressesPage();
    m_payPage = buildPayPage();
    m_notesPage = buildNotesPage();
    // All three pages from the start; the pay page leaves outside employee mode.
    m_tabs->addTab(m_addressesPage, QString());
    m_tabs->addTab(m_payPage, QString());
    m_tabs->addTab(m_notesPage, QString());

    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(12, 10, 12, 10);
    root->setSpacing(8);
    root->addWidget(buildTopArea());
    root->addWidget(m_tabs, 1);
    root->addWidget(buildButtonRow());
}

QWidget *frmAddresses::buildTopArea()
{
    auto *area = new QWidget(this);

    m_letterStrip = new AlphaList(AlphaListProperties::addressBookFilter(), area);
    m_letterStrip->setObjectName("AlphaListFilter");
    // Both of the strip's gestures end in the same filter change.
    const auto filterByLetter = [this] {
        m_logic.changeLetterFilter(m_letterStrip->selectedLetter());
        // A filter the logic did not take (the entry on screen could not be saved, and
        // the user went back to it) leaves the strip on the letter of the list shown.
        const QString filter = m_logic.filter();
        const QString shown = filter == u"*" ? filter : filter.chopped(1);
        if (m_letterStrip->selectedLetter() != shown)
            m_letterStrip->setSelectedLetter(shown);
    };
    connect(m_letterStrip, &AlphaList::MouseUp, this, filterByLetter);
    connect(m_letterStrip, &AlphaList::KeyUp, this, filterByLetter);

    // Search as you type, over every entry: Ctrl+F comes here, Down goes into the list,
    // Esc clears it (frmAddresses::handleEvent).
    m_searchBox = new QLineEdit(area);
    m_searchBox->setObjectName("txtSearch");
    m_searchBox->setPlaceholderText(QStringLiteral("Search names, contacts, city, phone (Ctrl+F)"));
    m_searchBox->setClearButtonEnabled(true);
    m_searchBox->setFixedWidth(kStripWidth);
    connect(m_searchBox, &QLineEdit::textEdited, this,
            [this](const QString &text) { m_logic.search(text); });

    m_names = new QComboBox(area);
    m_names->setObjectName("cmbName");
    m_namesMirror = std::make_unique<ComboMirror>(m_names, m_logic.nameList());
    m_names->setFixedWidth(kStripWidth);
    m_names->setMaxVisibleItems(20);
    // The width is fixed: measuring every name of a large book for a size hint
    // would only slow the first show.
    m_names->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);

    m_employeeSwitch = new QCheckBox(area);
    m_employeeSwitch->setObjectName("chk_employee");
    m_employeeSwitchLabel = new QLabel(area);
    m_employeeSwitchLabel->setObjectName("lbl_chk_employee");

    auto *nameRow = new QHBoxLayout;
    nameRow->setSpacing(6);
    nameRow->addWidget(m_names);
    nameRow->addSpacing(18);
    nameRow->addWidget(m_employeeSwitch);
    nameRow->addWidget(m_employeeSwitchLabel);
    // The address book's counterpart, in the same place: the employee switch is shown
    // in employee mode only.
    m_inactiveSwitch = new QCheckBox(tr("Show &Inactive Entries"), area);
    m_inactiveSwitch->setObjectName("chkShowInactive");
    m_inactiveSwitch->setToolTip(tr("List the entries marked inactive as well"));
    nameRow->addWidget(m_inactiveSwitch);
    nameRow->addStretch();

    auto *layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_letterStrip);
    layout->addWidget(m_searchBox);
    layout->addLayout(nameRow);
    return area;
}

QLineEdit *frmAddresses::makeField(int field)
{
    QLineEdit *edit = FormWidgets::textField(
        QStringLiteral("txtFields_%1").arg(field), m_entry,
        [this, field](const QString &text) { m_logic.editField(field, text); });
    m_fields[std::size_t(field)] = edit;
    auto *label = new QLabel;
    label->setObjectName(QStringLiteral("lblFields_%1").arg(field));
    label->setBuddy(edit);
    m_fieldLabels[std::size_t(field)] = label;
    return edit;
}

QWidget *frmAddresses::buildAddressesPage()
{
    auto *page = new QWidget;
    page->setObjectName("pageAddresses");

    const auto makeForm = [] {
        return FormWidgets::formLayout(QFormLayout::AllNonFixedFieldsGrow, 5);
    };

    QFormLayout *left = makeForm();
    for (int field : kLeftColumn) {
        QLineEdit *edit = makeField(field);
        left->addRow(m_fieldLabels[std::size_t(field)], edit);
    }

    QFormLayout *right = makeForm();
    for (int field : kRightColumn) {
        QLineEdit *edit = makeField(field);
        right->addRow(m_fieldLabels[std::size_t(field)], edit);
    }
    m_headingLabel = new QLabel;
    m_heading = new QComboBox;
    m_heading->setObjectName("cmbHeading");
    m_heading->setMaxVisibleItems(20);
    m_headingMirror = std::make_unique<ComboMirror>(m_heading, m_logic.headingList());
    m_headingLabel->setBuddy(m_heading);
    right->addRow(m_headingLabel, m_heading);

    m_cashbookFlag = new QCheckBox;
    m_cashbookFlag->setObjectName("Check3");
    m_wagebookFlag = new QCheckBox;
    m_wagebookFlag->setObjectName("Check2");
    auto *flags = new QHBoxLayout;
    flags->setSpacing(20);
    m_inactiveFlag = new QCheckBox(tr("Inactive"));
    m_inactiveFlag->setObjectName("chkInactive");
    m_inactiveFlag->setToolTip(tr("No longer used: kept, but left off the name list unless "
                                  "inactive entries are shown. Search still finds it."));
    flags->addWidget(m_cashbookFlag);
    flags->addWidget(m_wagebookFlag);
    flags->addWidget(m_inactiveFlag);
    flags->addStretch();
    right->addRow(QString(), flags);

    auto *rightColumn = new QVBoxLayout;
    rightColumn->setSpacing(10);
    rightColumn->addLayout(right);
    rightColumn->addWidget(buildBankGroup());
    rightColumn->addStretch();

    auto *leftColumn = new QVBoxLayout;
    leftColumn->addLayout(left);
    leftColumn->addStretch();

    auto *columns = new QHBoxLayout(page);
    columns->setContentsMargins(12, 12, 12, 8);
    columns->setSpacing(24);
    // The left column keeps its boxes' width; the right one takes the rest.
    columns->addLayout(leftColumn, 0);
    columns->addLayout(rightColumn, 1);

    connect(m_heading, &QComboBox::activated, this,
            [this](int index) { m_logic.chooseHeading(index); });
    connect(m_cashbookFlag, &QCheckBox::clicked, this,
            [this](bool on) { m_logic.toggleFlag(Logic::BusinessFlag, on); });
    connect(m_wagebookFlag, &QCheckBox::clicked, this,
            [this](bool on) { m_logic.toggleFlag(Logic::WageFlag, on); });
    connect(m_inactiveFlag, &QCheckBox::clicked, this,
            [this](bool on) { m_logic.toggleFlag(Logic::Inactive, on); });
    return page;
}

QGroupBox *frmAddresses::buildBankGroup()
{
    m_bankGroup = new QGroupBox;
    m_bankGroup->setObjectName("fraBank");

    auto *grid = new QGridLayout(m_bankGroup);
    grid->setContentsMargins(10, 8, 10, 8);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(3);

    // Every caption of the group sits above its box: the account name on
    // top, then the four boxes in a row.
    QLineEdit *name = makeField(Logic::BusBankAcName);
    m_bankHyphen = new QLabel(QStringLiteral("-"));
    m_bankHyphen->setObjectName("lblHyphen");
    m_bankHyphen->setAlignment(Qt::AlignCenter);

    int column = 0;
    for (int field : BankBoxes) {
        QLineEdit *box = makeField(field);
        grid->addWidget(m_fieldLabels[std::size_t(field)], 2, column, Qt::AlignLeft);
        grid->addWidget(box, 3, column, Qt::AlignLeft);
        ++column;
        if (field == Logic::BusBankAcBank)
            grid->addWidget(m_bankHyphen, 3, column++);
    }
    grid->setColumnStretch(column, 1);
    grid->addWidget(m_fieldLabels[Logic::BusBankAcName], 0, 0, 1, column + 1);
    grid->addWidget(name, 1, 0, 1, column + 1);
    grid->addItem(new QSpacerItem(0, 4), 4, 0);

    m_bankRemark = remarkLabel("lblBankRemark", m_bankGroup);
    grid->addWidget(m_bankRemark, 5, 0, 1, column + 1);
    return m_bankGroup;
}

QWidget *frmAddresses::buildPayPage()
{
    auto *page = new QWidget;
    page->setObjectName("pagePayInformation");

    m_payFrame = new QFrame(page);
    m_payFrame->setObjectName("Frame1");
    auto *frameLayout = new QVBoxLayout(m_payFrame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    m_wagesTab = new WagesTab(page);
    frameLayout->addWidget(m_wagesTab, 1);

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(12, 12, 12, 8);
    layout->addWidget(m_payFrame);
    return page;
}

QWidget *frmAddresses::buildNotesPage()
{
    auto *page = new QWidget;
    page->setObjectName("pageNotes");

    m_notesArea = new QFrame(page);
    m_notesArea->setObjectName("vseNotes");
    m_notes = new QPlainTextEdit(m_notesArea);
    m_notes->setObjectName("txtNotes");
    // Tab and Enter move on; Ctrl+Enter makes a new line.
    m_notes->setTabChangesFocus(true);
    m_notesHint = remarkLabel("lblCtrlEnter", m_notesArea);
    m_notesHint->setAlignment(Qt::AlignRight);

    auto *areaLayout = new QVBoxLayout(m_notesArea);
    areaLayout->setContentsMargins(0, 0, 0, 0);
    areaLayout->setSpacing(4);
    areaLayout->addWidget(m_notes, 1);
    areaLayout->addWidget(m_notesHint);

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(12, 12, 12, 8);
    layout->addWidget(m_notesArea);

    return page;
}

QWidget *frmAddresses::buildButtonRow()
{
    auto *row = new QWidget(this);
    m_mergeRemark = remarkLabel("lblMergeRemark", row);
    m_add = new QPushButton(row);
    m_add->setObjectName("cmdAdd");
    m_delete = new QPushButton(row);
    m_delete->setObjectName("cmdDelete");
    m_close = new QPushButton(row);
    m_close->setObjectName("cmdClose");
    m_editPays = new QPushButton(row);
    m_editPays->setObjectName("cmdEditPays");

    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_mergeRemark);
    layout->addStretch();
    layout->addWidget(m_editPays);
    layout->addWidget(m_add);
    layout->addWidget(m_delete);
    layout->addSpacing(16);
    layout->addWidget(m_close);

    connect(m_add, &QPushButton::clicked, this, [this] { m_logic.addEntry(); });
    connect(m_delete, &QPushButton::clicked, this, [this] { m_logic.deleteEntry(); });
    connect(m_editPays, &QPushButton::clicked, this, [this] { m_logic.editPayDetails(); });
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
    return row;
}

void frmAddresses::setTabOrderChain()
{
    // Down the left column, then down the right one and into the bank group.
    std::vector<QWidget *> chain = {m_letterStrip, m_searchBox, m_names, m_employeeSwitch,
                                    m_inactiveSwitch};
    for (int field : kLeftColumn)
        chain.push_back(m_fields[std::size_t(field)]);
    for (int field : kRightColumn)
        chain.push_back(m_fields[std::size_t(field)]);
    chain.insert(chain.end(), {m_heading, m_cashbookFlag, m_wagebookFlag, m_inactiveFlag,
                               m_fields[Logic::BusBankAcName]});
    for (int field : BankBoxes)
        chain.push_back(m_fields[std::size_t(field)]);
    chain.insert(chain.end(), {m_notes, m_editPays, m_add, m_delete, m_close});
    FormWidgets::chainTabOrder(chain);
}
