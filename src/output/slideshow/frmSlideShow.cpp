#include "output/slideshow/frmSlideShow.h"

#include "base/Texts.h"
#include "output/slideshow/SlidePicture.h"
#include "output/slideshow/SlideSign.h"

#include <QKeyEvent>
#include <QScreen>

namespace lumora {

// An ordinary window, not a dialog: some desktops give dialogs no full screen.
frmSlideShow::frmSlideShow(const Texts &texts, QWidget *owner)
    : QDialog(owner, Qt::Window | Qt::FramelessWindowHint), m_texts(texts), m_show(new SlidePicture(this)),
      m_sign(new SlideSign(m_show)) {
    setObjectName("frmSlideShow");
    setWindowTitle(texts.text("Slideshow"));
    m_show->setObjectName("XShow1");
    m_show->setBackColor(QColor(0, 0, 0));
    QPalette colours = palette();
    colours.setColor(QPalette::Window, m_show->backColor());
    setPalette(colours);
    connect(m_show, &SlidePicture::clicked, this, &QDialog::reject);
}

void frmSlideShow::showModal() {
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    const QScreen *screen = parentWidget()->screen();
    setGeometry(screen->geometry());
    showFullScreen();
    activateWindow();
}

void frmSlideShow::showPaused(bool paused) {
    m_sign->flash(paused ? SlideSign::Kind::Pause : SlideSign::Kind::Play,
                  m_texts.text(paused ? "SlideshowPaused" : "SlideshowGoesOn"));
}

void frmSlideShow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape) {
        reject();
    } else if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        Q_EMIT pauseWanted();
    }
    event->accept(); // all other keys do nothing
}

void frmSlideShow::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    m_show->setGeometry(rect());
    Q_EMIT roomChanged();
}

} // namespace lumora
