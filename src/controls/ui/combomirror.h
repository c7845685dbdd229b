#pragma once

class ComboList;
class QComboBox;

// Shows a ComboList in a non-editable combo box. The items are replaced only
// when they differ, so a long name list is not rebuilt on every move; the
// selection always follows the list.
void mirrorComboList(QComboBox *combo, const ComboList &list);
