#include "widgets/FittedText.h"

#include "widgets/ElidedLabel.h"
#include "widgets/PictureChoice.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QLabel>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QToolTip>
#include <algorithm>

namespace lumora {

namespace {

constexpr int narrowestLabel = 24; // pixels
constexpr int narrowestTick = 120; // pixels, with the box
constexpr int farDown = 10'000;    // pixels, higher than any text

/// A check box or radio button as the style draws them.
bool isTickBox(const QWidget &control) {
    const bool isRadio = qobject_cast<const QRadioButton *>(&control) && !qobject_cast<const PictureChoice *>(&control);
    const bool isCheck = qobject_cast<const QCheckBox *>(&control) && !qobject_cast<const PictureTick *>(&control);
    return isRadio || isCheck;
}

bool fits(const QString &text, const QFont &font, QSize place, int flags) {
    const QFontMetrics metrics(font);
    const QRect needed = metrics.boundingRect(QRect(0, 0, place.width(), farDown), flags & ~Qt::AlignBottom, text);
    const bool severalLines = (flags & Qt::TextWordWrap) != 0;
    // Letters reach a little beyond a line without harm; a single line is as high as it is.
    return needed.width() <= place.width() + 1 &&
           (!severalLines || needed.height() <= place.height() + metrics.height() / 3);
}

bool isEastAsian(QChar letter) {
    return letter.unicode() >= 0x3000 && (letter.unicode() < 0xD800 || letter.unicode() >= 0xFF00);
}

/// The longest beginning that fits, with an ellipsis.
QString shortened(const QString &text, const QFont &font, QSize place, int flags) {
    if ((flags & Qt::TextWordWrap) == 0) {
        return QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width(), flags & Qt::TextShowMnemonic);
    }
    const auto beginning = [&](qsizetype length) {
        QString part = text.left(length).trimmed();
        while (part.endsWith('&')) {
            part.chop(1);
        }
        return part + QChar(0x2026);
    };
    qsizetype fitting = 0;
    for (qsizetype tooLong = text.size(); fitting + 1 < tooLong;) {
        const qsizetype middle = (fitting + tooLong) / 2;
        (fits(beginning(middle), font, place, flags) ? fitting : tooLong) = middle;
    }
    return beginning(fitting);
}

/// The place of a control's text and how it is drawn there; no size for a control whose text is not drawn by the style.
struct Drawn {
    QString text;
    QSize place;
    int flags = 0;
};

Drawn drawnText(const QWidget &control) {
    if (const auto *label = qobject_cast<const QLabel *>(&control)) {
        const bool isRich = label->textFormat() == Qt::RichText ||
                            (label->textFormat() == Qt::AutoText && Qt::mightBeRichText(label->text()));
        if (isRich || label->text().isEmpty() || qobject_cast<const ElidedLabel *>(label) != nullptr) {
            return {};
        }
        const int margin = 2 * label->margin();
        const int flags = static_cast<int>(label->alignment()) | (label->wordWrap() ? Qt::TextWordWrap : 0);
        return {label->text(), label->contentsRect().size() - QSize(margin, margin), flags};
    }
    const auto *button = qobject_cast<const QAbstractButton *>(&control);
    const bool isTick = isTickBox(control);
    if (!isTick || button->text().isEmpty()) {
        return {};
    }
    QStyleOptionButton option;
    option.initFrom(button);
    const auto part =
        qobject_cast<const QCheckBox *>(&control) ? QStyle::SE_CheckBoxContents : QStyle::SE_RadioButtonContents;
    QSize place = button->style()->subElementRect(part, &option, button).size();
    if (!button->icon().isNull()) {
        place.rwidth() -= button->iconSize().width() + 4;
    }
    return {button->text(), place, static_cast<int>(Qt::AlignVCenter) | Qt::TextShowMnemonic};
}

} // namespace

QString brokenAtBlanks(const QString &text) {
    if (!text.contains(' ') || std::ranges::none_of(text, isEastAsian)) {
        return text;
    }
    const QString stops = QString::fromUtf8("、。！？：…");
    QString joined;
    for (const QChar letter : text) {
        const bool follows = !joined.isEmpty() && joined.back() != ' ' && letter != ' ';
        if (follows && !stops.contains(joined.back()) && (isEastAsian(joined.back()) || isEastAsian(letter))) {
            joined += wordJoiner;
        }
        joined += letter;
    }
    return joined;
}

FittedText fitText(const QString &text, const QFont &font, QSize place, int flags) {
    const QString words = (flags & Qt::TextWordWrap) != 0 ? brokenAtBlanks(text) : text;
    if (words != text && fits(words, font, place, flags)) {
        return {words, font, flags, true};
    }
    if (fits(text, font, place, flags)) {
        return {text, font, flags, true};
    }
    const int wrapped = (flags | Qt::TextWordWrap) & ~Qt::TextSingleLine;
    QFont smaller = font;
    for (const double part : {1.0, (1 + smallestLetters) / 2, smallestLetters}) {
        if (font.pointSizeF() > 0) {
            smaller.setPointSizeF(font.pointSizeF() * part);
        }
        for (const int way : {flags, wrapped}) {
            if (fits(text, smaller, place, way)) {
                return {text, smaller, way, true};
            }
        }
    }
    const bool hasTwoLines = place.height() >= 2 * QFontMetrics(smaller).height() - 2;
    const int way = hasTwoLines ? wrapped : flags;
    return {shortened(text, smaller, place, way), smaller, way, false};
}

bool isShortened(const QWidget &control) {
    const Drawn drawn = drawnText(control);
    return !drawn.text.isEmpty() && !fitText(drawn.text, control.font(), drawn.place, drawn.flags).whole;
}

void letCaptionShrink(QWidget &control) {
    const auto *label = qobject_cast<QLabel *>(&control);
    const bool isTick = isTickBox(control);
    const bool isLine = label != nullptr && !label->wordWrap() && label->pixmap().isNull() &&
                        qobject_cast<ElidedLabel *>(&control) == nullptr;
    // The toolkit's own message boxes are as wide as their text.
    const bool isToolkits = control.objectName().startsWith("qt_");
    if ((isTick || isLine) && !isToolkits && control.minimumWidth() == 0) {
        control.setMinimumWidth(isTick ? narrowestTick : narrowestLabel);
    }
}

bool ShortenedTips::eventFilter(QObject *watched, QEvent *event) {
    const auto *control = event->type() == QEvent::ToolTip ? qobject_cast<QWidget *>(watched) : nullptr;
    if (control == nullptr || !control->toolTip().isEmpty() || !isShortened(*control)) {
        return QObject::eventFilter(watched, event);
    }
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), plainCaption(drawnText(*control).text),
                       static_cast<QWidget *>(watched));
    return true;
}

} // namespace lumora
