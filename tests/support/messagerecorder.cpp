#include "support/messagerecorder.h"

MessageRecorder::MessageRecorder() : m_previous(messageService())
{
    setMessageService(this);
}

MessageRecorder::~MessageRecorder()
{
    setMessageService(m_previous);
}

qint16 MessageRecorder::show(const MessageRequest &request)
{
    requests.push_back(request);
    // For a person reading a failing test: every message as it comes.
    if (qEnvironmentVariableIsSet("CV_TEST_MESSAGES"))
        qInfo("message: %s | %s", qPrintable(request.title), qPrintable(request.prompt));
    if (answers.empty())
        return request.buttons == ButtonsYesNo ? ResultNo : ResultOk;
    const qint16 answer = answers.front();
    answers.pop_front();
    return answer;
}

QStringList MessageRecorder::titles() const
{
    QStringList result;
    for (const MessageRequest &r : requests)
        result << r.title;
    return result;
}
