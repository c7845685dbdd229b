#include "paydetails/ui/paydetailspanel.h"

#include "controls/ui/checkedcelldelegate.h"
#include "controls/ui/combodelegate.h"
#include "controls/ui/combolistmodel.h"
#include "controls/ui/datepicker.h"
#include "controls/ui/formevents.h"
#include "controls/ui/formwidgets.h"
#include "paydetails/deductiongrid.h"
#include "paydetails/ui/deductiongridmodel.h"

#include <algorithm>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTableView>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

using Editor = PayDetailsEditor;

using FormWidgets::widthForChars;

// Room for "30/12/2010", and for "$123,456.00" in the money fields.
constexpr int kDateChars = 10;
constexpr int kMoneyChars = 13;
constexpr int kCodeChars = 12;
constexpr int kListChars = 24;

QFormLayout *makeForm()
{
    return FormWidgets::formLayout(QFormLayout::FieldsStayAtSizeHint, 6);
}

} // namespace

PayDetailsPanel::PayDetailsPanel(PayDetailsEditor &editor, QWidget *parent)
    : QWidget(parent), m_editor(editor), m_dialog(editor.host() == Editor::Host::Dialog),
      m_entry([this](QObject *field, bool byFocus) { enter(field, byFocus); },
              [this](QObject *field) { return leave(field); })
{
    setObjectName("PayDetailsPanel");

    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(12);
    root->addWidget(buildFieldsArea());
    root->addWidget(buildTabs(), 1);

    setTabOrderChain();
    // The panel sees every key and focus change before its controls do. The
    // grid's cell editors come later and keep their own keys.
    m_events = std::make_unique<FormEvents>(
        this, &m_entry,
        [this](const QObject *w) { return textIndexOf(w) >= 0 || listIndexOf(w) >= 0; },
        [this] { focusNextChild(); });
    for (QWidget *child : findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        m_events->watch(child);
    connectEditor();
    syncFromEditor();
}

PayDetailsPanel::~PayDetailsPanel() = default;

// ---- Layout ----------------------------------------------------------------

QLineEdit *PayDetailsPanel::makeText(int field)
{
    // The address window names its fields Text2, the dialog TxtWage.
    QLineEdit *edit = FormWidgets::textField(
        (m_dialog ? QStringLiteral("TxtWage_") : QStringLiteral("Text2_")) + QString::number(field),
        m_entry, [this, field](const QString &text) { m_editor.textEdited(field, text); });
    m_texts[std::size_t(field)] = edit;
    if (const int limit = Editor::maxLength(field); limit > 0)
        edit->setMaxLength(limit);
    switch (field) {
    case Editor::PayRate:
    case Editor::Yearlytotal:
        edit->setAlignment(Qt::AlignRight);
        edit->setFixedWidth(widthForChars(edit, kMoneyChars));
        break;
    case Editor::Birthdate:
    case Editor::Datehired:
    case Editor::Datefinished:
    case Editor::KiwiSaverStartDate:
        edit->setFixedWidth(widthForChars(edit, kDateChars));
        break;
    default:
        edit->setFixedWidth(widthForChars(edit, kCodeChars));
        break;
    }
    return edit;
}

QComboBox *PayDetailsPanel::makeList(int index)
{
    auto *combo = new QComboBox;
    combo->setObjectName(QStringLiteral("cmbWage_%1").arg(index));
    combo->setMaxVisibleItems(16);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(kListChars);
    m_lists[std::size_t(index)] = combo;
    m_mirrors[std::size_t(index)] = std::make_unique<ComboMirror>(combo, m_editor.list(index));
    connect(combo, &QComboBox::activated, this, [this, combo, index](int item) {
        m_entry.beforeEdit(combo);
        m_editor.listChosen(index, item);
        // Choosing an enrolment type is the list's click.
        if (index == Editor::EnrolmentType)
            m_editor.enrolmentClicked();
    });
    return combo;
}

void PayDetailsPanel::addListRow(QFormLayout *form, const QString &caption, int index)
{
    QComboBox *combo = makeList(index);
    m_listLabels[std::size_t(index)] = FormWidgets::caption(caption, combo);
    form->addRow(m_listLabels[std::size_t(index)], combo);
}

QWidget *PayDetailsPanel::withPicker(int field)
{
    static const char *const names[Editor::TextCount] = {"CvDatePicker_BirthDate",
                                                         nullptr,
                                                         nullptr,
                                                         nullptr,
                                                         "CvDatePicker_HireDate",
                                                         "CvDatePicker_FinishDate",
                                                         nullptr,
                                                         "CvDatePicker_KiwiSaverStartDate"};
    auto *picker = new CvDatePicker;
    picker->setObjectName(names[field]);
    picker->setFocusPolicy(Qt::ClickFocus);
    picker->setCompact(true);
    picker->setToolTip(tr("Pick a date from the calendar"));
    m_pickers[std::size_t(field)] = picker;
    connect(picker, &CvDatePicker::datePicked, this, [this, field](const QDate &date) {
        // A picked date is as good as typed into its box: the box is entered first and
        // gets the focus, so leaving it logs the date and checks hire against finish.
        QLineEdit *edit = m_texts[std::size_t(field)];
        m_entry.beforeEdit(edit);
        m_editor.datePicked(field, date);
        QTimer::singleShot(0, edit, [edit] { edit->setFocus(Qt::OtherFocusReason); });
    });

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(makeText(field));
    layout->addWidget(picker);
    layout->addStretch();
    return row;
}

QWidget *PayDetailsPanel::buildFieldsArea()
{
    auto *area = new QWidget;

    const auto addText = [this](QFormLayout *form, const QString &caption, int field) {
        QLineEdit *edit = makeText(field);
        QLabel *label = FormWidgets::caption(caption, edit);
        form->addRow(label, edit);
        return label;
    };

    QFormLayout *left = makeForm();
    addListRow(left, tr("Occupation"), Editor::Occupation);
    addListRow(left, tr("Tax Type"), Editor::TaxType);
    addText(left, tr("Tax Code"), Editor::TaxCode);
    addText(left, tr("Tax Office Number"), Editor::IRDnumber);
    addListRow(left, tr("Pay Interval"), Editor::PayInterval);
    m_payRateLabel = addText(left, QString(), Editor::PayRate);
    m_payRateLabel->setObjectName("Payslabel_4");
    addText(left, tr("Salary"), Editor::Yearlytotal);

    QFormLayout *right = makeForm();
    right->addRow(tr("Birth Date"), withPicker(Editor::Birthdate));
    right->addRow(tr("Date Hired"), withPicker(Editor::Datehired));
    right->addRow(tr("Date Finished"), withPicker(Editor::Datefinished));
    addListRow(right, tr("Bank"), Editor::Bank);

    m_nonCash = new QCheckBox;
    m_nonCash->setObjectName("chkNonCash");
    m_cashbookLabel = new QLabel;
    m_cashbookLabel->setObjectName("Payslabel_13");
    auto *bankMode = new QHBoxLayout;
    bankMode->setSpacing(16);
    bankMode->addWidget(m_nonCash);
    bankMode->addWidget(m_cashbookLabel);
    bankMode->addStretch();
    right->addRow(QString(), bankMode);

    addListRow(right, tr("Heading"), Editor::Heading);
    addListRow(right, tr("Enterprise"), Editor::Enterprise);
    m_excludeIR348 = new QCheckBox(tr("Exclude from IR348"));
    m_excludeIR348->setObjectName("chkExcludeIR348");
    right->addRow(QString(), m_excludeIR348);

    connect(m_nonCash, &QCheckBox::clicked, this,
            [this](bool ticked) { m_editor.nonCashClicked(ticked); });
    connect(m_excludeIR348, &QCheckBox::clicked, this,
            [this](bool ticked) { m_editor.excludeIR348Clicked(ticked); });

    auto *columns = new QHBoxLayout(area);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(32);
    columns->addLayout(left);
    columns->addLayout(right);
    columns->addStretch();
    return area;
}

QWidget *PayDetailsPanel::buildTabs()
{
    m_tabs = new QTabWidget;
    m_tabs->setObjectName("tabWages");
    m_tabs->tabBar()->setFocusPolicy(Qt::ClickFocus);

    auto *deductions = new QWidget;
    deductions->setObjectName("pageDeductions");
    m_gridModel = new DeductionGridModel(m_editor, this);
    m_grid = new CheckedTableView;
    m_grid->setObjectName("tgrdDeductions");
    m_grid->setModel(m_gridModel);
    m_deductionDelegate = new ComboDelegate(m_grid);
    m_grid->setItemDelegateForColumn(DeductionGrid::DeductIdColumn, m_deductionDelegate);
    // An amount or a percentage that is not one is refused in its cell, with the user's
    // text kept there, so that a save never meets it.
    m_amountDelegate = new CheckedCellDelegate(
        [this](const QModelIndex &index, const QVariant &typed, bool tell) {
            return tell ? m_editor.checkGridCell(index.column(), typed)
                        : m_editor.gridCellProblem(index.column(), typed).isEmpty();
        },
        m_grid);
    m_grid->setItemDelegateForColumn(DeductionGrid::FixedAmountColumn, m_amountDelegate);
    m_grid->setItemDelegateForColumn(DeductionGrid::SpecialRateColumn, m_amountDelegate);
    // The employee column only carries the row's owner.
    m_grid->hideColumn(DeductionGrid::EmployeeIdColumn);
    m_grid->setAlternatingRowColors(true);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                            QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_grid->setTabKeyNavigation(false);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 10);
    m_grid->verticalHeader()->setFixedWidth(m_grid->fontMetrics().horizontalAdvance("*") + 16);
    QHeaderView *header = m_grid->horizontalHeader();
    header->setSectionResizeMode(DeductionGrid::DeductIdColumn, QHeaderView::Stretch);
    const int moneyWidth = m_grid->fontMetrics().horizontalAdvance("Fixed Amount") + 40;
    header->setSectionResizeMode(DeductionGrid::FixedAmountColumn, QHeaderView::Fixed);
    header->setSectionResizeMode(DeductionGrid::SpecialRateColumn, QHeaderView::Fixed);
    header->resizeSection(DeductionGrid::FixedAmountColumn, moneyWidth);
    header->resizeSection(DeductionGrid::SpecialRateColumn, moneyWidth);
    m_grid->setMinimumHeight(m_grid->verticalHeader()->defaultSectionSize() * 5 +
                             header->sizeHint().height());
    // A deduction that stops is deleted with its row: the Delete key on the grid (not
    // while a cell is being edited), or the row's context menu.
    auto *deleteRow = new QAction(tr("&Delete Deduction"), m_grid);
    deleteRow->setObjectName("actDeleteDeduction");
    deleteRow->setShortcut(QKeySequence::Delete);
    deleteRow->setShortcutContext(Qt::WidgetShortcut);
    m_grid->addAction(deleteRow);
    m_grid->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(deleteRow, &QAction::triggered, this,
            [this] { m_editor.deleteDeductionRow(m_grid->currentIndex().row()); });

    auto *deductionsLayout = new QVBoxLayout(deductions);
    deductionsLayout->setContentsMargins(10, 10, 10, 10);
    deductionsLayout->addWidget(m_grid);

    m_tabs->addTab(deductions, tr("Deductions"));
    m_tabs->addTab(buildKiwiSaverPage(), tr("KiwiSaver"));
    return m_tabs;
}

