#include "paydetails/ui/wagestab.h"

#include "paydetails/paydetailseditor.h"
#include "paydetails/ui/paydetailspanel.h"

#include <QVBoxLayout>

WagesTab::WagesTab(QWidget *parent)
    : QWidget(parent),
      m_editor(std::make_unique<PayDetailsEditor>(PayDetailsEditor::Host::WagesTab))
{
    setObjectName("WagesTab");
    m_editor->setInputBox(&m_inputBox);
    m_panel = new PayDetailsPanel(*m_editor, this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_panel);
}

WagesTab::~WagesTab() = default;

void WagesTab::loadWageTab(Database &suite, qint32 addressId)
{
    m_editor->load(suite, addressId);
}

bool WagesTab::SaveWageTab()
{
    // What is being typed counts, as if the focus had left it.
    return m_panel->commitPendingEdits() && m_editor->SaveWageTab();
}
