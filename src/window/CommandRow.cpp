#include "window/CommandRow.h"

#include "output/print/PrintButton.h"
#include "widgets/CommandBar.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

namespace lumora {

namespace {

constexpr int bigPicture = 44; // pixels
constexpr int bigButton = 60;
constexpr int toolbarPicture = 32;

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

CommandRow::CommandRow(QWidget *parent) : QWidget(parent), m_row(new QHBoxLayout(this)) {
    m_row->setContentsMargins(10, 2, 10, 2);
    m_row->setSpacing(4);
    m_open = addButton("cmdOpen", "open");
    m_save = addButton("cmdSave", "save");
    m_scan = addButton("cmdScan", "scan");
    m_print = new PrintButton("print", PictureButton::CaptionPlace::None, this);
    add(m_print, "cmdPrint");
    m_row->addSpacing(14);

    m_setZoom = new PictureButton("setzoom", PictureButton::CaptionPlace::Beside, this);
    m_setZoom->setObjectName("cmdSetZoom");
    m_setZoom->setPictureSize(toolbarPicture);
    m_setZoom->setFixedWidth(112);
    m_row->addWidget(m_setZoom);

    m_toolbar = new CommandBar("Toolbar1", this);
    int number = 0;
    for (const ToolbarRow &row : toolbarRows) {
        ++number;
        if (row.key == nullptr) {
            m_toolbar->addSeparator(number);
        } else {
            m_toolbar->addButton(number, row.key, row.icon)->setPictureSize(toolbarPicture);
        }
    }
    m_row->addWidget(m_toolbar);
    m_row->addStretch();
}

PictureButton *CommandRow::addButton(const char *name, const char *icon) {
    auto *button = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
    add(button, name);
    return button;
}

void CommandRow::add(PictureButton *button, const char *name) {
    button->setObjectName(name);
    button->setPictureSize(bigPicture);
    button->setFixedSize(bigButton, bigButton);
    m_row->addWidget(button);
}

void CommandRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), colours::paper);
    painter.fillRect(0, height() - 1, width(), 1, colours::line);
}

} // namespace lumora
