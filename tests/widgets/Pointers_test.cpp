// Large pointers on what asks for one of the system's, and the way back.
#include "widgets/Pointers.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(Pointers, AreLargeWhereverTheSystemsWouldShow) {
    QWidget window, handle(&window), plain(&window), hidden(&window);
    QLineEdit field(&window);
    handle.setCursor(Qt::SizeHorCursor);
    hidden.setCursor(Qt::BlankCursor);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const auto side = [](const QWidget &widget) { return widget.cursor().pixmap().deviceIndependentSize().width(); };
    setLargePointers(true);
    for (const QWidget *widget : std::initializer_list<QWidget *>{&window, &handle, &plain, &field}) {
        EXPECT_EQ(side(*widget), 64);
    }
    EXPECT_EQ(window.cursor().hotSpot(), QPoint(14, 6));
    EXPECT_EQ(hidden.cursor().shape(), Qt::BlankCursor);
    EXPECT_EQ(pointerScale(), 2);

    QWidget later;
    later.show();
    EXPECT_EQ(side(later), 64);
    plain.setCursor(Qt::OpenHandCursor);
    EXPECT_EQ(side(plain), 64);
    QPixmap drawing(16, 16);
    drawing.fill(Qt::red);
    later.setCursor(Qt::OpenHandCursor);
    later.setCursor(QCursor(drawing)); // as tools do between two of the system's
    handle.unsetCursor();
    EXPECT_EQ(side(handle), 64);
    EXPECT_FALSE(handle.testAttribute(Qt::WA_SetCursor));

    setLargePointers(false);
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(plain.cursor().shape(), Qt::OpenHandCursor);
    EXPECT_EQ(field.cursor().shape(), Qt::IBeamCursor);
    EXPECT_EQ(later.cursor().pixmap().cacheKey(), drawing.cacheKey());
    EXPECT_EQ(pointerScale(), 1);
}

TEST(Pointers, EachHasADrawing) {
    for (const Qt::CursorShape shape : {Qt::ArrowCursor, Qt::PointingHandCursor, Qt::IBeamCursor, Qt::CrossCursor,
                                        Qt::OpenHandCursor, Qt::ClosedHandCursor, Qt::SizeAllCursor, Qt::SizeHorCursor,
                                        Qt::SizeVerCursor, Qt::SizeFDiagCursor, Qt::SizeBDiagCursor}) {
        for (const double devicePixels : {1.0, 1.8}) {
            const QPixmap picture = largePointer(shape, devicePixels).pixmap();
            EXPECT_NEAR(picture.deviceIndependentSize().width(), 64, 0.6) << shape;
            EXPECT_TRUE(picture.hasAlpha()) << shape;
        }
    }
    EXPECT_EQ(largePointer(Qt::BlankCursor, 1).shape(), Qt::BlankCursor);
}

} // namespace
} // namespace lumora
