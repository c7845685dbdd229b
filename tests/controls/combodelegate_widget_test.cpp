// The grid's name drop-down: shows the name for the stored identifier and
// writes the chosen item's identifier back.
#include "controls/ui/combodelegate.h"
#include "support/qtprinters.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QComboBox>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

namespace {

TEST(ComboDelegateTest, ShowsTheNameAndWritesTheChosenId)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), 7);
    GridColumn column;
    column.valueItems = {{12, "Child Support"}, {7, "Union Fees"}, {3, "Ward Levy"}};
    column.options.sorted = true;

    QTableView view;
    auto *delegate = new ComboDelegate(&view);
    delegate->setColumn(column);
    view.setItemDelegateForColumn(0, delegate);
    view.setModel(&model);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    EXPECT_EQ(delegate->displayText(7, QLocale()), "Union Fees");

    view.setCurrentIndex(model.index(0, 0));
    view.edit(model.index(0, 0));
    auto *combo = view.findChild<QComboBox *>("gridCombo");
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->currentText(), "Union Fees");
    // Sorted by name: one up is Child Support.
    QTest::keyClick(combo, Qt::Key_Up);
    EXPECT_EQ(model.data(model.index(0, 0)).toInt(), 12);
    EXPECT_EQ(delegate->displayText(model.data(model.index(0, 0)), QLocale()), "Child Support");
}

} // namespace
