#include "window/StepStrip.h"

#include "base/Texts.h"
#include "document/PhotoDocument.h"
#include "widgets/KeyboardFocus.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace lumora {

namespace {

constexpr QSize stepTile(120, 96); // pixels
constexpr QSize stepRoom(100, 74); // pixels, for the picture
constexpr int stepGap = 4;         // pixels around each tile
constexpr int badgeSize = 30;      // pixels
constexpr double undoneOpacity = 0.35;
constexpr int stripMargin = 6; // pixels
constexpr int busyWait = 50;   // milliseconds between two looks while the photo changes

constexpr int idRole = Qt::UserRole;
constexpr int smallRole = Qt::UserRole + 1;
constexpr int iconRole = Qt::UserRole + 2;
constexpr int placeRole = Qt::UserRole + 3; ///< below 0 before the picture of now, above 0 undone

class StepDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override { return stepTile; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        const int place = index.data(placeRole).toInt();
        const bool hovered = option.state & QStyle::State_MouseOver;
        const QRect card = option.rect.adjusted(stepGap, stepGap, -stepGap, -stepGap);
        const qreal ratio = option.widget->devicePixelRatioF();
        painter->save();
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter->setPen(QPen(place == 0 ? colours::sky
                             : hovered  ? colours::litEdge
                                        : colours::line,
                             place == 0 ? 3 : 2));
        painter->setBrush(place == 0 ? colours::checked : hovered ? colours::hover : QColor(Qt::white));
        painter->drawRoundedRect(QRectF(card).adjusted(2, 2, -2, -2), buttonCorner, buttonCorner);
        painter->setOpacity(place > 0 && !hovered ? undoneOpacity : 1);
        paintSmall(*painter, card, index.data(smallRole).value<QImage>());
        const bool mirrored = option.direction == Qt::RightToLeft;
        if (const QString icon = index.data(iconRole).toString(); !icon.isEmpty()) {
            paintBadge(*painter, badge(card, mirrored, Qt::AlignBottom), iconPixmap(icon, badgeSize - 6, ratio));
        }
        if (place == 0) {
            paintBadge(*painter, badge(card, !mirrored, Qt::AlignTop), iconPixmap("ok", badgeSize - 6, ratio));
        }
        painter->setOpacity(1);
        if ((option.state & QStyle::State_HasFocus) && KeyboardFocus::isUsed()) {
            KeyboardFocus::paintRing(*painter, card, buttonCorner);
        }
        painter->restore();
    }

  private:
    static void paintSmall(QPainter &painter, const QRect &card, const QImage &small) {
        QRectF target({}, QSizeF(small.size()).scaled(stepRoom, Qt::KeepAspectRatio));
        target.moveCenter(QRectF(card).center());
        painter.drawImage(target, small);
    }
    static QRect badge(const QRect &card, bool atRight, Qt::Alignment vertical) {
        QRect place(0, 0, badgeSize, badgeSize);
        place.moveLeft(atRight ? card.right() - badgeSize - 1 : card.left() + 2);
        place.moveTop(vertical == Qt::AlignTop ? card.top() + 2 : card.bottom() - badgeSize - 1);
        return place;
    }
    static void paintBadge(QPainter &painter, const QRect &place, const QPixmap &icon) {
        painter.setPen(QPen(colours::line, 1.5));
        painter.setBrush(Qt::white);
        painter.drawEllipse(place);
        painter.drawPixmap(place.left() + 3, place.top() + 3, icon);
    }
};

} // namespace

StepStrip::StepStrip(PhotoDocument &photo, const Texts &texts, QWidget *parent)
    : QWidget(parent), m_photo(photo), m_texts(texts), lstSteps(new QListWidget(this)),
      cmdStepsExit(new PictureButton("close", PictureButton::CaptionPlace::None, this)) {
    setObjectName("pnlSteps");
    lstSteps->setObjectName("lstSteps");
    lstSteps->setFlow(QListView::LeftToRight);
    lstSteps->setWrapping(false);
    lstSteps->setUniformItemSizes(true);
    lstSteps->setItemDelegate(new StepDelegate(lstSteps));
    lstSteps->setSelectionMode(QAbstractItemView::NoSelection);
    lstSteps->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    lstSteps->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lstSteps->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lstSteps->setMouseTracking(true);
    lstSteps->setFrameShape(QFrame::NoFrame);
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, lstSteps->horizontalScrollBar());
    lstSteps->setFixedHeight(stepTile.height() + bar + 4);
    cmdStepsExit->setObjectName("cmdStepsExit");
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(stripMargin, stripMargin, stripMargin, stripMargin);
    row->setSpacing(stripMargin);
    row->addWidget(lstSteps, 1);
    row->addWidget(cmdStepsExit, 0, Qt::AlignTop);
    hide();

    m_fill.setSingleShot(true);
    connect(&m_fill, &QTimer::timeout, this, &StepStrip::fill);
    connect(&photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (isVisible() && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::History)) {
            m_fill.start(0);
        }
    });
    connect(lstSteps, &QListWidget::itemClicked, this, &StepStrip::choose);
    connect(lstSteps, &QListWidget::itemActivated, this, &StepStrip::choose);
    connect(cmdStepsExit, &QAbstractButton::clicked, this, &StepStrip::closeWanted);
}

void StepStrip::open() {
    show();
    fill();
    lstSteps->setFocus(Qt::OtherFocusReason);
}

void StepStrip::LoadLanguage() {
    lstSteps->setAccessibleName(m_texts.text("Steps"));
    setAccessibleName(m_texts.text("Steps"));
    if (isVisible()) {
        fill();
    }
}

void StepStrip::fill() {
    const QList<PhotoState> states = m_photo.states();
    if (states.isEmpty()) { // the photo is being changed
        m_fill.start(busyWait);
        return;
    }
    const int now = m_photo.history().undoSteps();
    lstSteps->clear();
    for (int index = 0; index < states.size(); ++index) {
        const PhotoState &state = states[index];
        auto *item = new QListWidgetItem(lstSteps);
        item->setData(idRole, state.id);
        item->setData(smallRole, state.small);
        item->setData(iconRole, state.madeBy);
        item->setData(placeRole, index - now);
        item->setData(Qt::AccessibleTextRole, nameOf(state, index, now));
        item->setToolTip(nameOf(state, index, now));
    }
    m_now = states[now].id;
    lstSteps->setCurrentRow(now);
    lstSteps->scrollToItem(lstSteps->item(now));
}

/// What was there first may be lost by a full disk.
QString StepStrip::nameOf(const PhotoState &state, int index, int now) const {
    const bool first = state.id == PhotoHistory::firstId;
    const QString name = first ? m_texts.text("StepFirst") : m_texts.text("Step").arg(index);
    return index == now ? m_texts.text("StepNow").arg(name) : index > now ? m_texts.text("StepUndone").arg(name) : name;
}

void StepStrip::choose(const QListWidgetItem *item) {
    if (const quint64 id = item->data(idRole).toULongLong(); id != m_now) { // a click may be told twice
        m_now = id;
        Q_EMIT stateWanted(id);
    }
}

void StepStrip::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), colours::paper);
    painter.fillRect(0, 0, width(), 1, colours::line);
}

} // namespace lumora
