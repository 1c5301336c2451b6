// What the script player calls out of view: a check that could not fail would prove nothing.
#include "Fits.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora::play {
namespace {

TEST(Fits, FindsWhatIsOutOfViewOrCut) {
    QWidget window;
    window.setObjectName("frmSmall");
    window.setGeometry(40, 40, 300, 200);
    auto *good = new QPushButton("Good", &window);
    good->setGeometry(10, 10, 80, smallestTarget);
    auto *scrolled = new QScrollArea(&window);
    scrolled->setGeometry(10, 60, 100, 60);
    auto *sheet = new QWidget;
    sheet->resize(70, 500);
    (new QPushButton("Below", sheet))->setGeometry(0, 450, 70, smallestTarget);
    scrolled->setWidget(sheet);
    window.show();
    EXPECT_EQ(lookWhatFits().problems, QStringList());

    const QString forChildren = lookWhatFits(simpleTarget).problems.join('\n');
    EXPECT_TRUE(forChildren.contains("80 x 44") && forChildren.contains("70 x 44")) << qPrintable(forChildren);

    auto *beyond = new QPushButton("Beyond", &window);
    beyond->setObjectName("cmdBeyond");
    beyond->setGeometry(250, 10, 80, 40);
    auto *covering = new QPushButton("Covering", &window);
    covering->setObjectName("cmdCovering");
    covering->setGeometry(60, 20, 90, 40);
    auto *cut = new QLabel("<p>Rich words that need three lines at the least, and have one</p>", &window);
    cut->setObjectName("lblCut");
    cut->setWordWrap(true);
    cut->setGeometry(150, 120, 100, 20);
    auto *narrow = new QPushButton("A very long caption", &window);
    narrow->setObjectName("cmdNarrow");
    narrow->setGeometry(10, 150, 30, 30);
    for (QWidget *added : std::initializer_list<QWidget *>{beyond, covering, cut, narrow}) {
        added->show();
    }
    const QString problems = lookWhatFits().problems.join('\n');
    for (const char *name : {"cmdBeyond", "cmdCovering", "lblCut", "cmdNarrow"}) {
        EXPECT_TRUE(problems.contains(name)) << name << " in " << qPrintable(problems);
    }
    EXPECT_FALSE(problems.contains("Below"));
    EXPECT_EQ(lookWhatFits().shortened, QStringList());

    auto *list = new QComboBox(&window);
    list->setObjectName("cboCut");
    list->addItem("A choice of many words");
    list->setGeometry(110, 150, 60, 30);
    auto *field = new QLineEdit(&window);
    field->setObjectName("txtCut");
    field->setPlaceholderText("What is to be typed here");
    field->setGeometry(180, 150, 60, 30);
    for (QWidget *added : std::initializer_list<QWidget *>{list, field}) {
        added->show();
    }
    scrolled->setObjectName("areaWide");
    sheet->resize(300, 500);
    const QString shortened = lookWhatFits().shortened.join('\n');
    EXPECT_TRUE(shortened.contains("cboCut") && shortened.contains("txtCut") && shortened.contains("areaWide"))
        << qPrintable(shortened);
    window.move(5000, 40);
    EXPECT_TRUE(lookWhatFits().problems.contains("frmSmall leaves the screen"));
}

} // namespace
} // namespace lumora::play
