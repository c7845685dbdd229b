#include "controls/ui/combomirror.h"

#include "controls/combolist.h"

#include <QComboBox>

void mirrorComboList(QComboBox *combo, const ComboList &list)
{
    bool same = combo->count() == list.count();
    for (int i = 0; same && i < list.count(); ++i) {
        same = combo->itemText(i) == list.item(i).text &&
               combo->itemData(i).toInt() == list.item(i).data;
    }
    if (!same) {
        combo->clear();
        for (const ComboItem &item : list.items())
            combo->addItem(item.text, item.data);
    }
    combo->setCurrentIndex(list.listIndex());
}
