#include "window/MainBar.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <functional>

namespace lumora {

namespace {
constexpr int signSize = 28;      // pixels
constexpr int roomForLarge = 700; // height of the window, in pixels, that leaves the tools enough
constexpr int longPress = 1500;   // milliseconds: longer than a child's click, short enough to be held on purpose

/// Lumora's own picture. Holding it down is the way to the options in Simple mode, which has no button for them.
class Sign : public QLabel {
  public:
    Sign(std::function<void()> held, QWidget *parent) : QLabel(parent) {
        setObjectName("picLumora");
        m_timer.setSingleShot(true);
        m_timer.setInterval(longPress);
        connect(&m_timer, &QTimer::timeout, this, std::move(held));
    }

  protected:
    void mousePressEvent(QMouseEvent *event) override {
        if (event->button() == Qt::LeftButton) {
            m_timer.start();
        }
    }
    void mouseReleaseEvent(QMouseEvent *) override { m_timer.stop(); }
    void mouseMoveEvent(QMouseEvent *event) override {
        if (!rect().contains(event->position().toPoint())) {
            m_timer.stop();
        }
    }

  private:
    QTimer m_timer;
};
} // namespace

MainBar::MainBar(QWidget *parent) : TitleStrip(parent) {
    setObjectName("picTBar");
    setSideMargins(10, 10);
    row()->setSpacing(6);
    auto *sign = new Sign([this] { Q_EMIT optionsWanted(); }, this);
    sign->setPixmap(iconPixmap("lumora", signSize, devicePixelRatioF()));
    sign->setAlignment(Qt::AlignCenter);
    sign->setFixedSize(titleButton, titleButton);
    row()->insertWidget(0, sign);

    m_options = addButton("cmdOptions", "options");
    m_options->setLook(PictureButton::Look::Raised);
    PictureButton *minimise = addButton("cmdMin", "minimise");
    PictureButton *exit = addButton("cmdExit", "exit");
    minimise->setLook(PictureButton::Look::Raised);
    exit->setLook(PictureButton::Look::Raised);
    connect(m_options, &PictureButton::clicked, this, &MainBar::optionsWanted);
    connect(minimise, &PictureButton::clicked, this, &MainBar::minimiseWanted);
    connect(exit, &PictureButton::clicked, this, &MainBar::exitWanted);
}

void MainBar::setSimple(bool simple) {
    m_options->setVisible(!simple);
    m_simple = simple;
    fitInto(window()->height());
}

void MainBar::fitInto(int windowHeight) {
    setButtonSide(m_simple && windowHeight >= roomForLarge ? simpleButton : titleButton);
}

void MainBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), colours::parchment);
    painter.fillRect(QRect(0, height() - 1, width(), 1), colours::line); // from edge to edge
}

void MainBar::mouseDoubleClickEvent(QMouseEvent *) {
    window()->setWindowState(window()->windowState() ^ Qt::WindowMaximized);
}

} // namespace lumora
