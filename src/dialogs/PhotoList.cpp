#include "dialogs/PhotoList.h"

#include "base/FileName.h"
#include "base/NameOrder.h"
#include "imaging/Scale.h"
#include "widgets/KeyboardFocus.h"
#include "widgets/Theme.h"

#include <QDir>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <filesystem>

namespace lumora {

namespace {

constexpr QSize tileSize(156, 158);    // pixels, minimum: the rest of a row widens its tiles
constexpr QSize pictureRoom(136, 106); // pixels
constexpr int longestThumbnail = 242;  // pixels: as high as a 9:16 photo is that fills the room's width
constexpr int tileGap = 5;             // pixels around each tile
constexpr int basketSize = 40;         // pixels, of the mark of what was thrown away
constexpr int keptThumbnails = 300;
constexpr int settleTime = 40; // milliseconds without scrolling before thumbnails are asked for

constexpr int pathRole = Qt::UserRole;
constexpr int thrownAwayRole = Qt::UserRole + 1;

/// Paints one photo as a card: the picture, its name beneath.
class CardDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override {
        return static_cast<const QListView *>(option.widget)->gridSize();
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        const auto *list = static_cast<const PhotoList *>(option.widget);
        const QString name = index.data().toString();
        const QString path = index.data(pathRole).toString();
        const bool unreadable = list->isUnreadable(path);
        painter->save();
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const QRect card = option.rect.adjusted(tileGap, tileGap, -tileGap, -tileGap);
        paintCard(*painter, card, option.state, unreadable);
        const QRect room(card.left() + (card.width() - pictureRoom.width()) / 2, card.top() + 8, pictureRoom.width(),
                         pictureRoom.height());
        paintPicture(*painter, room, *list, path);
        if (index.data(thrownAwayRole).toBool()) {
            const bool mirrored = option.direction == Qt::RightToLeft;
            painter->drawPixmap(mirrored ? card.left() + 6 : card.right() - 6 - basketSize,
                                room.bottom() - basketSize + 4,
                                iconPixmap("thrown-away", basketSize, list->devicePixelRatioF()));
        }
        painter->setPen(unreadable ? colours::faintInk : colours::ink);
        const QRect caption(card.left() + 6, room.bottom() + 4, card.width() - 12, card.bottom() - room.bottom() - 6);
        painter->drawText(caption, Qt::AlignCenter | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(name, Qt::ElideMiddle, caption.width()));
        painter->restore();
    }

  private:
    static void paintCard(QPainter &painter, const QRect &card, QStyle::State state, bool unreadable) {
        const bool chosen = state & QStyle::State_Selected;
        const bool hovered = !unreadable && (state & QStyle::State_MouseOver);
        painter.setPen(QPen(chosen ? colours::checkedEdge : hovered ? colours::litEdge : colours::line, 2));
        painter.setBrush(chosen ? colours::checked : hovered ? colours::hover : colours::paper);
        painter.drawRoundedRect(QRectF(card).adjusted(2, 2, -2, -2), buttonCorner, buttonCorner);
        if ((state & QStyle::State_HasFocus) && KeyboardFocus::isUsed()) {
            KeyboardFocus::paintRing(painter, card, buttonCorner);
        }
    }

