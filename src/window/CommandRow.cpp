#include "window/CommandRow.h"

#include "output/print/PrintButton.h"
#include "widgets/Accessibility.h"
#include "widgets/CommandBar.h"
#include "widgets/Motion.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVariantAnimation>
#include <algorithm>

namespace lumora {

namespace {

constexpr int spacing = 4;
constexpr int sideMargin = 10;
constexpr int groupGap = 14;
constexpr int tightMargin = 4;
constexpr int savedTime = 600;      // milliseconds
constexpr int narrowestButton = 40; // in the narrowest window

/// Toolbar1 in its order. A row without a key is a separator. Simple mode uses the numbers: 9 stays visible, 10 to 16
/// (e-mail, copy, paste) are hidden, 17 is the slideshow, 23 ends the row.
struct ToolbarRow {
    const char *key;
    const char *icon;
};
const ToolbarRow toolbarRows[] = {
    {"keyZoomin", "zoomin"},
    {"keyZoomout", "zoomout"},
    {nullptr, nullptr},
    {"keyUndo", "undo"},
    {"keyRedo", "redo"},
    {nullptr, nullptr},
    {nullptr, nullptr},
    {nullptr, nullptr},
    {nullptr, nullptr},
    {"keyEmail", "email"},
    {nullptr, nullptr},
    {"keyCopy", "copy"},
    {nullptr, nullptr},
    {"keyPaste", "paste"},
    {nullptr, nullptr},
    {nullptr, nullptr},
    {"keySlideShow", "slideshow"},
    {nullptr, nullptr},
    {"keyIdeas", "ideas"},
    {nullptr, nullptr},
    {"keyHelp", "help"},
    {nullptr, nullptr},
    {nullptr, nullptr},
};

} // namespace

/// Pixels.
struct CommandRow::Measures {
    int bigButton, bigPicture;
    int button, picture; ///< of the toolbar
    int zoomButton;
};

const CommandRow::Measures &CommandRow::measures() const {
    static constexpr Measures usual{60, 44, smallestButton, 32, 112};
    static constexpr Measures simple{simpleButton, 46, simpleButton, 40, 128};
    return m_simple ? simple : usual;
}

CommandRow::CommandRow(QWidget *parent) : QWidget(parent), m_row(new QHBoxLayout(this)) {
    m_row->setContentsMargins(sideMargin, 2, sideMargin, 2);
    m_row->setSpacing(spacing);
    setAccessibleRole(*this, QAccessible::ToolBar);
    m_open = addButton("cmdOpen", "open");
    m_save = addButton("cmdSave", "save");
    m_scan = addButton("cmdScan", "scan");
    m_print = new PrintButton("print", PictureButton::CaptionPlace::None, this);
    add(m_print, "cmdPrint");
    m_row->addSpacing(groupGap);

    m_setZoom = new PictureButton("setzoom", PictureButton::CaptionPlace::Beside, this);
    m_setZoom->setObjectName("cmdSetZoom");
    m_setZoom->setPictureSize(measures().picture);
    m_setZoom->setFixedWidth(measures().zoomButton);
    m_row->addWidget(m_setZoom);

    m_toolbar = new CommandBar("Toolbar1", this);
    int number = 0;
    for (const ToolbarRow &row : toolbarRows) {
        ++number;
        if (row.key == nullptr) {
            m_toolbar->addSeparator(number);
        } else {
            m_toolbar->addButton(number, row.key, row.icon)->setPictureSize(measures().picture);
        }
    }
    m_row->addWidget(m_toolbar);
    m_row->addStretch();
}

QSize CommandRow::minimumSizeHint() const {
    const int buttons = 5 + m_toolbar->buttonsShown();
    return {buttons * narrowestButton + 2 * tightMargin, m_row->minimumSize().height()};
}

void CommandRow::setTight(int buttonWidth) {
    m_tight = buttonWidth;
    const Measures &size = measures();
    const bool tight = buttonWidth > 0;
    const int margin = tight ? tightMargin : sideMargin;
    m_row->setContentsMargins(margin, 2, margin, 2);
    m_row->setSpacing(tight ? 0 : spacing);
    for (PictureButton *button : {m_open, m_save, m_scan, static_cast<PictureButton *>(m_print)}) {
        button->setFixedSize(tight ? QSize(buttonWidth, size.button) : QSize(size.bigButton, size.bigButton));
        button->setPictureSize(tight ? size.picture : size.bigPicture);
    }
    m_setZoom->setFixedWidth(tight ? buttonWidth : size.zoomButton);
    m_setZoom->setCaptionPlace(tight ? PictureButton::CaptionPlace::None : PictureButton::CaptionPlace::Beside);
    m_toolbar->setTight(buttonWidth);
}

void CommandRow::setSimple(bool simple) {
    m_simple = simple;
    m_toolbar->setButtonSize(measures().button, measures().picture);
    m_setZoom->setLeastSide(measures().button);
    m_setZoom->setPictureSize(measures().picture);
    setTight(m_tight);
    settle();
}

void CommandRow::settle() {
    const Measures &size = measures();
    int big = 0;
    for (const QWidget *button : {m_open, m_save, m_scan, static_cast<PictureButton *>(m_print)}) {
        big += button->isHidden() ? 0 : 1;
    }
    const int small = m_toolbar->buttonsShown();
    // A toolbar with a separator at every second button, roughly as it is.
    const int usual = 2 * sideMargin + big * (size.bigButton + spacing) + groupGap + size.zoomButton + spacing +
                      small * (size.button + 2) + small / 2 * 14;
    const int each = (width() - 2 * tightMargin - groupGap) / (big + 1 + small);
    const int tight = usual <= width() ? 0 : std::clamp(each, narrowestButton, size.button);
    if (tight != m_tight) {
        setTight(tight);
    }
}

void CommandRow::showSaved() {
    if (!motionWanted()) {
        return;
    }
    auto *movement = new QVariantAnimation(m_save); // smaller, a little too small again, and back
    movement->setDuration(savedTime);
    movement->setKeyValues({{0, 1.0}, {0.3, 0.55}, {0.6, 1.0}, {0.8, 0.85}, {1, 1.0}});
    connect(movement, &QVariantAnimation::valueChanged, this, [this](const QVariant &scale) {
        m_save->setPictureSize(qRound((m_tight > 0 ? measures().picture : measures().bigPicture) * scale.toDouble()));
    });
    movement->start(QAbstractAnimation::DeleteWhenStopped);
}

void CommandRow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    settle();
}

bool CommandRow::event(QEvent *event) {
    if (event->type() == QEvent::LayoutRequest) {
        settle(); // a button has come or gone
    }
    return QWidget::event(event);
}

PictureButton *CommandRow::addButton(const char *name, const char *icon) {
    auto *button = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
    add(button, name);
    return button;
}

void CommandRow::add(PictureButton *button, const char *name) {
    button->setObjectName(name);
    button->setPictureSize(measures().bigPicture);
    button->setFixedSize(measures().bigButton, measures().bigButton);
    m_row->addWidget(button);
}

void CommandRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), colours::parchment);
    painter.fillRect(0, height() - 1, width(), 1, colours::line);
}

} // namespace lumora
