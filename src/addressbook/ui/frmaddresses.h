#pragma once

#include "addressbook/addressbooklogic.h"
#include "controls/ui/fieldentry.h"
#include "controls/ui/syncpass.h"

#include <array>
#include <memory>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class AlphaList;
class ComboMirror;
class FormEvents;

// The address book's main window. It shows what AddressBookLogic holds and
// forwards the user's actions to it; every rule lives in the logic. Whenever
// the logic's state changes, the widgets are brought in line with it, with
// their signals blocked so that mirroring never reads as a user action.
class WagesTab;

class frmAddresses : public QWidget
{
    Q_OBJECT

public:
    explicit frmAddresses(AddressBookLogic &logic, QWidget *parent = nullptr);
    ~frmAddresses() override;

    AddressBookLogic &logic() const { return m_logic; }
    // The pay information page's editor (employee mode).
    WagesTab *wagesTab() const { return m_wagesTab; }

signals:
    // The window has closed and the logic has unloaded.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildLayout();
    QWidget *buildTopArea();
    QWidget *buildAddressesPage();
    QGroupBox *buildBankGroup();
    QWidget *buildPayPage();
    QWidget *buildNotesPage();
    QWidget *buildButtonRow();
    QLineEdit *makeField(int field);
    void setTabOrderChain();
    void connectLogic();

    void syncFromLogic();
    void syncCaptions();
    void syncFields();
    void syncTabs();
    void syncSearch();
    void syncBankLayout();
    void setWaitCursor(bool on);
    void focusCurrentPage();

    // The window's own keys and clicks, before the form's (FormEvents).
    bool handleEvent(QObject *watched, QEvent *event);
    int fieldIndexOf(const QObject *object) const;

    // The bank account's boxes, in their group's row.
    static constexpr int BankBoxes[] = {AddressFields::BusBankAcBank,
                                        AddressFields::BusBankAcBranch, AddressFields::BusBankAcNo,
                                        AddressFields::BusBankAcSuffix};

    AddressBookLogic &m_logic;
    FieldEntry m_entry; // which address box the user is in
    std::unique_ptr<FormEvents> m_events;
    SyncPass m_sync;
    bool m_waitCursor = false;
    qint32 m_stripColour = -1;
    quint64 m_formRevision = ~quint64(0);
    quint64 m_shownRevision = ~quint64(0);
    std::unique_ptr<ComboMirror> m_namesMirror;
    std::unique_ptr<ComboMirror> m_headingMirror;

    AlphaList *m_letterStrip = nullptr;
    QLineEdit *m_searchBox = nullptr;
    QComboBox *m_names = nullptr;
    QCheckBox *m_employeeSwitch = nullptr;
    QLabel *m_employeeSwitchLabel = nullptr;

    QTabWidget *m_tabs = nullptr;
    QWidget *m_addressesPage = nullptr;
    QWidget *m_payPage = nullptr;
    QWidget *m_notesPage = nullptr;

    std::array<QLineEdit *, AddressBookLogic::FieldCount> m_fields{};
    std::array<QLabel *, AddressBookLogic::FieldCount> m_fieldLabels{};
    QCheckBox *m_cashbookFlag = nullptr;
    QCheckBox *m_wagebookFlag = nullptr;
    QCheckBox *m_inactiveFlag = nullptr;
    QCheckBox *m_inactiveSwitch = nullptr;
    QLabel *m_headingLabel = nullptr;
    QComboBox *m_heading = nullptr;
    QGroupBox *m_bankGroup = nullptr;
    QLabel *m_bankHyphen = nullptr;
    QLabel *m_bankRemark = nullptr;

    QFrame *m_payFrame = nullptr;
    QPushButton *m_editPays = nullptr;
    WagesTab *m_wagesTab = nullptr;

    QFrame *m_notesArea = nullptr;
    QPlainTextEdit *m_notes = nullptr;
    QLabel *m_notesHint = nullptr;

    QLabel *m_mergeRemark = nullptr;
    QPushButton *m_add = nullptr;
    QPushButton *m_delete = nullptr;
    QPushButton *m_close = nullptr;
};
