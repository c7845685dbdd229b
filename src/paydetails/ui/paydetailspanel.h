#pragma once

#include "controls/ui/fieldentry.h"
#include "controls/ui/syncpass.h"
#include "paydetails/paydetailseditor.h"

#include <array>
#include <memory>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QTabWidget;
class QTableView;
class CheckedCellDelegate;
class ComboDelegate;
class ComboMirror;
class FormEvents;
class CvDatePicker;
class DeductionGridModel;

// The pay details fields, laid out once for both hosts: the dialog and the
// address window's wages tab. It shows what the editor holds and forwards the
// user's events to it; whenever the editor changes, the widgets are brought in
// line with it, and since only user signals (edited, activated, clicked,
// picked) are forwarded, mirroring never reads as a user action.
class PayDetailsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PayDetailsPanel(PayDetailsEditor &editor, QWidget *parent = nullptr);
    ~PayDetailsPanel() override;

    PayDetailsEditor &editor() const { return m_editor; }

    // What the user is typing reaches the editor before a host saves, moves on or
    // closes: a grid cell being edited, and the field the user is in (text or list).
    // False when the editor refused it; the user stays there and the host must not
    // go on.
    bool commitPendingEdits();

private:
    QLineEdit *makeText(int field);
    QComboBox *makeList(int index);
    void addListRow(QFormLayout *form, const QString &caption, int index);
    QWidget *withPicker(int field);
    QWidget *buildFieldsArea();
    QWidget *buildTabs();
    QWidget *buildKiwiSaverPage();
    void connectEditor();
    void setTabOrderChain();

    void syncFromEditor();
    void syncOnce();

    int textIndexOf(const QObject *object) const;
    int listIndexOf(const QObject *object) const;
    void enter(QObject *field, bool byFocus);
    bool leave(QObject *field);

    PayDetailsEditor &m_editor;
    bool m_dialog;
    SyncPass m_sync;
    FieldEntry m_entry; // which field the user is in
    std::unique_ptr<FormEvents> m_events;

    std::array<QLineEdit *, PayDetailsEditor::TextCount> m_texts{};
    std::array<CvDatePicker *, PayDetailsEditor::TextCount> m_pickers{};
    std::array<QComboBox *, PayDetailsEditor::ListCount> m_lists{};
    std::array<std::unique_ptr<ComboMirror>, PayDetailsEditor::ListCount> m_mirrors;
    std::array<QLabel *, PayDetailsEditor::ListCount> m_listLabels{};
    QLabel *m_payRateLabel = nullptr;
    QLabel *m_cashbookLabel = nullptr;
    QCheckBox *m_nonCash = nullptr;
    QCheckBox *m_excludeIR348 = nullptr;
    QCheckBox *m_kiwiSaverEnrolled = nullptr;
    QCheckBox *m_includeESCT = nullptr;
    QTabWidget *m_tabs = nullptr;
    QTableView *m_grid = nullptr;
    DeductionGridModel *m_gridModel = nullptr;
    ComboDelegate *m_deductionDelegate = nullptr;
    CheckedCellDelegate *m_amountDelegate = nullptr;
    quint64 m_gridRevision = ~quint64(0);
};
