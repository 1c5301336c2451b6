// The command bar, the floating bars, the pager: which of their parts show, and where.
#include "widgets/CommandBar.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/Pager.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace lumora {
namespace {

// --- CommandBar -----------------------------------------------------------------------------------------------------

/// 1 Zoom in, 2 Zoom out, 3 |, 4 Undo, 5 Redo, 6 |, 7 Help.
std::unique_ptr<CommandBar> someBar() {
    auto bar = std::make_unique<CommandBar>("Toolbar1");
    bar->addButton(1, "keyZoomin", "zoomin");
    bar->addButton(2, "keyZoomout", "zoomout");
    bar->addSeparator(3);
    bar->addButton(4, "keyUndo", "undo");
    bar->addButton(5, "keyRedo", "redo");
    bar->addSeparator(6);
    bar->addButton(7, "keyHelp", "help");
    bar->show();
    return bar;
}

/// What shows, from the left: the keys' first letters after "key", "|" for separators.
QString shown(const CommandBar &bar) {
    QMap<int, QString> parts;
    for (const QWidget *part : bar.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (part->isVisible()) {
            const QString key = part->property("key").toString();
            parts.insert(part->x(), key.isEmpty() ? "|" : key.mid(3));
        }
    }
    return parts.values().join(' ');
}

TEST(CommandBar, PartsAreSwitchedByTheirNumber) {
    struct Row {
        QList<int> off;
        const char *expected;
    };
    const Row rows[] = {
        {{}, "Zoomin Zoomout | Undo Redo | Help"},
        {{2}, "Zoomin | Undo Redo | Help"},
        {{3}, "Zoomin Zoomout Undo Redo | Help"},
        {{4, 5}, "Zoomin Zoomout | Help"},
        {{1, 2}, "Undo Redo | Help"},
        {{7}, "Zoomin Zoomout | Undo Redo"},
        {{1, 2, 4, 5, 7}, ""},
        {{99, 0, -1}, "Zoomin Zoomout | Undo Redo | Help"},
    };
    for (const Row &row : rows) {
        const auto bar = someBar();
        for (const int number : row.off) {
            bar->setButtonOn(number, false);
            EXPECT_FALSE(bar->isButtonOn(number));
        }
        bar->adjustSize();
        QCoreApplication::processEvents();
        EXPECT_EQ(shown(*bar).toStdString(), row.expected);
        for (const int number : row.off) {
            bar->setButtonOn(number, true);
        }
        QCoreApplication::processEvents();
        EXPECT_EQ(shown(*bar).toStdString(), rows[0].expected);
    }
}

TEST(CommandBar, TellsWhichButtonWasClicked) {
    const auto bar = someBar();
    QSignalSpy clicked(bar.get(), &CommandBar::buttonClicked);
    QSignalSpy beside(bar.get(), &CommandBar::barClicked);
    QTest::mouseClick(bar->button("keyUndo"), Qt::LeftButton);
    ASSERT_EQ(clicked.size(), 1);
    EXPECT_EQ(clicked[0][0].toString(), "keyUndo");
    bar->setButtonEnabled("keyRedo", false);
    bar->setButtonEnabled("keyNone", false);
    QTest::mouseClick(bar->button("keyRedo"), Qt::LeftButton);
    EXPECT_EQ(clicked.size(), 1);
    EXPECT_EQ(bar->button("keyundo"), nullptr) << "keys are compared with regard to case";
    bar->resize(bar->width() + 100, bar->height());
    QTest::mouseClick(bar.get(), Qt::LeftButton, {}, {bar->width() - 1, 1});
    EXPECT_EQ(beside.size(), 1);
}

TEST(CommandBar, AButtonThatIsDisabledHandsTheKeyboardToNoNeighbour) {
    const auto bar = someBar();
    bar->show();
    bar->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(bar.get()));
    bar->button("keyUndo")->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), bar->button("keyUndo"));
    bar->setButtonEnabled("keyUndo", false);
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
}

// --- FloatingToolbar ------------------------------------------------------------------------------------------------

