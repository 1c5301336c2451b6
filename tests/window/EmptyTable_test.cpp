// The empty table: its folder is fully visible and on top at every size.
#include "window/EmptyTable.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(EmptyTable, TheFolderGrowsWithTheTableAndOpens) {
    EmptyTable table;
    auto *folder = table.findChild<QAbstractButton *>("cmdOpenFirst");
    int side = 0;
    for (const QSize size : {QSize(260, 230), QSize(1024, 640), QSize(1600, 1000), QSize(3000, 2000)}) {
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
        table.resize(size);
        table.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&table));
        EXPECT_TRUE(table.rect().contains(folder->geometry()));
        EXPECT_GE(folder->width(), side);
        side = folder->width();
        QSignalSpy opened(&table, &EmptyTable::openWanted);
        // Through the window, so that a widget above the folder would receive it.
        QTest::mouseClick(table.windowHandle(), Qt::LeftButton, {}, folder->geometry().center());
        EXPECT_EQ(opened.count(), 1);
    }
    EXPECT_GT(side, 300);
}

} // namespace
} // namespace lumora
