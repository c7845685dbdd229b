#include "controls/ui/suitemessagedialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

constexpr int kMinimumWidth = 380;
constexpr int kPromptMinimumWidth = 300;
constexpr int kPromptMaximumWidth = 460;
constexpr int kIconSize = 40;

QLabel *textLabel(const QString &text, const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    // Plain text: a "<" in a name must not turn the prompt into markup.
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setVisible(!text.isEmpty());
    return label;
}

} // namespace

SuiteMessageDialog::SuiteMessageDialog(const MessageRequest &request, QWidget *parent)
    : QDialog(parent), m_answer(request.buttons == ButtonsYesNo ? ResultNo
                                : request.buttons == ButtonsRetryDiscardCancel ||
                                        request.buttons == ButtonsKeepMineTakeTheirsCancel ||
                                        request.buttons == ButtonsGoToAddAnywayCancel
                                    ? ResultCancel
                                    : ResultOk),
      m_escapeAnswer(m_answer)
{
    setWindowTitle(request.caption);
    setModal(true);
    setMinimumWidth(kMinimumWidth);

    auto *icon = new QLabel(this);
    icon->setObjectName("iconLabel");
    const QStyle::StandardPixmap pixmap = request.iconKind == IconQuestion
                                              ? QStyle::SP_MessageBoxQuestion
                                              : QStyle::SP_MessageBoxInformation;
    icon->setPixmap(style()->standardIcon(pixmap, nullptr, this).pixmap(kIconSize, kIconSize));
    icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    icon->setFixedWidth(kIconSize);

    QLabel *title = textLabel(request.title, "titleLabel", this);
    QFont titleFont = title->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.2);
    title->setFont(titleFont);

    QLabel *heading = textLabel(headingDisplayText(request.heading), "headingLabel", this);
    QFont headingFont = heading->font();
    headingFont.setBold(true);
    heading->setFont(headingFont);
    heading->setForegroundRole(QPalette::PlaceholderText);

    // The suite writes line breaks as CR LF.
    QString prompt = request.prompt;
    prompt.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    QLabel *promptLabel = textLabel(prompt, "promptLabel", this);
    // Short prompts keep the dialog compact; long ones widen it up to a
    // comfortable line length before wrapping.
    const int natural =
        promptLabel->fontMetrics()
            .boundingRect(QRect(0, 0, kPromptMaximumWidth, 10000), Qt::TextWordWrap, prompt)
            .width();
    promptLabel->setMinimumWidth(qBound(kPromptMinimumWidth, natural, kPromptMaximumWidth));

    auto *texts = new QVBoxLayout;
    texts->setSpacing(6);
    texts->addWidget(title);
    texts->addWidget(heading);
    texts->addSpacing(4);
    texts->addWidget(promptLabel);
    texts->addStretch();

    auto *body = new QHBoxLayout;
    body->setSpacing(16);
    body->addWidget(icon, 0, Qt::AlignTop);
    body->addLayout(texts, 1);

    m_buttons = new QDialogButtonBox(this);
    if (request.buttons == ButtonsRetryDiscardCancel) {
        // Retry is the default; Escape and the close box go back to the change.
        QPushButton *retry = m_buttons->addButton(tr("&Retry"), QDialogButtonBox::AcceptRole);
        QPushButton *discard =
            m_buttons->addButton(tr("&Discard Changes"), QDialogButtonBox::DestructiveRole);
        QPushButton *cancel = m_buttons->addButton(QDialogButtonBox::Cancel);
        retry->setObjectName("cmdRetry");
        discard->setObjectName("cmdDiscard");
        connect(retry, &QPushButton::clicked, this, [this] { finish(ResultRetry); });
        connect(discard, &QPushButton::clicked, this, [this] { finish(ResultDiscard); });
        connect(cancel, &QPushButton::clicked, this, [this] { finish(ResultCancel); });
        retry->setDefault(true);
        retry->setFocus();
    } else if (request.buttons == ButtonsKeepMineTakeTheirsCancel) {
        // No default: the user must read whose values are lost. Escape goes back.
        QPushButton *mine = m_buttons->addButton(tr("&Keep Mine"), QDialogButtonBox::AcceptRole);
        QPushButton *theirs =
            m_buttons->addButton(tr("&Take Theirs"), QDialogButtonBox::DestructiveRole);
        QPushButton *cancel = m_buttons->addButton(QDialogButtonBox::Cancel);
        mine->setObjectName("cmdKeepMine");
        theirs->setObjectName("cmdTakeTheirs");
        connect(mine, &QPushButton::clicked, this, [this] { finish(ResultYes); });
        connect(theirs, &QPushButton::clicked, this, [this] { finish(ResultNo); });
        connect(cancel, &QPushButton::clicked, this, [this] { finish(ResultCancel); });
        cancel->setDefault(true);
        cancel->setFocus();
    } else if (request.buttons == ButtonsGoToAddAnywayCancel) {
        // Going to the entry already there is the safe choice; Escape adds nothing.
        QPushButton *go = m_buttons->addButton(tr("&Go to Existing"), QDialogButtonBox::AcceptRole);
        QPushButton *add = m_buttons->addButton(tr("&Add Anyway"), QDialogButtonBox::ActionRole);
        QPushButton *cancel = m_buttons->addButton(QDialogButtonBox::Cancel);
        go->setObjectName("cmdGoToExisting");
        add->setObjectName("cmdAddAnyway");
        connect(go, &QPushButton::clicked, this, [this] { finish(ResultYes); });
        connect(add, &QPushButton::clicked, this, [this] { finish(ResultNo); });
        connect(cancel, &QPushButton::clicked, this, [this] { finish(ResultCancel); });
        go->setDefault(true);
        go->setFocus();
    } else if (request.buttons == ButtonsYesNo) {
        QPushButton *yes = m_buttons->addButton(QDialogButtonBox::Yes);
        QPushButton *no = m_buttons->addButton(QDialogButtonBox::No);
        connect(yes, &QPushButton::clicked, this, [this] { finish(ResultYes); });
        connect(no, &QPushButton::clicked, this, [this] { finish(ResultNo); });
        yes->setDefault(true);
        yes->setFocus();
    } else {
        QPushButton *ok = m_buttons->addButton(QDialogButtonBox::Ok);
        connect(ok, &QPushButton::clicked, this, [this] { finish(ResultOk); });
        ok->setDefault(true);
        ok->setFocus();
    }

    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(20, 20, 20, 14);
    root->setSpacing(18);
    root->addLayout(body, 1);
    root->addWidget(m_buttons);
    root->setSizeConstraint(QLayout::SetMinimumSize);
}

QString SuiteMessageDialog::headingDisplayText(const QString &mnemonicText)
{
    QString shown;
    shown.reserve(mnemonicText.size());
    for (qsizetype i = 0; i < mnemonicText.size(); ++i) {
        if (mnemonicText[i] == u'&') {
            if (i + 1 < mnemonicText.size() && mnemonicText[i + 1] == u'&')
                shown += mnemonicText[++i];
            continue;
        }
        shown += mnemonicText[i];
    }
    return shown;
}

void SuiteMessageDialog::reject()
{
    finish(m_escapeAnswer);
}

void SuiteMessageDialog::finish(qint16 code)
{
    m_answer = code;
    done(code);
}
