#include "widgets/TickButton.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace lumora {

namespace {
constexpr int boxSize = 30; // pixels
constexpr int tickGap = 8;  // pixels between box and drawing
} // namespace

TickButton::TickButton(const QString &iconName, int pixels, QWidget *parent)
    : PictureButton(iconName, CaptionPlace::Beside, parent) {
    setCheckable(true);
    setPictureSize(QSize(boxSize + tickGap + pixels, pixels));
}

QPixmap TickButton::currentPicture(QSize size, qreal devicePixelRatio) const {
    QPixmap both(size * devicePixelRatio);
    both.setDevicePixelRatio(devicePixelRatio);
    both.fill(Qt::transparent);
    QPainter painter(&both);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect whole({}, size);
    const int drawing = qMin(size.height(), size.width() - boxSize - tickGap);
    QStyleOptionButton box;
    box.initFrom(this);
    box.state.setFlag(QStyle::State_On, isChecked());
    box.rect = QStyle::visualRect(layoutDirection(), whole, {0, (size.height() - boxSize) / 2, boxSize, boxSize});
    style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, this);
    const QRect place = QStyle::visualRect(layoutDirection(), whole,
                                           {boxSize + tickGap, (size.height() - drawing) / 2, drawing, drawing});
    painter.drawPixmap(place.topLeft(), iconPixmap(iconName(), drawing, devicePixelRatio));
    return both;
}

} // namespace lumora