struct Window {
    explicit Window(QSize size, int items) : bar("FT4", &window) {
        window.resize(size);
        tool.setParent(&window);
        tool.setGeometry(8, size.height() - 60, 60, 48);
        for (int n = 1; n <= items; ++n) {
            bar.addItem(QString("keySFX%1").arg(n), "tool10")->setText("Effect");
        }
        window.show();
        window.activateWindow();
        [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(&window);
    }

    int rows() const {
        QSet<int> tops;
        for (const PictureButton *item : bar.items()) {
            tops += item->y();
        }
        return static_cast<int>(tops.size());
    }
    /// The bar without its shadow.
    QRect panel() const { return bar.geometry().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin); }

    QWidget window;
    PictureButton tool;
    FloatingToolbar bar;
};

TEST(FloatingToolbar, WrapsToWhatFitsAndStaysInsideItsWindow) {
    struct Row {
        QSize window;
        int items;
        int widthTwips;
        int rows;
        int width; ///< of the panel in pixels, -1 where it is left to the items
    };
    const Row rows[] = {
        {{1920, 1000}, 12, 18300, 1, 1220}, {{1024, 700}, 12, 18300, 2, -1}, {{1024, 700}, 4, 11400, 1, 760},
        {{1024, 700}, 3, 8130, 1, 542},     {{1024, 700}, 3, 0, 1, -1},      {{480, 700}, 12, 18300, 4, -1},
    };
    for (const Row &row : rows) {
        Window parts(row.window, row.items);
        parts.bar.setWidthTwips(row.widthTwips);
        parts.bar.showBeside(&parts.tool);
        EXPECT_EQ(parts.rows(), row.rows) << row.items << " items in " << row.window.width();
        EXPECT_TRUE(parts.window.rect().contains(parts.panel())) << row.items << " items in " << row.window.width();
        EXPECT_GE(parts.panel().left(), parts.tool.geometry().right());
        QWidget column(&parts.window); // that the tool shares with another beside it
        column.setGeometry(parts.tool.x(), 0, parts.tool.width() + 60, row.window.height());
        parts.bar.setColumn(&column);
        parts.bar.showBeside(&parts.tool);
        EXPECT_GE(parts.panel().left(), column.geometry().right());
        EXPECT_TRUE(parts.window.rect().contains(parts.panel()));
        parts.bar.setColumn(nullptr);
        parts.bar.showBeside(&parts.tool);
        if (row.width >= 0) {
            EXPECT_NEAR(parts.panel().width(), row.width, row.items) << "a pixel lost by each item at most";
        }
        for (const PictureButton *item : parts.bar.items()) {
            EXPECT_EQ(item->size(), parts.bar.items()[0]->size());
            EXPECT_TRUE(parts.bar.rect().contains(item->geometry()));
        }
    }
}

