#include "paydetails/ui/wagestab.h"

#include "paydetails/paydetailseditor.h"
#include "paydetails/ui/paydetailspanel.h"

#include <QVBoxLayout>

WagesTab::WagesTab(QWidget *parent)
    : QWidget(parent),
      m_editor(std::make_unique<PayDetailsEditor>(PayDetailsEditor::Host::WagesTab))
{
    setObjectName("WagesTab");
    m_panel = new PayDetailsPanel(*m_editor, this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_panel);
}

WagesTab::~WagesTab() = default;

void WagesTab::loadWageTab(Database &farm, Database &wage, qint32 addressId)
{
    m_editor->load(farm, wage, addressId);
}

void WagesTab::SaveWageTab()
{
    // The field being typed in counts, as if the focus had left it.
    m_panel->leaveFocusedField();
    m_editor->SaveWageTab();
    m_panel->resumeField(m_panel->lastLeftField());
}
