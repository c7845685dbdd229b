#include "controls/ui/inputbox.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kMinimumWidth = 420;

} // namespace

QString InputBox::ask(const QString &prompt, const QString &title, const QString &defaultText)
{
    QDialog dialog(m_parent ? m_parent.data() : QApplication::activeWindow());
    dialog.setObjectName("inputBox");
    dialog.setWindowTitle(title);
    dialog.setModal(true);
    dialog.setMinimumWidth(kMinimumWidth);

    auto *promptLabel = new QLabel(&dialog);
    promptLabel->setObjectName("promptLabel");
    // A name typed earlier may hold "<": keep the prompt plain text.
    promptLabel->setTextFormat(Qt::PlainText);
    promptLabel->setText(prompt);
    promptLabel->setWordWrap(true);

    auto *answer = new QLineEdit(defaultText, &dialog);
    answer->setObjectName("answerEdit");
    answer->selectAll();
    promptLabel->setBuddy(answer);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);

    auto *root = new QVBoxLayout(&dialog);
    root->setContentsMargins(20, 18, 20, 14);
    root->setSpacing(10);
    root->addWidget(promptLabel);
    root->addWidget(answer);
    root->addSpacing(6);
    root->addWidget(buttons);

    answer->setFocus();
    // Cancel answers with an empty text, as the suite's input box does.
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    return answer->text();
}
