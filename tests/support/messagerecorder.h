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
    MessageRecorder() : m_previous(messageService()) { setMessageService(this); }
    ~MessageRecorder() override { setMessageService(m_previous); }
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    qint16 show(const MessageRequest &request) override
    {
        requests.push_back(request);
        if (answers.empty())
            return request.buttons == ButtonsYesNo ? ResultNo : ResultOk;
        const qint16 answer = answers.front();
        answers.pop_front();
        return answer;
    }
    QStringList titles() const
    {
        QStringList result;
        for (const MessageRequest &r : requests)
            result << r.title;
        return result;
    }

    std::vector<MessageRequest> requests;
    std::deque<qint16> answers;

private:
    MessageService *m_previous;
};