QWidget *PayDetailsPanel::buildKiwiSaverPage()
{
    auto *page = new QWidget;
    page->setObjectName("pageKiwiSaver");

    m_kiwiSaverEnrolled = new QCheckBox(tr("KiwiSaver Member"));
    m_kiwiSaverEnrolled->setObjectName("chkKiwiSaverEnrolled");
    // Membership follows the enrolment type; the box only shows it.
    m_kiwiSaverEnrolled->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_kiwiSaverEnrolled->setFocusPolicy(Qt::NoFocus);

    QFormLayout *form = makeForm();
    form->addRow(QString(), m_kiwiSaverEnrolled);
    addListRow(form, tr("Enrolment Type"), Editor::EnrolmentType);
    addListRow(form, tr("Employee Contribution Rate"), Editor::EmployeeRate);
    addListRow(form, tr("Employer Contribution Rate"), Editor::EmployerRate);
    auto *startLabel = new QLabel(tr("Start Date"));
    form->addRow(startLabel, withPicker(Editor::KiwiSaverStartDate));
    // The label column keeps the width of its longest label, so that the lists do
    // not jump sideways when the rate rows hide for a non-member.
    const std::array<QLabel *, 4> labels = {m_listLabels[Editor::EnrolmentType],
                                            m_listLabels[Editor::EmployeeRate],
                                            m_listLabels[Editor::EmployerRate], startLabel};
    int labelWidth = 0;
    for (QLabel *label : labels)
        labelWidth = std::max(labelWidth, label->sizeHint().width());
    for (QLabel *label : labels)
        label->setMinimumWidth(labelWidth);
    if (!m_dialog) {
        m_includeESCT = new QCheckBox(tr("Include ESCT Deduction"));
        m_includeESCT->setObjectName("chkIncudeESCT");
        form->addRow(QString(), m_includeESCT);
        connect(m_includeESCT, &QCheckBox::clicked, this,
                [this](bool ticked) { m_editor.esctClicked(ticked); });
    }

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addLayout(form);
    layout->addStretch();
    return page;
}