    static void paintPicture(QPainter &painter, const QRect &room, const PhotoList &list, const QString &path) {
        const qreal ratio = list.devicePixelRatioF();
        QPixmap picture = list.thumbnail(path);
        if (picture.isNull()) {
            const bool missing = list.isUnreadable(path);
            picture = missing ? disabledPixmap(iconPixmap("picture-missing", 64, ratio)) : QPixmap();
        }
        if (picture.isNull()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(colours::parchment);
            painter.drawRoundedRect(room.adjusted(16, 16, -16, -16), 8, 8);
            return;
        }
        QRectF target({}, picture.deviceIndependentSize());
        target.moveCenter(QRectF(room).center());
        painter.drawPixmap(target.topLeft(), picture);
    }
};

/// The picture as large as the room, so that no format stands in an empty frame. What does not fit is cut: on both
/// sides of a wide one, mostly at the foot of a tall one, whose faces are in its upper half.
QImage filled(const QImage &picture, QSize room) {
    const QSize part = room.scaled(picture.size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    const QSize left = picture.size() - part;
    return scaled(picture.copy({QPoint(left.width() / 2, left.height() / 6), part}), room.width(), room.height());
}

QStringList sortedNames(const QString &folder, const QStringList &patterns) {
    QStringList names;
    std::error_code none;
    const std::filesystem::path path(fileNameBytes(folder).toStdString());
    for (std::filesystem::directory_iterator at(path, none), end; !none && at != end; at.increment(none)) {
        const QByteArray bytes = QByteArray::fromStdString(at->path().filename().string());
        const QString name = fileNameOf(bytes);
        std::error_code gone;
        // Patterns match no lone surrogates.
        if (QDir::match(patterns, QString::fromUtf8(bytes)) && at->is_regular_file(gone)) {
            names += name;
        }
    }
    sortByName(names);
    return names;
}

} // namespace

PhotoList::PhotoList(QWidget *parent)
    : QListWidget(parent), m_thumbnails(qRound(longestThumbnail * devicePixelRatioF())), m_kept(keptThumbnails) {
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setUniformItemSizes(true);
    setGridSize(tileSize);
    setItemDelegate(new CardDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setMouseTracking(true);
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleTime);
    connect(&m_settle, &QTimer::timeout, this, &PhotoList::wantVisible);
    connect(&m_thumbnails, &Thumbnails::made, this, &PhotoList::take);
}

QSize PhotoList::sizeHint() const {
    const QSize aroundList(340, 330); // pixels that the rest of the dialog and a rim of the screen take
    const QSize room = screen()->availableSize() - aroundList;
    return room.boundedTo({1010, 620}).expandedTo(minimumSizeHint());
}

QString PhotoList::showFolder(const QString &folder, const QStringList &patterns) {
    std::error_code error;
    const std::filesystem::directory_iterator listing(std::filesystem::path(fileNameBytes(folder).toStdString()),
                                                      error);
    if (error) {
        return QDir::toNativeSeparators(folder) + "\n\n" + QString::fromStdString(error.message());
    }
    QList<ListedPhoto> photos;
    for (const QString &name : sortedNames(folder, patterns)) {
        photos += {folder + '/' + name, name};
    }
    showPhotos(photos);
    return {};
}

void PhotoList::showPhotos(const QList<ListedPhoto> &photos) {
    m_thumbnails.cancel();
    m_kept.clear();
    m_unreadable.clear();
    clear();
    for (const ListedPhoto &photo : photos) {
        auto *item = new QListWidgetItem(photo.caption, this);
        item->setData(pathRole, photo.path);
        item->setData(thrownAwayRole, !photo.remark.isEmpty());
        item->setToolTip(photo.remark);
        if (!photo.remark.isEmpty()) {
            item->setData(Qt::AccessibleTextRole, photo.caption + ". " + photo.remark);
        }
    }
    setAccessibleDescription(count() == 0 ? m_emptyHint : QString());
    scrollToTop();
    m_settle.start();
}

void PhotoList::setEmptyHint(const QString &text, const QString &icon) {
    m_emptyHint = text;
    m_emptyIcon = icon;
    viewport()->update();
}

void PhotoList::paintEvent(QPaintEvent *event) {
    QListWidget::paintEvent(event);
    if (count() > 0 || m_emptyHint.isEmpty()) {
        return;
    }
    constexpr int iconSize = 56; // pixels
    constexpr int space = 10;
    QPainter painter(viewport());
    painter.setPen(colours::ink);
    QFont font = painter.font();
    font.setPointSizeF(14);
    painter.setFont(font);
    const QRect room = viewport()->rect().adjusted(32, 16, -32, -16);
    QRect words = painter.boundingRect(room, Qt::AlignHCenter | Qt::TextWordWrap, m_emptyHint);
    words.moveTop(room.center().y() - words.height() / 2 + (iconSize + space) / 2);
    const QPixmap icon = iconPixmap(m_emptyIcon, iconSize, devicePixelRatioF());
    painter.drawPixmap(room.center().x() - iconSize / 2, words.top() - space - iconSize, icon);
    painter.drawText(words, Qt::AlignHCenter | Qt::TextWordWrap, m_emptyHint);
}

QString PhotoList::chosenName() const {
    const QList<QListWidgetItem *> chosen = selectedItems();
    return chosen.isEmpty() ? QString() : chosen.first()->text();
}

QString PhotoList::chosenPath() const {
    const QList<QListWidgetItem *> chosen = selectedItems();
    return chosen.isEmpty() ? QString() : chosen.first()->data(pathRole).toString();
}

QPixmap PhotoList::thumbnail(const QString &path) const {
    const QPixmap *kept = m_kept.object(path);
    return kept ? *kept : QPixmap();
}

QListWidgetItem *PhotoList::itemOf(const QString &path) const {
    const QModelIndexList found = model()->match(model()->index(0, 0), pathRole, path, 1, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : item(found.first().row());
}

void PhotoList::resizeEvent(QResizeEvent *event) {
    // The view reserves the scroll bar's width even when it is hidden; one more pixel would wrap the row.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, verticalScrollBar());
    const int room = maximumViewportSize().width() - bar - 1;
    setGridSize({room / std::max(1, room / tileSize.width()), tileSize.height()});
    QListWidget::resizeEvent(event);
    m_settle.start();
}

void PhotoList::scrollContentsBy(int dx, int dy) {
    QListWidget::scrollContentsBy(dx, dy);
    m_settle.start();
}

void PhotoList::wantVisible() {
    QStringList wanted;
    const QRect view = viewport()->rect();
    for (int row = 0; row < count(); ++row) {
        const QRect place = visualItemRect(item(row));
        if (place.top() > view.bottom()) {
            break;
        }
        const QString path = item(row)->data(pathRole).toString();
        if (place.bottom() >= view.top() && !m_kept.contains(path) && !m_unreadable.contains(path)) {
            wanted += path;
        }
    }
    m_thumbnails.want(wanted);
}

void PhotoList::take(const QString &path, const QImage &thumbnail) {
    QListWidgetItem *item = itemOf(path);
    if (!item) {
        return;
    }
    if (thumbnail.isNull()) {
        m_unreadable += path;
        const bool wasChosen = item->isSelected();
        item->setSelected(false);
        item->setFlags(Qt::NoItemFlags);
        if (wasChosen) {
            Q_EMIT chosenUnreadable();
        }
    } else {
        const qreal ratio = devicePixelRatioF();
        auto pixmap = QPixmap::fromImage(filled(thumbnail, pictureRoom * ratio));
        pixmap.setDevicePixelRatio(ratio);
        m_kept.insert(path, new QPixmap(pixmap));
    }
    viewport()->update(visualItemRect(item));
}

} // namespace lumora
