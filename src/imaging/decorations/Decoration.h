// What a child puts on a photo: a sticker, words in a lettering style, a speech or a thought bubble. Its place and size
// are in picture pixels, its drawing is made of vectors; so it is the same on the screen and in a large photo.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <optional>
#include <vector>

namespace lumora {

struct Decoration {
    enum class Kind { Sticker, Words, SpeechBubble, ThoughtBubble };
    Kind kind = Kind::Sticker;
    int row = 0;                    ///< of stickers() or letterings(); no meaning for bubbles
    QString text;                   ///< no meaning for stickers
    QPointF centre;                 ///< picture pixels; may be outside the photo
    double size = 0;                ///< picture pixels: a sticker's side, the height of a line of letters
    double angle = 0;               ///< degrees, clockwise
    std::optional<QPointF> speaker; ///< where a bubble's tail points, picture pixels; without one to the lower left

    bool hasWords() const { return kind != Kind::Sticker; }
    bool isBubble() const { return kind == Kind::SpeechBubble || kind == Kind::ThoughtBubble; }
    bool operator==(const Decoration &) const = default;
};

/// A filled outline with a line around it; a transparent colour for none.
struct DecorationLayer {
    QPainterPath path;
    QColor fill;
    QColor line;
    double lineWidth = 0;
};

/// How a decoration is drawn, in picture pixels around its centre, before it is turned.
struct DecorationShape {
    int sticker = -1; ///< the row of stickers() that is drawn into the box; -1 for what consists of layers
    std::vector<DecorationLayer> layers; ///< the first is the lowest
    QRectF box;                          ///< what can be taken hold of: without a bubble's tail
    QRectF bounds;                       ///< everything
    QPointF tail;                        ///< a bubble's tip
};

/// Never with an empty box: where there are no words yet there is room for some.
DecorationShape shapeOf(const Decoration &decoration);

/// From a shape's coordinates to the picture's.
QTransform placeOf(const Decoration &decoration);

} // namespace lumora