void PayDetailsPanel::setTabOrderChain()
{
    std::vector<QWidget *> chain = {m_lists[Editor::Occupation],
                                    m_lists[Editor::TaxType],
                                    m_texts[Editor::TaxCode],
                                    m_texts[Editor::IRDnumber],
                                    m_lists[Editor::PayInterval],
                                    m_texts[Editor::PayRate],
                                    m_texts[Editor::Yearlytotal],
                                    m_texts[Editor::Birthdate],
                                    m_texts[Editor::Datehired],
                                    m_texts[Editor::Datefinished],
                                    m_lists[Editor::Bank],
                                    m_nonCash,
                                    m_lists[Editor::Heading],
                                    m_lists[Editor::Enterprise],
                                    m_excludeIR348,
                                    m_grid,
                                    m_lists[Editor::EnrolmentType],
                                    m_lists[Editor::EmployeeRate],
                                    m_lists[Editor::EmployerRate],
                                    m_texts[Editor::KiwiSaverStartDate]};
    if (m_includeESCT)
        chain.push_back(m_includeESCT);
    FormWidgets::chainTabOrder(chain);
}

// ---- Editor to widgets -----------------------------------------------------

void PayDetailsPanel::connectEditor()
{
    connect(&m_editor, &PayDetailsEditor::changed, this, &PayDetailsPanel::syncFromEditor);
}

