// Mouse events that the toolkit makes of the first finger on a touch screen.
#pragma once

#include <QMouseEvent>
#include <QPointingDevice>

namespace lumora {

inline bool isFromFinger(const QMouseEvent &event) {
    return event.source() != Qt::MouseEventNotSynthesized ||
           event.pointingDevice()->type() == QInputDevice::DeviceType::TouchScreen;
}

/// How far in pixels a finger slips that means to stay.
inline constexpr int fingerSlip = 10;

} // namespace lumora
