#pragma once

#include <algorithm>
#include <functional>
#include <QFormLayout>
#include <vector>

class FieldEntry;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QString;
class QWidget;

// The pieces every window's form is built from, so that the windows look and
// behave alike: box widths, form layouts, captions, tab order and the text boxes.
namespace FormWidgets {

// The width a line edit needs to show chars characters, frame included.
int widthForChars(const QLineEdit *edit, int chars);

// A two-column form of captions and fields, captions on the left.
QFormLayout *formLayout(QFormLayout::FieldGrowthPolicy growth, int rowSpacing);

// A caption whose mnemonic moves to buddy.
QLabel *caption(const QString &text, QWidget *buddy);

// Tab goes from each widget to the next, in the order given.
void chainTabOrder(const std::vector<QWidget *> &chain);

// A text box whose every change by the user enters it first (FieldEntry), so that
// the logic knows its value from before, then reaches edited.
QLineEdit *textField(const QString &objectName, FieldEntry &entry,
                     std::function<void(const QString &)> edited);

// Setting an equal text would move the cursor under the user's hands: the text is
// set only when it differs.
void showText(QLineEdit *edit, const QString &text);
void showText(QPlainTextEdit *edit, const QString &text);

// The position of object among widgets, -1 when it is not one of them.
template <class Widgets> int indexOf(const Widgets &widgets, const QObject *object)
{
    const auto at = std::find(std::begin(widgets), std::end(widgets), object);
    return at == std::end(widgets) ? -1 : int(at - std::begin(widgets));
}

} // namespace FormWidgets
