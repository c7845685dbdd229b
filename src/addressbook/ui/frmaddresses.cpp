#include "addressbook/ui/frmaddresses.h"

#include "controls/alphalistproperties.h"
#include "controls/ui/alphalist.h"
#include "controls/ui/combolistmodel.h"
#include "controls/ui/formevents.h"
#include "controls/ui/formwidgets.h"
#include "paydetails/ui/wagestab.h"

#include <algorithm>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpacerItem>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

using Logic = AddressBookLogic;

constexpr int kDefaultWidth = 820;
constexpr int kDefaultHeight = 600;
// The name list lines up with the letter strip above it (27 cells of 18
// pixels and the border).
constexpr int kStripWidth = 490;
// Limited boxes are sized to their limit; longer or unlimited ones start at
// this many characters and grow with the window.
constexpr int kWideFieldChars = 25;

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
constexpr int kBankBoxes[] = {
    Logic::BusBankAcBank,
    Logic::BusBankAcBranch,
    Logic::BusBankAcNo,
    Logic::BusBankAcSuffix,
};

using FormWidgets::widthForChars;

// The suite's text boxes keep CR LF line breaks; the editor works with LF.
QString toEditorText(const QString &stored)
{
    QString text = stored;
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

QString toStoredText(const QString &edited)
{
    QString text = edited;
    return text.replace(u'\n', QLatin1String("\r\n"));
}

// A colour part as the platform's RGB takes it: above 255 counts as 255.
qint32 colourPart(qint32 value)
{
    return qBound(0, value, 255);
}

QLabel *remarkLabel(const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

frmAddresses::frmAddresses(AddressBookLogic &logic, QWidget *parent)
    : QWidget(parent), m_logic(logic),
      m_entry([this](QObject *field, bool) { m_logic.focusInField(fieldIndexOf(field)); },
              [this](QObject *field) {
                  m_logic.focusOutField(fieldIndexOf(field));
                  return true;
              })
{
    setObjectName("frmAddresses");
    buildLayout();
    setTabOrderChain();
    // The window sees every key and focus change before its controls do.
    auto *events = new FormEvents(
        this, &m_entry, [this](const QObject *w) { return fieldIndexOf(w) >= 0; },
        [this] { focusNextChild(); },
        [this](QObject *watched, QEvent *event) { return handleEvent(watched, event); });
    for (QWidget *child : findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        events->watch(child);
    connectLogic();
    resize(kDefaultWidth, kDefaultHeight);
    syncFromLogic();
}

frmAddresses::~frmAddresses()
{
    setWaitCursor(false);
}

// ---- Layout ----------------------------------------------------------------

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
    nameRow->addStretch();

    auto *layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_letterStrip);
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
    flags->addWidget(m_cashbookFlag);
    flags->addWidget(m_wagebookFlag);
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
    for (int field : kBankBoxes) {
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

    connect(m_notes, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_sync.running())
            m_logic.editNotes(toStoredText(m_notes->toPlainText()));
    });
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
    std::vector<QWidget *> chain = {m_letterStrip, m_names, m_employeeSwitch};
    for (int field : kLeftColumn)
        chain.push_back(m_fields[std::size_t(field)]);
    for (int field : kRightColumn)
        chain.push_back(m_fields[std::size_t(field)]);
    chain.insert(chain.end(),
                 {m_heading, m_cashbookFlag, m_wagebookFlag, m_fields[Logic::BusBankAcName]});
    for (int field : kBankBoxes)
        chain.push_back(m_fields[std::size_t(field)]);
    chain.insert(chain.end(), {m_notes, m_editPays, m_add, m_delete, m_close});
    FormWidgets::chainTabOrder(chain);
}

// ---- Logic to widgets ------------------------------------------------------

