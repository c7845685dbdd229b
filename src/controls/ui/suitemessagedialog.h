#pragma once

#include "messages/messageservice.h"

#include <QDialog>

class QDialogButtonBox;
class QLabel;

// The suite's message dialog: caption, bold title, optional heading, prompt,
// OK or Yes/No, and an icon for the message's kind. It closes with the
// platform's button code (1 OK, 6 Yes, 7 No); Escape and the close box give
// OK, or No for a question.
class SuiteMessageDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SuiteMessageDialog(const MessageRequest &request, QWidget *parent = nullptr);

    // The code of the button that closed the dialog, as exec() also returns.
    qint16 answer() const { return m_answer; }

    // A heading arrives in the dialog's mnemonic form ("&&" for "&"); this is
    // the text shown: doubled ampersands as one, lone ones dropped, as no
    // letter of a heading is underlined.
    static QString headingDisplayText(const QString &mnemonicText);

    void reject() override;

private:
    void finish(qint16 code);

    qint16 m_answer;
    qint16 m_escapeAnswer;
    QDialogButtonBox *m_buttons = nullptr;
};
