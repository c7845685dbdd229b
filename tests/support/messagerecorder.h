#pragma once

#include "messages/messageservice.h"

#include <deque>
#include <QStringList>
#include <vector>

// Installed for its lifetime in place of the dialog: keeps every request and
// answers with the queued codes (then OK, or No for a question).
class MessageRecorder : public MessageService
{
public:
    MessageRecorder();
    ~MessageRecorder() override;
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    qint16 show(const MessageRequest &request) override;
    QStringList titles() const;

    std::vector<MessageRequest> requests;
    std::deque<qint16> answers;

private:
    MessageService *m_previous;
};
