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

// Pixels, on a table of the size of `usual`; they grow with it up to `largest` and shrink down to `smallest`.
constexpr QSize usual(1024, 640);
constexpr double largest = 1.75;
constexpr double smallest = 0.7;
constexpr QSizeF photoSize(460, 320);
constexpr int folderSize = 208;
constexpr int folderPicture = 136;
constexpr int crayonSize = 104;
constexpr int sentenceMargin = 24;

} // namespace

EmptyTable::EmptyTable(QWidget *parent)
    : QWidget(parent), m_place(new ScenePicture("table", panelCorner, this)), m_crayon(new QLabel(this)),
      m_folder(new PictureButton("open", PictureButton::CaptionPlace::Below, this)), m_sentence(new QLabel(this)) {
    setObjectName("EmptyTable");
    for (QWidget *drawn : std::initializer_list<QWidget *>{m_place, m_crayon}) {
        drawn->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    m_folder->setObjectName("cmdOpenFirst");
    QFont font = m_folder->font();
    font.setPointSizeF(14);
    font.setBold(true);
    m_folder->setFont(font);
    m_sentence->setObjectName("lblSentence");
    m_sentence->setFont(font);
    m_sentence->setTextFormat(Qt::PlainText);
    m_sentence->setWordWrap(true);
    m_sentence->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setThemedSheet(
        *m_sentence,
        QString("background: @paper; border: 1px solid @line; border-radius: %1px; padding: 8px;").arg(buttonCorner));
    m_sentence->hide();
    setFocusProxy(m_folder);
    connect(m_folder, &PictureButton::clicked, this, &EmptyTable::openWanted);
}

void EmptyTable::setOpenText(const QString &text) {
    m_folder->setText(text);
}

void EmptyTable::setSentence(const QString &text) {
    m_sentence->setText(text);
    m_sentence->setVisible(!text.isEmpty());
    placeAll();
}

void EmptyTable::resizeEvent(QResizeEvent *) {
    placeAll();
}

void EmptyTable::placeAll() {
    const double scale =
        std::clamp(std::min(width() / double(usual.width()), height() / double(usual.height())), smallest, largest);
    // A sentence takes a strip of its own at the bottom.
    const int wide = std::min(width() - 40, qRound(photoSize.width() * scale) + 80);
    const int high = m_sentence->text().isEmpty() ? 0 : m_sentence->heightForWidth(wide);
    const QRect area = rect().adjusted(0, 0, 0, high > 0 ? -high - sentenceMargin : 0);
    const auto centred = [&area](const QSize &size) {
        QRect place({}, size);
        place.moveCenter(area.center());
        return place;
    };
    const QSize room = area.size() - QSize(40, 40);
    m_place->setGeometry(
        centred((photoSize * scale).scaled(room, Qt::KeepAspectRatio).boundedTo(photoSize * scale).toSize()));
    m_folder->setPictureSize(qRound(folderPicture * scale));
    m_folder->setGeometry(centred(QSize(folderSize, folderSize) * scale));
    // The crayon is placed at the lower edge, where its drawing is cut off.
    const int crayon = qRound(crayonSize * m_place->width() / photoSize.width());
    m_crayon->setPixmap(iconPixmap("simple-mode", crayon, devicePixelRatioF()));
    m_crayon->setGeometry(m_place->x() + m_place->width() - crayon, m_place->y() + m_place->height() - crayon * 7 / 8,
                          crayon, crayon);
    const int top = std::min(m_place->geometry().bottom() + crayon / 8 + 16, height() - high - 8);
    m_sentence->setGeometry((width() - wide) / 2, top, wide, high);
}

void EmptyTable::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    m_table.paintTable(painter, event->rect(), {}, {}, devicePixelRatioF());
}

} // namespace lumora