void frmAddresses::connectLogic()
{
    connect(&m_logic, &AddressBookLogic::changed, this, &frmAddresses::syncFromLogic);
    connect(&m_logic, &AddressBookLogic::busyChanged, this, &frmAddresses::setWaitCursor);
    connect(&m_logic, &AddressBookLogic::focusFieldRequested, this, [this](int field) {
        if (field >= 0 && field < Logic::FieldCount)
            m_fields[std::size_t(field)]->setFocus();
    });

    connect(m_names, &QComboBox::activated, this, [this](int index) { m_logic.chooseName(index); });
    connect(m_employeeSwitch, &QCheckBox::clicked, this,
            [this](bool checked) { m_logic.clickEmployeeSwitch(checked); });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this](int index) {
        if (!m_sync.running())
            m_logic.changeTab(index);
    });
}

void frmAddresses::syncFromLogic()
{
    // A keystroke in a box comes back here: what it cannot have changed (the form's
    // texts and sizes, the entry's other values, the name list) is skipped by revision.
    m_sync.run([this] {
        setWindowTitle(m_logic.windowTitle());
        if (m_logic.formRevision() != m_formRevision) {
            m_formRevision = m_logic.formRevision();
            syncCaptions();
            syncBankLayout();
        }
        syncTabs();
        syncFields();
    });
}

void frmAddresses::syncCaptions()
{
    const AddressBookLogic::Captions &c = m_logic.captions();
    for (int i = 0; i < Logic::FieldCount; ++i)
        m_fieldLabels[std::size_t(i)]->setText(m_logic.fieldCaption(i));
    m_cashbookFlag->setText(c.showInCashbook);
    m_wagebookFlag->setText(c.showInWagebook);
    m_headingLabel->setText(c.cashbookHeading);
    m_employeeSwitchLabel->setText(c.employeeSwitch);
    m_notesHint->setText(c.notesHint);
    m_mergeRemark->setText(c.mergeRemark);
    m_add->setText(c.add);
    m_delete->setText(c.remove);
    m_close->setText(c.close);
    m_editPays->setText(c.editPays);
}

void frmAddresses::syncBankLayout()
{
    const AddressBookLogic::BankLayout &bank = m_logic.bankLayout();
    m_bankGroup->setTitle(bank.groupCaption);
    m_bankRemark->setText(bank.remark);
    m_bankHyphen->setVisible(bank.hyphenVisible);
    m_fields[Logic::BusBankAcSuffix]->setVisible(bank.suffixVisible);
    m_fieldLabels[Logic::BusBankAcSuffix]->setVisible(bank.suffixVisible);

    for (int i = 0; i < Logic::FieldCount; ++i) {
        QLineEdit *edit = m_fields[std::size_t(i)];
        const int limit = m_logic.maxLength(i);
        edit->setMaxLength(limit > 0 ? limit : 32767);
        if (limit > 0 && limit <= kWideFieldChars) {
            edit->setFixedWidth(widthForChars(edit, limit));
        } else {
            edit->setMinimumWidth(widthForChars(edit, kWideFieldChars));
            edit->setMaximumWidth(limit > 0 ? widthForChars(edit, limit) : QWIDGETSIZE_MAX);
        }
    }
    // The small bank boxes are as wide as their captions, so that each sits
    // squarely under its own.
    int bankWidth = 0;
    for (int field : kBankBoxes) {
        QLineEdit *edit = m_fields[std::size_t(field)];
        QLabel *caption = m_fieldLabels[std::size_t(field)];
        const int width = qMax(widthForChars(edit, m_logic.maxLength(field)),
                               caption->fontMetrics().horizontalAdvance(caption->text()));
        edit->setFixedWidth(width);
        if (field == Logic::BusBankAcBank)
            bankWidth = width;
    }
    if (bank.branchAsWideAsBank)
        m_fields[Logic::BusBankAcBranch]->setFixedWidth(bankWidth);
}

void frmAddresses::syncTabs()
{
    const QStringList captions = m_logic.tabCaptions();
    const bool withPay = m_logic.payTab() >= 0;
    const int payIndex = m_tabs->indexOf(m_payPage);
    if (withPay && payIndex < 0)
        m_tabs->insertTab(m_logic.payTab(), m_payPage, QString());
    else if (!withPay && payIndex >= 0)
        m_tabs->removeTab(payIndex);
    for (int i = 0; i < m_tabs->count() && i < captions.size(); ++i)
        m_tabs->setTabText(i, captions.at(i));
    m_tabs->setCurrentIndex(m_logic.currentTab());

    m_payFrame->setVisible(m_logic.payFrameVisible());
    // Employee mode edits pay details on its own tab; the dialog is the address book's way
    // to them, for entries flagged as employees.
    m_editPays->setVisible(!m_logic.employeeMode());
    m_editPays->setEnabled(m_logic.editPaysEnabled());
    m_notesArea->setEnabled(m_logic.notesEnabled());
    m_add->setVisible(m_logic.addDeleteVisible());
    m_delete->setVisible(m_logic.addDeleteVisible());
}

