#include "window/EmptyTable.h"

#include "widgets/PictureButton.h"
#include "widgets/ScenePicture.h"
#include "widgets/Theme.h"

#include <QLabel>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>

namespace lumora {

namespace {

// Pixels, on a table of the size of `usual`; they grow with it up to `largest`.
constexpr QSize usual(1024, 640);
constexpr double largest = 1.75;
constexpr QSizeF photoSize(460, 320);
constexpr int folderSize = 208;
constexpr int pictureSize = 136;
constexpr int crayonSize = 104;

} // namespace

EmptyTable::EmptyTable(QWidget *parent)
    : QWidget(parent), m_place(new ScenePicture("table", panelCorner, this)), m_crayon(new QLabel(this)),
      m_folder(new PictureButton("open", PictureButton::CaptionPlace::Below, this)) {
    setObjectName("EmptyTable");
    for (QWidget *drawn : std::initializer_list<QWidget *>{m_place, m_crayon}) {
        drawn->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    m_folder->setObjectName("cmdOpenFirst");
    QFont font = m_folder->font();
    font.setPointSizeF(14);
    font.setBold(true);
    m_folder->setFont(font);
    setFocusProxy(m_folder);
    connect(m_folder, &PictureButton::clicked, this, &EmptyTable::openWanted);
}

void EmptyTable::setOpenText(const QString &text) {
    m_folder->setText(text);
}

void EmptyTable::resizeEvent(QResizeEvent *) {
    const double scale =
        std::clamp(std::min(width() / double(usual.width()), height() / double(usual.height())), 1.0, largest);
    const auto centred = [this](const QSize &size) {
        QRect place({}, size);
        place.moveCenter(rect().center());
        return place;
    };
    const QSize room = size() - QSize(40, 40);
    m_place->setGeometry(
        centred((photoSize * scale).scaled(room, Qt::KeepAspectRatio).boundedTo(photoSize * scale).toSize()));
    m_folder->setPictureSize(qRound(pictureSize * scale));
    m_folder->setGeometry(centred(QSize(folderSize, folderSize) * scale));
    // The crayon is placed at the lower edge, where its drawing is cut off.
    const int crayon = qRound(crayonSize * m_place->width() / photoSize.width());
    m_crayon->setPixmap(iconPixmap("simple-mode", crayon, devicePixelRatioF()));
    m_crayon->setGeometry(m_place->x() + m_place->width() - crayon, m_place->y() + m_place->height() - crayon * 7 / 8,
                          crayon, crayon);
}

void EmptyTable::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    m_table.paintTable(painter, event->rect(), {}, {}, devicePixelRatioF());
}

} // namespace lumora
