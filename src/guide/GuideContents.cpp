#include "guide/GuideContents.h"

#include "guide/GuidePages.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <algorithm>

namespace lumora {

namespace {

// pixels
constexpr QSize tile(144, 112);
constexpr int tilePicture = 54;
constexpr int gap = 8;
constexpr int margin = 16;
constexpr int mostColumns = 8;
constexpr int greetingPicture = 72;

QWidget *greeting(QWidget *parent) {
    auto *box = new QWidget(parent);
    auto *row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    auto *picture = new QLabel(box);
    picture->setPixmap(iconPixmap("lumora", greetingPicture, parent->devicePixelRatioF()));
    auto *words = new QLabel(box);
    words->setObjectName("lblGreeting");
    words->setWordWrap(true);
    row->addWidget(picture);
    row->addWidget(words, 1);
    return box;
}

} // namespace

GuideContents::GuideContents(const Texts &texts, QWidget *parent)
    : QScrollArea(parent), m_texts(texts), m_sheet(new QWidget) {
    setObjectName("GuideContents");
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    m_sheet->setBackgroundRole(QPalette::Base);
    viewport()->setBackgroundRole(QPalette::Base);
    setWidget(m_sheet);
    m_sheet->setAutoFillBackground(true);
    m_greeting = greeting(m_sheet);
    addPages();
    LoadLanguage();
}

void GuideContents::LoadLanguage() {
    m_greeting->findChild<QLabel *>("lblGreeting")->setText(guideHtml(guideLanguage(m_texts), "index.html"));
    auto button = m_buttons.cbegin();
    auto group = m_groups.cbegin();
    for (const GuidePage &page : guidePages()) {
        if (page.heading[0] != '\0') {
            (group++)->heading->setText("<h3>" + guideTitle(m_texts, page.heading).toHtmlEscaped() + "</h3>");
        }
        const QString title = guideTitle(m_texts, page.title);
        (*button)->setText(QString(title).replace("&", "&&"));
        (*button)->setAccessibleName(title);
        ++button;
    }
    placeAll();
}

void GuideContents::addPages() {
    for (const GuidePage &page : guidePages()) {
        if (page.heading[0] != '\0') {
            m_groups << Group{new QLabel(m_sheet), {}};
        }
        auto *button = new PictureButton(page.icon, PictureButton::CaptionPlace::Below, m_sheet);
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(tilePicture);
        button->installEventFilter(this);
        const QString file = page.file;
        button->setProperty("key", file);
        connect(button, &QAbstractButton::clicked, this, [this, file] { Q_EMIT chosen(file); });
        m_groups.last().pages << button;
        m_buttons << button;
    }
}

void GuideContents::placeAll() {
    const int room = viewport()->width() - 2 * margin + gap;
    m_columns = std::clamp(room / (tile.width() + gap), 1, mostColumns);
    const int width = std::min(room, m_columns * (tile.width() + gap)) - gap;
    const int left = (viewport()->width() - width) / 2;
    const bool mirrored = isRightToLeft();
    int top = margin;
    m_greeting->setGeometry(left, top, width, m_greeting->heightForWidth(width));
    top += m_greeting->height() + gap;
    for (const Group &group : m_groups) {
        group.heading->setGeometry(left, top, width, group.heading->sizeHint().height());
        top += group.heading->height();
        int column = 0;
        for (PictureButton *button : group.pages) {
            if (column == m_columns) {
                column = 0;
                top += tile.height() + gap;
            }
            const int x = left + (mirrored ? m_columns - 1 - column : column) * (tile.width() + gap);
            button->setGeometry(QRect(QPoint(x, top), tile));
            ++column;
        }
        top += tile.height() + gap;
    }
    m_sheet->setMinimumHeight(top + margin - gap);
}

void GuideContents::resizeEvent(QResizeEvent *event) {
    QScrollArea::resizeEvent(event);
    placeAll();
}

void GuideContents::takeFocus() {
    m_buttons.first()->setFocus(Qt::OtherFocusReason);
}

PictureButton *GuideContents::neighbour(const PictureButton &from, int key) const {
    const auto isThere = [key](QPoint way) {
        switch (key) {
        case Qt::Key_Left:
            return way.x() < 0 && way.y() == 0;
        case Qt::Key_Right:
            return way.x() > 0 && way.y() == 0;
        case Qt::Key_Up:
            return way.y() < 0;
        default:
            return way.y() > 0;
        }
    };
    PictureButton *nearest = nullptr;
    int shortest = 0;
    for (PictureButton *button : m_buttons) {
        const QPoint way = button->geometry().center() - from.geometry().center();
        const int length = std::abs(way.x()) + 4 * std::abs(way.y()); // the next row before the next but one
        if (isThere(way) && (nearest == nullptr || length < shortest)) {
            nearest = button;
            shortest = length;
        }
    }
    return nearest;
}

bool GuideContents::eventFilter(QObject *watched, QEvent *event) {
    const auto *from = qobject_cast<PictureButton *>(watched);
    const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(event)->key() : 0;
    const bool isArrow = key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
    if (from == nullptr || !isArrow || static_cast<QKeyEvent *>(event)->modifiers().testFlag(Qt::AltModifier)) {
        return QScrollArea::eventFilter(watched, event);
    }
    if (PictureButton *to = neighbour(*from, key)) {
        to->setFocus(Qt::TabFocusReason);
        ensureWidgetVisible(to);
    }
    return true;
}

} // namespace lumora
