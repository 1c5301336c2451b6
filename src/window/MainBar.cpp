#include "window/MainBar.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace lumora {

namespace {
constexpr int pictureSize = 24; // pixels
constexpr int buttonWidth = 52;
constexpr int barHeight = 34;
} // namespace

MainBar::MainBar(QWidget *parent) : TitleStrip(parent) {
    setObjectName("picTBar");
    setFixedHeight(barHeight);
    row()->setContentsMargins(12, 0, 4, 0);
    auto *sign = new QLabel(this);
    sign->setPixmap(iconPixmap("lumora", pictureSize, devicePixelRatioF()));
    sign->setAttribute(Qt::WA_TransparentForMouseEvents);
    row()->insertWidget(0, sign);

    const auto addButton = [this](const char *name, const char *icon, void (MainBar::*wanted)()) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
        button->setObjectName(name);
        button->setPictureSize(pictureSize);
        button->setFixedSize(buttonWidth, barHeight - 2);
        connect(button, &PictureButton::clicked, this, wanted);
        row()->addWidget(button);
        return button;
    };
    m_options = addButton("cmdOptions", "options", &MainBar::optionsWanted);
    addButton("cmdMin", "minimise", &MainBar::minimiseWanted);
    addButton("cmdExit", "exit", &MainBar::exitWanted);
}

void MainBar::paintEvent(QPaintEvent *) {
    QPainter(this).fillRect(QRect(0, height() - 1, width(), 1), colours::line); // from edge to edge
}

void MainBar::mouseDoubleClickEvent(QMouseEvent *) {
    window()->setWindowState(window()->windowState() ^ Qt::WindowMaximized);
}

} // namespace lumora
