#include "widgets/BorderlessDialog.h"

#include "widgets/Compositing.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

BorderlessDialog::BorderlessDialog(const QString &name, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::FramelessWindowHint), m_translucent(translucencyWorks()),
      m_strip(new TitleStrip(this)), m_body(new QVBoxLayout) {
    setObjectName(name);
    setAttribute(Qt::WA_TranslucentBackground, m_translucent);
    const int margin = (m_translucent ? shadowMargin : 0) + windowBorder;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->addWidget(m_strip);
    column->addLayout(m_body, 1);
    m_body->setContentsMargins(18, 14, 18, 18);
    m_body->setSpacing(12);
    connect(this, &QWidget::windowTitleChanged, m_strip->lblCaption(), &QLabel::setText);
}

void BorderlessDialog::addFoot(QLayout *answers) {
    m_answers = answers;
    m_body->addLayout(answers);
}

QRect BorderlessDialog::surface() const {
    const int margin = m_translucent ? shadowMargin : 0;
    return rect().adjusted(margin, margin, -margin, -margin);
}

void BorderlessDialog::showEvent(QShowEvent *event) {
    if (windowTitle().isEmpty()) {
        setWindowTitle(m_strip->lblCaption()->text());
    }
    if (!event->spontaneous()) {
        settle();
    }
    QDialog::showEvent(event);
    activateWindow();
}

void BorderlessDialog::settle() {
    const QWidget *owner = parentWidget() ? parentWidget()->window() : nullptr;
    const bool ownerShown = owner && owner->isVisible() && !owner->isMinimized();
    const QScreen *screen = ownerShown ? owner->screen() : QGuiApplication::primaryScreen();
    // The shadow may leave the screen, the surface may not.
    const int shade = m_translucent ? shadowMargin : 0;
    const QRect room = screen->availableGeometry().adjusted(-shade, -shade, shade, shade);
    QSize wanted = m_area == nullptr ? sizeHint() : size();
    QSize least = layout()->totalMinimumSize();
    if (layout()->hasHeightForWidth()) {
        least.setHeight(layout()->totalHeightForWidth(std::min(wanted.width(), room.width())));
    }
    if (m_area == nullptr && (least.width() > room.width() || least.height() > room.height())) {
        wanted = {std::max(wanted.width(), least.width()) + makeScroll(), room.height()};
    }
    QRect place({}, wanted.boundedTo(room.size()).expandedTo(minimumSize()).boundedTo(maximumSize()));
    place.moveCenter(ownerShown ? owner->frameGeometry().center() : room.center());
    // What is larger than the screen keeps its title strip on it.
    place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() + 1 - place.width())));
    place.moveTop(std::max(room.top(), std::min(place.top(), room.bottom() + 1 - place.height())));
    setGeometry(place);
}

/// Its texts or letters have changed: as large as it needs to be now, round the same centre.
void BorderlessDialog::grow() {
    m_isGrowing = false;
    if (!isVisible()) {
        return;
    }
    layout()->activate();
    settle();
    QRect place = geometry();
    place.moveCenter(m_centre);
    const QRect room = this->screen()->availableGeometry();
    place.moveLeft(std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - place.width())));
    place.moveTop(std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom() + 1 - place.height())));
    setGeometry(place);
}

void BorderlessDialog::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange) {
        growSoon();
    }
    QDialog::changeEvent(event);
}

void BorderlessDialog::growSoon() {
    if (isVisible() && !m_isGrowing) {
        m_isGrowing = true;
        m_centre = geometry().center(); // before the layout makes it larger
        QMetaObject::invokeMethod(this, &BorderlessDialog::grow, Qt::QueuedConnection);
    }
}

/// The screen is too small for everything at once: all but the title strip and the answers moves into a scroll area.
int BorderlessDialog::makeScroll() {
    auto *column = static_cast<QVBoxLayout *>(layout());
    QMargins margins = m_body->contentsMargins();
    if (m_answers != nullptr) {
        m_body->removeItem(m_answers);
        m_answers->setContentsMargins(margins.left(), 8, margins.right(), margins.bottom());
        margins.setBottom(0);
        m_body->setContentsMargins(margins);
    }
    column->removeItem(m_body);
    auto *sheet = new QWidget;
    sheet->setLayout(m_body);
    m_area = new QScrollArea(this);
    m_area->setObjectName("DialogBody");
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setWidget(sheet);
    sheet->setAutoFillBackground(false);
    m_area->viewport()->setAutoFillBackground(false);
    column->addWidget(m_area, 1);
    if (m_answers != nullptr) {
        column->addLayout(m_answers);
    }
    setMinimumSize(0, 0); // the layout's own from now on
    column->activate();
    return m_area->verticalScrollBar()->sizeHint().width();
}

void BorderlessDialog::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    if (surface().bottom() + y() > screen()->availableGeometry().bottom()) {
        growSoon(); // controls have come that need more room than there is below
    }
    if (!m_translucent) {
        setMask(windowShape(size()));
    }
}

void BorderlessDialog::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    paintWindow(painter, rect(), m_translucent);
}

void BorderlessDialog::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (isVisible() && m_defaultButton && m_defaultButton->isEnabled()) {
            m_defaultButton->click();
        }
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace lumora
