#include "controls/ui/dialogmessageservice.h"

#include "controls/ui/suitemessagedialog.h"

#include <QApplication>

qint16 DialogMessageService::show(const MessageRequest &request)
{
    QWidget *parent = m_parent ? m_parent.data() : QApplication::activeWindow();
    SuiteMessageDialog dialog(request, parent);
    dialog.exec();
    return dialog.answer();
}
