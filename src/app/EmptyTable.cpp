#include "app/EmptyTable.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QPainter>
#include <QResizeEvent>

namespace lumora {

namespace {
constexpr int folderSize = 196; // pixels
constexpr int pictureSize = 128;
constexpr QSize photoSize(460, 320); ///< the dashed place where the photo will lie
} // namespace

EmptyTable::EmptyTable(QWidget *parent)
    : QWidget(parent), m_folder(new PictureButton("open", PictureButton::CaptionPlace::Below, this)) {
    setObjectName("EmptyTable");
    m_folder->setObjectName("cmdOpenFirst");
    m_folder->setPictureSize(pictureSize);
    m_folder->resize(folderSize, folderSize);
    setFocusProxy(m_folder);
    connect(m_folder, &PictureButton::clicked, this, &EmptyTable::openWanted);
}

void EmptyTable::setOpenText(const QString &text) {
    m_folder->setText(text);
}

void EmptyTable::resizeEvent(QResizeEvent *) {
    QRect place({}, m_folder->size());
    place.moveCenter(rect().center());
    m_folder->setGeometry(place);
}

void EmptyTable::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    m_table.paintTable(painter, event->rect(), {}, {}, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF place({}, photoSize.boundedTo(size() - QSize(40, 40)));
    place.moveCenter(QRectF(rect()).center());
    QPen dashes(colours::line, 3, Qt::CustomDashLine, Qt::RoundCap);
    dashes.setDashPattern({4, 4});
    painter.setPen(dashes);
    painter.setBrush(colours::paper);
    painter.drawRoundedRect(place, panelCorner, panelCorner);
}

} // namespace lumora