TEST(FloatingToolbar, IsUsedByKeyboardAlone) {
    Window parts({1024, 700}, 12);
    parts.tool.setFocus();
    parts.bar.setItemEnabled("keySFX2", false);
    parts.bar.showBeside(&parts.tool);
    const auto focusedKey = [&] { return parts.window.focusWidget()->property("key").toString().toStdString(); };
    EXPECT_EQ(focusedKey(), "keySFX1");
    const std::pair<Qt::Key, const char *> steps[] = {
        {Qt::Key_Right, "keySFX3"}, {Qt::Key_Right, "keySFX4"}, {Qt::Key_Left, "keySFX3"}, {Qt::Key_Down, "keySFX9"},
        {Qt::Key_Down, "keySFX9"},  {Qt::Key_Up, "keySFX3"},    {Qt::Key_Left, "keySFX1"}, {Qt::Key_Left, "keySFX1"},
    };
    ASSERT_EQ(parts.rows(), 2);
    for (const auto &[key, expected] : steps) {
        QTest::keyClick(parts.window.focusWidget(), key);
        EXPECT_EQ(focusedKey(), expected) << key;
    }
    QSignalSpy clicked(&parts.bar, &FloatingToolbar::itemClicked);
    QTest::keyClick(parts.window.focusWidget(), Qt::Key_Return);
    ASSERT_EQ(clicked.size(), 1);
    EXPECT_EQ(clicked[0][0].toString(), "keySFX1");
    QTest::keyClick(parts.window.focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(parts.bar.isVisible());
    EXPECT_EQ(parts.window.focusWidget(), &parts.tool);
}

TEST(FloatingToolbar, IsAsHighAsItsPicturesAndWords) {
    Window parts({1024, 700}, 3);
    parts.bar.setPictureSize(120);
    for (PictureButton *item : parts.bar.items()) {
        item->setText("Wide");
    }
    parts.bar.showBeside(&parts.tool);
    const int square = parts.panel().height();
    QPixmap wide(240, 120);
    wide.fill(Qt::red);
    for (PictureButton *item : parts.bar.items()) {
        parts.bar.setItemPicture(item->property("key").toString(), wide);
    }
    EXPECT_EQ(parts.panel().height(), square - 60) << "no air above the words";
    const QImage item = parts.bar.items()[0]->grab().toImage();
    int lowest = 0;
    while (lowest < item.height() && item.pixelColor(item.width() / 2, lowest + 8) == QColor(Qt::red)) {
        ++lowest;
    }
    EXPECT_EQ(lowest, 60);
}

TEST(FloatingToolbar, TellsWhereThePointerRests) {
    Window parts({1024, 700}, 3);
    parts.bar.showBeside(&parts.tool);
    QSignalSpy pointed(&parts.bar, &FloatingToolbar::itemPointed);
    const auto send = [&](int item, QEvent::Type type) {
        QEnterEvent event({5, 5}, {5, 5}, {5, 5});
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(parts.bar.items()[item], type == QEvent::Enter ? &event : &leave);
    };
    send(0, QEvent::Enter);
    send(0, QEvent::Leave); // passes over it
    send(1, QEvent::Enter);
    ASSERT_TRUE(pointed.wait());
    EXPECT_EQ(pointed.takeFirst()[0].toString(), "keySFX2");
    send(1, QEvent::Leave);
    send(2, QEvent::Enter); // without the photo in between
    ASSERT_TRUE(pointed.wait());
    EXPECT_EQ(pointed.takeFirst()[0].toString(), "keySFX3");
    parts.bar.hide();
    ASSERT_EQ(pointed.size(), 1) << "at once";
    EXPECT_EQ(pointed[0][0].toString(), "");
}

TEST(FloatingToolbar, ItemsAreReachedByTheirKeys) {
    Window parts({800, 600}, 3);
    QPixmap picture(10, 10);
    picture.fill(Qt::red);
    parts.bar.setItemPicture("keySFX2", picture);
    parts.bar.setItemPicture("keySFX9", picture);
    EXPECT_TRUE(parts.bar.item("keySFX1")->picture().isNull());
    EXPECT_FALSE(parts.bar.item("keySFX2")->picture().isNull());
    EXPECT_EQ(parts.bar.item("keySFX9"), nullptr);
}

// --- Pager ----------------------------------------------------------------------------------------------------------

TEST(Pager, PagesOnlyWhatDoesNotFit) {
    Pager pager("Pager1");
    auto *column = new QWidget;
    column->setMinimumSize(60, 600);
    auto *last = new PictureButton(column);
    last->setGeometry(0, 552, 48, 48);
    pager.setWidget(column);
    pager.resize(60, 600);
    pager.show();
    auto *up = pager.findChild<PictureButton *>("cmdPageUp");
    auto *down = pager.findChild<PictureButton *>("cmdPageDown");
    EXPECT_FALSE(up->isVisible() || down->isVisible()) << "it fits to the pixel";

    pager.resize(60, 400);
    QCoreApplication::processEvents();
    EXPECT_TRUE(up->isVisible() && down->isVisible());
    EXPECT_FALSE(up->isEnabled());
    EXPECT_TRUE(down->isEnabled());
    for (int press = 0; press < 20; ++press) {
        QTest::mouseClick(down, Qt::LeftButton);
    }
    EXPECT_EQ(pager.offset(), 600 - (400 - up->height() - down->height()));
    EXPECT_TRUE(up->isEnabled());
    EXPECT_FALSE(down->isEnabled());
    QTest::mouseClick(up, Qt::LeftButton);
    EXPECT_TRUE(down->isEnabled());
    pager.scrollTo(0);
    pager.ensureVisible(last);
    EXPECT_GT(pager.offset(), 200);

    pager.resize(60, 700);
    QCoreApplication::processEvents();
    EXPECT_FALSE(up->isVisible() || down->isVisible());
    EXPECT_EQ(pager.offset(), 0);
    column->setMinimumSize(60, 900); // a button was added
    QCoreApplication::processEvents();
    EXPECT_TRUE(down->isVisible());
}

} // namespace
} // namespace lumora
