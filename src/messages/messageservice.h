#pragma once

#include <QString>
#include <QVariant>
#include <QVariantList>

// The buttons a message offers. Retry/Discard/Cancel asks what to do with a change
// that could not be saved; Keep Mine/Take Theirs/Cancel (answered Yes, No, Cancel) what
// to do with values another user changed meanwhile.
enum MessageButtons : qint32 {
    ButtonsOk = 0,
    ButtonsYesNo = 4,
    ButtonsRetryDiscardCancel = 6,
    ButtonsKeepMineTakeTheirsCancel = 7,
    // Go to Existing / Add Anyway / Cancel (answered Yes, No, Cancel): an entry being
    // added looks like one already in the book.
    ButtonsGoToAddAnywayCancel = 9
};

// The picture beside the prompt.
enum MessageIcon : int { IconInformation = 6, IconQuestion = 9 };

// Button codes the dialog returns, as the platform's message box does; Discard has
// no platform code of its own.
enum MessageResult : qint16 {
    ResultOk = 1,
    ResultCancel = 2,
    ResultRetry = 4,
    ResultYes = 6,
    ResultNo = 7,
    ResultDiscard = 8
};

// The seven values of one suite message, in the dialog's own order.
struct MessageRequest
{
    QString prompt;
    qint32 buttons = ButtonsOk; // a MessageButtons value
    QString caption;
    QString title;
    QString heading;                // ampersands already doubled by SuiteMessageBox
    int iconKind = IconInformation; // a MessageIcon value
    bool flag = true;
};

// Shows a message to the user. Logic talks to the user only through this, so
// tests can answer in place of a person; the widget build installs the real
// dialog.
class MessageService
{
public:
    virtual ~MessageService() = default;
    virtual qint16 show(const MessageRequest &request) = 0;
};

// The service SuiteMessageBox uses. Without one installed, messages go to
// standard error and are answered OK (No for a question).
MessageService *messageService();
void setMessageService(MessageService *service);

QString EscapeAmpersands(const QVariant &text);

qint16 SuiteMessageBox(const QString &prompt, qint32 buttons, const QString &caption,
                       const QString &title, const QVariant &heading, int iconKind, bool flag);
