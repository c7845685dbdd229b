#include "addressbook/ui/frmaddresses.h"

#include "controls/ui/alphalist.h"
#include "controls/ui/combolistmodel.h"
#include "controls/ui/formevents.h"
#include "controls/ui/formwidgets.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

namespace {

using Logic = AddressBookLogic;

constexpr int kDefaultWidth = 820;
constexpr int kDefaultHeight = 600;
// Limited boxes are sized to their limit; longer or unlimited ones start at
// this many characters and grow with the window.
constexpr int kWideFieldChars = 25;

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

} // namespace

frmAddresses::frmAddresses(AddressBookLogic &logic, QWidget *parent)
    : QWidget(parent), m_logic(logic),
      m_entry([this](QObject *field, bool) { m_logic.focusInField(fieldIndexOf(field)); },
              [this](QObject *field) {
                  // The focus widget is already the box entered next, if any.
                  return m_logic.focusOutField(fieldIndexOf(field),
                                               fieldIndexOf(QApplication::focusWidget()));
              })
{
    setObjectName("frmAddresses");
    buildLayout();
    setTabOrderChain();
    // The window sees every key and focus change before its controls do.
    m_events = std::make_unique<FormEvents>(
        this, &m_entry, [this](const QObject *w) { return fieldIndexOf(w) >= 0; },
        [this] { focusNextChild(); },
        [this](QObject *watched, QEvent *event) { return handleEvent(watched, event); });
    for (QWidget *child : findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        m_events->watch(child);
    connectLogic();
    resize(kDefaultWidth, kDefaultHeight);
    syncFromLogic();
}

frmAddresses::~frmAddresses()
{
    // The widgets are destroyed after this body: nothing they send as they go may reach
    // the logic (m_events goes before them).
    disconnect(&m_logic, nullptr, this, nullptr);
    setWaitCursor(false);
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
    connect(m_inactiveSwitch, &QCheckBox::clicked, this,
            [this](bool checked) { m_logic.clickInactiveSwitch(checked); });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this](int index) {
        if (!m_sync.running())
            m_logic.changeTab(index);
    });
    connect(m_notes, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_sync.running())
            m_logic.editNotes(toStoredText(m_notes->toPlainText()));
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
        syncSearch();
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
    for (int field : BankBoxes) {
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
    m_inactiveFlag->setChecked(m_logic.flag(Logic::Inactive));
    m_inactiveFlag->setVisible(m_logic.inactiveAvailable());
    m_inactiveSwitch->setVisible(m_logic.inactiveSwitchVisible());
    m_inactiveSwitch->setChecked(m_logic.inactiveSwitchChecked());

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

// The search box and the letter strip show what the logic searches and filters by: a
// search puts the strip back on "*", a letter or a rebuilt list empties the box.
void frmAddresses::syncSearch()
{
    if (m_searchBox->text() != m_logic.searchText())
        m_searchBox->setText(m_logic.searchText());
    const QString filter = m_logic.filter();
    const QString letter = filter == u"*" ? filter : filter.chopped(1);
    if (m_logic.searching() && m_letterStrip->selectedLetter() != letter)
        m_letterStrip->setSelectedLetter(letter);
}

bool frmAddresses::handleEvent(QObject *watched, QEvent *event)
{
    // The index is read when the box is entered, ahead of the first key.
    if (event->type() == QEvent::FocusIn && watched == m_searchBox) {
        m_logic.prepareSearch();
        return false;
    }
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
    if (control && key->key() == Qt::Key_F) {
        m_searchBox->setFocus(Qt::ShortcutFocusReason);
        m_searchBox->selectAll();
        return true;
    }
    if (watched == m_searchBox && key->key() == Qt::Key_Down && m_names->count() > 0) {
        m_names->setFocus(Qt::OtherFocusReason);
        m_names->showPopup();
        return true;
    }
    if (watched == m_searchBox && key->key() == Qt::Key_Escape && !m_searchBox->text().isEmpty()) {
        m_logic.clearSearch();
        return true;
    }
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!control && watched == m_names) {
            // From the chosen name to its entry, past the switches beside the list.
            focusCurrentPage();
            return true;
        }
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
