#include "controls/ui/formwidgets.h"

#include "controls/ui/fieldentry.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace FormWidgets {

int widthForChars(const QLineEdit *edit, int chars)
{
    const QFontMetrics fm = edit->fontMetrics();
    // QLineEdit's size hint is seventeen "x" wide plus its frame and margins.
    const int frame = edit->sizeHint().width() - 17 * fm.horizontalAdvance(QLatin1Char('x'));
    // One character more leaves room for the cursor after the last one.
    return frame + (chars + 1) * fm.horizontalAdvance(QLatin1Char('0'));
}

QFormLayout *formLayout(QFormLayout::FieldGrowthPolicy growth, int rowSpacing)
{
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(growth);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    form->setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    form->setHorizontalSpacing(10);
    form->setVerticalSpacing(rowSpacing);
    return form;
}

QLabel *caption(const QString &text, QWidget *buddy)
{
    auto *label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

void chainTabOrder(const std::vector<QWidget *> &chain)
{
    for (std::size_t i = 1; i < chain.size(); ++i)
        QWidget::setTabOrder(chain[i - 1], chain[i]);
}

QLineEdit *textField(const QString &objectName, FieldEntry &entry,
                     std::function<void(const QString &)> edited)
{
    auto *edit = new QLineEdit;
    edit->setObjectName(objectName);
    QObject::connect(edit, &QLineEdit::textEdited, edit,
                     [&entry, edit, edited = std::move(edited)](const QString &text) {
                         entry.beforeEdit(edit);
                         edited(text);
                     });
    return edit;
}

void showText(QLineEdit *edit, const QString &text)
{
    if (edit->text() != text)
        edit->setText(text);
}

void showText(QPlainTextEdit *edit, const QString &text)
{
    if (edit->toPlainText() != text)
        edit->setPlainText(text);
}

} // namespace FormWidgets
