#include "paydetails/ui/frmpaydetails.h"

#include "controls/ui/formevents.h"
#include "paydetails/paydetailseditor.h"
#include "paydetails/ui/paydetailspanel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

frmPaydetails::frmPaydetails(qint32 addressId, QWidget *parent)
    : QDialog(parent), m_editor(std::make_unique<PayDetailsEditor>(PayDetailsEditor::Host::Dialog)),
      m_addressId(addressId)
{
    setObjectName("frmPaydetails");
    setModal(true);
    m_editor->setInputBox(&m_inputBox);
    m_panel = new PayDetailsPanel(*m_editor, this);

    m_ok = new QPushButton(this);
    m_ok->setObjectName("cmdOK");
    // Enter moves between fields here; only a click or Space presses OK.
    m_ok->setAutoDefault(false);
    m_ok->setDefault(false);
    m_ok->setMinimumWidth(90);
    m_events = std::make_unique<FormEvents>(this, nullptr, FormEvents::IsField(),
                                            [this] { focusNextChild(); });
    m_events->watch(m_ok);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);

    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(16, 14, 16, 12);
    root->setSpacing(12);
    root->addWidget(m_panel, 1);
    root->addLayout(buttons);

    connect(m_editor.get(), &PayDetailsEditor::changed, this, &frmPaydetails::syncCaptions);
    syncCaptions();
}

frmPaydetails::~frmPaydetails() = default;

void frmPaydetails::showFor(qint32 addressId, QWidget *parent)
{
    frmPaydetails dialog(addressId, parent);
    dialog.exec();
}

void frmPaydetails::syncCaptions()
{
    const QString caption = m_editor->windowCaption();
    setWindowTitle(caption.isEmpty() ? tr("Employee Pay Information") : caption);
    const QString ok = m_editor->okCaption();
    m_ok->setText(ok.isEmpty() ? tr("&OK") : ok);
}

void frmPaydetails::showEvent(QShowEvent *event)
{
    // The pay details load when the dialog is first shown, once.
    if (!m_loaded) {
        m_loaded = true;
        m_editor->loadFromSettings(m_addressId);
        adjustSize();
    }
    QDialog::showEvent(event);
}

void frmPaydetails::done(int result)
{
    // Every way of closing (OK, Alt+O, Escape, Alt+F4, the close box) comes here:
    // what is being typed reaches the editor first, and a refused value or a save
    // that the user went back to keeps the dialog open.
    if (m_loaded && (!m_panel->commitPendingEdits() || m_editor->queryClose()))
        return;
    QDialog::done(result);
}
