// What happens to captions that are too long, panels that are dragged, windows that are resized, and dialogs on screens
// that are too small.
#include "widgets/BorderlessDialog.h"
#include "widgets/FittedText.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/KeyboardFocus.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/Theme.h"
#include "widgets/WindowSizer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSlider>
#include <QTest>
#include <QTextLayout>
#include <QToolTip>
#include <gtest/gtest.h>

namespace lumora {
namespace {

TEST(FittedText, WrapsThenShrinksThenEndsInAnEllipsis) {
    const QFont font = QApplication::font();
    const QFontMetrics metrics(font);
    const QString text = "several words in a row";
    const int wide = metrics.horizontalAdvance(text) + 2;
    const int high = metrics.height();
    const struct {
        const char *what;
        QSize place;
        bool whole, smaller, wraps;
    } cases[] = {
        {"room enough", {wide, high}, true, false, false},
        {"two lines", {wide * 2 / 3, 2 * high + 2}, true, false, true},
        {"a little too long", {wide * 9 / 10, high}, true, true, false},
        {"much too long", {wide / 2, high}, false, true, false},
        {"much too long for two lines", {wide / 4, 2 * high}, false, true, true},
    };
    for (const auto &one : cases) {
        const FittedText fitted = fitText(text, font, one.place, Qt::AlignVCenter);
        EXPECT_EQ(fitted.whole, one.whole) << one.what;
        EXPECT_EQ(fitted.font.pointSizeF() < font.pointSizeF(), one.smaller) << one.what;
        EXPECT_GE(fitted.font.pointSizeF(), font.pointSizeF() * smallestLetters - 0.01) << one.what;
        EXPECT_EQ((fitted.flags & Qt::TextWordWrap) != 0, one.wraps) << one.what;
        EXPECT_EQ(fitted.text.endsWith(QChar(0x2026)), !one.whole) << one.what;
        const QRect drawn =
            QFontMetrics(fitted.font).boundingRect(QRect(QPoint(), one.place), fitted.flags, fitted.text);
        EXPECT_LE(drawn.width(), one.place.width() + 1) << one.what;
    }
}

TEST(FittedText, JapaneseLinesEndAtBlanksWhereThereIsRoom) {
    applyTheme(*qApp);
    const QFont font = QApplication::font();
    const int letter = QFontMetrics(font).horizontalAdvance(QString::fromUtf8("あ"));
    const QString text = QString::fromUtf8("だれかが にっこりする しゃしんを ひらきます。");
    const auto endsOfLines = [&](int letters, int lines) {
        const QSize place(letters * letter, lines * QFontMetrics(font).height());
        const FittedText fitted = fitText(text, font, place, Qt::TextWordWrap);
        QTextLayout layout(fitted.text, fitted.font);
        QString ends;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(place.width());
            ends += fitted.text[line.textStart() + line.textLength() - 1];
        }
        return ends;
    };
    EXPECT_EQ(endsOfLines(8, 4), QString::fromUtf8("   。"));
    EXPECT_FALSE(endsOfLines(8, 3).startsWith("  ")) << "no room for words";
}

TEST(FittedText, LongCaptionsDoNotWidenAWindow) {
    applyTheme(*qApp);
    QWidget window;
    auto *row = new QHBoxLayout(&window);
    auto *label = new QLabel(QString("a title of very many letters ").repeated(5));
    auto *box = new QCheckBox(QString("a choice of very many letters ").repeated(5));
    auto *exit = new PictureButton("exit", PictureButton::CaptionPlace::Beside);
    exit->setText("Exit");
    for (QWidget *part : std::initializer_list<QWidget *>{label, box, exit}) {
        row->addWidget(part);
    }
    window.resize(500, 80);
    window.show();
    EXPECT_EQ(window.width(), 500);
    EXPECT_TRUE(window.rect().contains(exit->geometry()));
    for (QWidget *control : std::initializer_list<QWidget *>{label, box}) {
        EXPECT_TRUE(isShortened(*control));
        QHelpEvent tip(QEvent::ToolTip, control->rect().center(), control->mapToGlobal(control->rect().center()));
        QCoreApplication::sendEvent(control, &tip);
        EXPECT_TRUE(QToolTip::text().contains("letters a ")) << qPrintable(QToolTip::text());
        QToolTip::hideText();
    }
}

class SmallScreenDialog : public BorderlessDialog {
  public:
    explicit SmallScreenDialog(int rows) : BorderlessDialog("frmTall", nullptr) {
        for (int i = 0; i < rows; ++i) {
            auto *label = new QLabel("row");
            label->setFixedHeight(100);
            body()->addWidget(label);
        }
        auto *answers = new QHBoxLayout;
        answers->addWidget(yes);
        addFoot(answers);
    }
    PictureButton *yes = new PictureButton("ok", PictureButton::CaptionPlace::Beside, this);
};

TEST(BorderlessDialog, ScrollsAboveItsAnswersWhereTheScreenIsTooSmall) {
    SmallScreenDialog small(2);
    small.show();
    EXPECT_EQ(small.findChild<QScrollArea *>(), nullptr);
    SmallScreenDialog tall(30);
    tall.show();
    ASSERT_NE(tall.findChild<QScrollArea *>(), nullptr);
    const QRect room = tall.screen()->availableGeometry();
    EXPECT_LE(tall.height(), room.height() + 2 * shadowMargin);
    const QRect button(tall.yes->mapToGlobal(QPoint()), tall.yes->size());
    EXPECT_TRUE(room.contains(button));
    EXPECT_TRUE(tall.yes->isVisible());
    tall.hide();
    tall.show();
    EXPECT_EQ(tall.findChildren<QScrollArea *>().size(), 1);
    EXPECT_LE(tall.height(), room.height() + 2 * shadowMargin);
}

TEST(WindowSizer, EdgesMoveWithThePointerUnlessTheWindowIsMaximised) {
    QWidget window;
    window.setMinimumSize(200, 150);
    WindowSizer::install(&window);
    window.setGeometry(100, 100, 400, 300);
    window.show();
    const int half = WindowSizer::width / 2;
    const struct {
        QPoint from, by;
        QRect expected;
    } cases[] = {
        {{400 - half, 150}, {60, 30}, {100, 100, 460, 300}}, {{half, 150}, {-40, 9}, {60, 100, 440, 300}},
        {{200, 300 - half}, {5, 50}, {100, 100, 400, 350}},  {{400 - half, 300 - half}, {10, 20}, {100, 100, 410, 320}},
        {{half, half}, {900, 900}, {300, 250, 200, 150}}, // not below the least size
    };
    for (const auto &one : cases) {
        window.setGeometry(100, 100, 400, 300);
        QWidget *edge = window.childAt(one.from);
        ASSERT_NE(edge, nullptr);
        const QPoint local = edge->mapFrom(&window, one.from);
        const auto send = [&](QEvent::Type type, QPoint by, Qt::MouseButton button) {
            QMouseEvent event(type, local + by, window.mapToGlobal(one.from) + by, button, Qt::LeftButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(edge, &event);
        };
        const QPoint start = window.mapToGlobal(one.from);
        send(QEvent::MouseButtonPress, {}, Qt::LeftButton);
        QMouseEvent move(QEvent::MouseMove, local + one.by, start + one.by, Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(edge, &move);
        send(QEvent::MouseButtonRelease, {}, Qt::LeftButton);
        EXPECT_EQ(window.geometry(), one.expected);
    }
    EXPECT_EQ(window.contentsMargins().left(), WindowSizer::width);
    window.showMaximized();
    EXPECT_EQ(window.contentsMargins().left(), 0);
    EXPECT_EQ(window.childAt(1, 150), nullptr);
}

TEST(PanelDragger, BarsAndPanelsFollowThePointerInsideTheWindow) {
    QWidget window;
    window.resize(800, 600);
    QWidget button(&window);
    button.setGeometry(0, 200, 100, 50);
    FloatingToolbar bar("FT1", &window);
    bar.addItem("one", "tool2")->setText("One");
    SlidingPanel panel("pnl", "cmdExitPnl", &window);
    window.show();
    bar.showBeside(&button);
    const auto drag = [](QWidget &which, QPoint from, QPoint by) {
        QTest::mousePress(&which, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + by, which.mapToGlobal(from + by), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&which, &move);
        QTest::mouseRelease(&which, Qt::LeftButton, {}, from);
    };
    const QPoint edge(shadowMargin + 4, bar.height() / 2);
    const QPoint before = bar.pos();
    drag(bar, edge, {90, -40});
    EXPECT_EQ(bar.pos(), before + QPoint(90, -40));
    drag(bar, edge, {5000, 5000});
    EXPECT_TRUE(window.rect().contains(
        bar.geometry().marginsRemoved({shadowMargin, shadowMargin, shadowMargin, shadowMargin})));
    panel.slideIn();
    QTRY_COMPARE(panel.geometry().bottom(), window.height() - 1);
    const int rest = panel.y();
    drag(panel, {40, shadowMargin + 4}, {30, -120});
    EXPECT_EQ(panel.pos(), QPoint(0, rest - 120));
    panel.slideOut();
    panel.slideIn();
    QTRY_COMPARE(panel.y(), rest);
}

TEST(KeyboardFocus, TheRingIsThereWhileTheKeyboardIsUsedAndNotTheMouse) {
    applyTheme(*qApp);
    QWidget window;
    window.resize(300, 400);
    QWidget *controls[] = {new PictureButton("exit", PictureButton::CaptionPlace::None, &window),
                           new QPushButton("OK", &window),
                           new QCheckBox("Show", &window),
                           new QSlider(Qt::Horizontal, &window),
                           new QLineEdit(&window),
                           new QComboBox(&window)};
    int top = 20;
    for (QWidget *control : controls) {
        control->setGeometry(20, top, 200, 50);
        top += 60;
    }
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    // Whether the line of the ring is there, a pixel outside the control.
    const auto ringed = [&](const QWidget *control) {
        const QPoint at(control->geometry().center().x(), control->y() - KeyboardFocus::ringWidth + 1);
        return window.grab().toImage().pixel(at) == colours::sky.darker(130).rgb();
    };
    QTest::mouseClick(controls[0], Qt::LeftButton);
    controls[0]->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(ringed(controls[0])) << "the program gave the focus, no key did";
    QTest::keyClick(controls[0], Qt::Key_A);
    EXPECT_FALSE(ringed(controls[0])) << "a letter";
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(controls[i + 1]->metaObject()->className());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(controls[i + 1]->hasFocus());
        EXPECT_TRUE(ringed(controls[i + 1]));
        EXPECT_FALSE(ringed(controls[i]));
    }
    QTest::mousePress(&window, Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_FALSE(ringed(controls[5]));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_TRUE(ringed(controls[5]));
    window.setFocusPolicy(Qt::StrongFocus);
    window.setFocus();
    EXPECT_FALSE(ringed(controls[5])) << "only controls have one";
    QTest::mousePress(&window, Qt::LeftButton, {}, QPoint(2, 2)); // as the next test expects it
}

} // namespace
} // namespace lumora
