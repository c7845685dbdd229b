#pragma once

#include "messages/messageservice.h"

#include <QPointer>
#include <QWidget>

// Shows each message in a modal SuiteMessageDialog. Installed with
// setMessageService by the program once its application object exists.
class DialogMessageService : public MessageService
{
public:
    // Dialogs are centred over parent, or over the active window when none is
    // given.
    explicit DialogMessageService(QWidget *parent = nullptr) : m_parent(parent) {}

    qint16 show(const MessageRequest &request) override;

private:
    QPointer<QWidget> m_parent;
};
