#include "tools/stickers/ItemBar.h"

#include "session/AppContext.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <algorithm>

namespace lumora {

namespace {

constexpr int itemGap = 6;     // pixels between it and what it is beside
constexpr int itemMargin = 4;  // pixels round the buttons
constexpr int itemButton = 52; // pixels
constexpr int itemPicture = 36;

} // namespace

QRect placeBeside(const QRectF &part, QSize size, const QRect &room) {
    const QRect taken = part.toAlignedRect().adjusted(-itemGap, -itemGap, itemGap, itemGap);
    const auto inside = [&](QPoint corner) {
        return QRect(
            QPoint(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() + 1 - size.width())),
                   std::clamp(corner.y(), room.top(), std::max(room.top(), room.bottom() + 1 - size.height()))),
            size);
    };
    const int middleX = taken.center().x() - size.width() / 2;
    const int middleY = taken.center().y() - size.height() / 2;
    const QPoint corners[] = {{middleX, taken.top() - size.height()},
                              {middleX, taken.bottom() + 1},
                              {taken.right() + 1, middleY},
                              {taken.left() - size.width(), middleY}};
    for (const QPoint corner : corners) {
        const QRect place = inside(corner);
        if (!place.intersects(taken)) {
            return place;
        }
    }
    return inside({middleX, room.top()});
}

ItemBar::ItemBar(AppContext &ctx, PhotoView &view) : QWidget(&view), m_ctx(ctx), m_view(view) {
    setObjectName("pnlSticker");
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(itemMargin, itemMargin, itemMargin, itemMargin);
    row->setSpacing(itemMargin);
    const auto add = [&](const char *name, const char *icon, void (ItemBar::*wanted)()) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
        button->setObjectName(name);
        button->setPictureSize(itemPicture);
        button->setFixedSize(itemButton, itemButton);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus on the photo
        connect(button, &QAbstractButton::clicked, this, wanted);
        row->addWidget(button);
        return button;
    };
    m_words = add("cmdStickerWords", "words", &ItemBar::wordsWanted);
    m_front = add("cmdStickerFront", "to-front", &ItemBar::frontWanted);
    m_delete = add("cmdStickerDelete", "trash", &ItemBar::deleteWanted);
    hide();
    LoadLanguage();
}

void ItemBar::LoadLanguage() {
    const auto name = [this](PictureButton &button, const char *identifier) {
        button.setToolTip(m_ctx.texts.text(identifier));
        button.setAccessibleName(button.toolTip());
    };
    name(*m_words, "StickerWords");
    name(*m_front, "StickerFront");
    name(*m_delete, "StickerDelete");
}

void ItemBar::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        LoadLanguage();
    }
    QWidget::changeEvent(event);
}

void ItemBar::showBeside(const QRectF &part, bool hasWords) {
    m_words->setVisible(hasWords);
    layout()->activate();
    setGeometry(placeBeside(part, sizeHint(), m_view.viewport()->geometry()));
    show();
    raise();
}

void ItemBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPanel(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), buttonCorner);
}

} // namespace lumora