void frmAddresses::syncFields()
{
    // The selection follows the logic also where it did not follow the user's choice
    // (the entry on screen could not be saved).
    m_namesMirror->sync();
    m_headingMirror->sync();

    if (m_logic.shownRevision() != m_shownRevision) {
        m_shownRevision = m_logic.shownRevision();
        for (int i = 0; i < Logic::FieldCount; ++i)
            FormWidgets::showText(m_fields[std::size_t(i)], m_logic.field(i));
        FormWidgets::showText(m_notes, toEditorText(m_logic.notes()));
    }
    m_cashbookFlag->setChecked(m_logic.flag(Logic::BusinessFlag));
    m_wagebookFlag->setChecked(m_logic.flag(Logic::WageFlag));

    m_letterStrip->setEnabled(m_logic.letterStripEnabled());
    const SuiteColour header = m_logic.headerColour();
    const qint32 stripColour =
        colourPart(header.red) | colourPart(header.green) << 8 | colourPart(header.blue) << 16;
    // Each colour change redraws the strip: only a new colour is set.
    if (stripColour != m_stripColour) {
        m_letterStrip->setBackColor(stripColour);
        m_stripColour = stripColour;
    }
    m_employeeSwitch->setVisible(m_logic.employeeSwitchVisible());
    m_employeeSwitchLabel->setVisible(m_logic.employeeSwitchVisible());
    m_employeeSwitch->setChecked(m_logic.employeeSwitchChecked());
    m_employeeSwitch->setToolTip(m_logic.employeeSwitchToolTip());
    m_employeeSwitchLabel->setToolTip(m_logic.employeeSwitchToolTip());
}

void frmAddresses::setWaitCursor(bool on)
{
    if (on == m_waitCursor)
        return;
    m_waitCursor = on;
    if (on)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

// ---- Widgets to logic ------------------------------------------------------

int frmAddresses::fieldIndexOf(const QObject *object) const
{
    return FormWidgets::indexOf(m_fields, object);
}

bool frmAddresses::handleEvent(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        // The switch's caption is a label of its own; clicking it clicks the box.
        if (watched == m_employeeSwitchLabel && m_employeeSwitch->isEnabled())
            m_employeeSwitch->click();
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool control = key->modifiers().testFlag(Qt::ControlModifier);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!control)
            return false; // moves on, as in every form
        // Only the notes take a new line.
        if (watched == m_notes)
            m_notes->insertPlainText(QStringLiteral("\n"));
        return true;
    case Qt::Key_Tab:
        if (!control)
            return false;
        if (!m_entry.commitPending(this))
            return true;
        m_logic.nextTab();
        focusCurrentPage();
        return true;
    case Qt::Key_F1:
        m_logic.showHelp();
        return true;
    default:
        return false;
    }
}

void frmAddresses::focusCurrentPage()
{
    QWidget *page = m_tabs->currentWidget();
    if (!page)
        return;
    for (QWidget *w = nextInFocusChain(); w && w != this; w = w->nextInFocusChain()) {
        if (page->isAncestorOf(w) && w->isVisibleTo(page) && w->isEnabled() &&
            (w->focusPolicy() & Qt::TabFocus)) {
            w->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

void frmAddresses::closeEvent(QCloseEvent *event)
{
    // Close, Alt+F4 and the close box alike: what is being typed is taken in and
    // saved first; what could not be saved keeps the window open.
    if (!m_entry.commitPending(this) || !m_logic.queryUnload()) {
        event->ignore();
        return;
    }
    m_logic.unload();
    setWaitCursor(false);
    event->accept();
    emit closed();
}