void PayDetailsPanel::syncFromEditor()
{
    m_sync.run([this] { syncOnce(); });
}

void PayDetailsPanel::syncOnce()
{
    for (int i = 0; i < Editor::TextCount; ++i) {
        FormWidgets::showText(m_texts[std::size_t(i)], m_editor.text(i));
        if (CvDatePicker *picker = m_pickers[std::size_t(i)]) {
            const QDate date = m_editor.pickerDate(i);
            if (date.isValid() && picker->date() != date)
                picker->setDate(date);
        }
    }
    for (const std::unique_ptr<ComboMirror> &mirror : m_mirrors)
        mirror->sync();
    m_lists[Editor::Bank]->setEnabled(m_editor.bankListEnabled());

    const QString payRate = m_editor.payRateCaption();
    m_payRateLabel->setText(payRate.isEmpty() ? tr("Pay Rate") : payRate);
    m_cashbookLabel->setText(m_editor.cashbookCaption());
    m_nonCash->setText(m_editor.ePaymentCaption());
    m_nonCash->setChecked(m_editor.nonCash());
    m_excludeIR348->setChecked(m_editor.excludeIR348());
    m_kiwiSaverEnrolled->setChecked(m_editor.kiwiSaverEnrolled());

    const bool rates = m_editor.kiwiSaverRatesVisible();
    for (int index : {int(Editor::EmployeeRate), int(Editor::EmployerRate)}) {
        m_lists[std::size_t(index)]->setVisible(rates);
        m_listLabels[std::size_t(index)]->setVisible(rates);
    }
    if (m_includeESCT) {
        m_includeESCT->setChecked(m_editor.includeESCT());
        m_includeESCT->setVisible(m_editor.esctVisible());
    }

    const DeductionGrid &grid = m_editor.deductionGrid();
    if (grid.revision() != m_gridRevision) {
        m_gridRevision = grid.revision();
        if (grid.columns().count() > DeductionGrid::DeductIdColumn)
            m_deductionDelegate->setColumn(grid.columns().column(DeductionGrid::DeductIdColumn));
        m_gridModel->refresh();
        m_grid->viewport()->update();
    }
}

// ---- Widgets to editor -----------------------------------------------------

int PayDetailsPanel::textIndexOf(const QObject *object) const
{
    return FormWidgets::indexOf(m_texts, object);
}

int PayDetailsPanel::listIndexOf(const QObject *object) const
{
    return FormWidgets::indexOf(m_lists, object);
}

void PayDetailsPanel::enter(QObject *field, bool byFocus)
{
    if (const int text = textIndexOf(field); text >= 0) {
        m_editor.textFocusIn(text);
        // After the click that brought the focus has placed the cursor.
        if (byFocus)
            QTimer::singleShot(0, m_texts[std::size_t(text)], &QLineEdit::selectAll);
    } else if (const int list = listIndexOf(field); list >= 0) {
        m_editor.listFocusIn(list);
    }
}

bool PayDetailsPanel::leave(QObject *field)
{
    if (const int text = textIndexOf(field); text >= 0)
        return m_editor.textFocusOut(text);
    if (const int list = listIndexOf(field); list >= 0)
        m_editor.listFocusOut(list);
    return true;
}

bool PayDetailsPanel::commitPendingEdits()
{
    return m_entry.commitPending(this);
}
