// The line that the user draws along the horizon, or along what stands upright, to straighten the photo by it.
#pragma once

#include <QPointF>

class QPainter;

namespace lumora {

struct HorizonLine {
    QPointF from, to; ///< pixels of the view

    /// Shorter ones say too little of a direction.
    static constexpr double shortest = 24; ///< pixels
    bool isLongEnough() const;
    /// The turn after which it is level or upright, whichever is nearer: degrees clockwise, -45 to 45.
    double straightening() const;
    void paint(QPainter &painter) const;
};

} // namespace lumora
