#include "messages/messageservice.h"

#include <cstdio>

namespace {

// Used until the program installs the dialog: a message still reaches a
// person reading the terminal, and a question gets the cautious answer.
class StandardErrorMessageService : public MessageService
{
public:
    qint16 show(const MessageRequest &request) override;
};

qint16 StandardErrorMessageService::show(const MessageRequest &request)
{
    QString text = request.caption + QLatin1String(": ") + request.title;
    if (!request.heading.isEmpty())
        text += QLatin1String(" - ") + request.heading;
    text += u'\n' + request.prompt + u'\n';
    std::fputs(text.toLocal8Bit().constData(), stderr);
    std::fflush(stderr);
    // Nobody to ask: a question is answered no, and an unsaved change is kept.
    if (request.buttons == ButtonsYesNo)
        return ResultNo;
    if (request.buttons == ButtonsRetryDiscardCancel)
        return ResultCancel;
    return ResultOk;
}

StandardErrorMessageService g_fallback;
MessageService *g_service = nullptr;

} // namespace

MessageService *messageService()
{
    return g_service ? g_service : &g_fallback;
}

void setMessageService(MessageService *service)
{
    g_service = service;
}

QString EscapeAmpersands(const QVariant &text)
{
    if (text.isNull())
        return QString();
    return text.toString().replace(u'&', QLatin1String("&&"));
}

qint16 SuiteMessageBox(const QString &prompt, qint32 buttons, const QString &caption,
                       const QString &title, const QVariant &heading, int iconKind, bool flag)
{
    MessageRequest request;
    request.prompt = prompt;
    request.buttons = buttons;
    request.caption = caption;
    request.title = title;
    request.heading = EscapeAmpersands(heading);
    request.iconKind = iconKind;
    request.flag = flag;
    return messageService()->show(request);
}
